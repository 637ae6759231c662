#include "runtime/data/bytes/byte_converter.h"

#include <cstdlib>

#include "runtime/core/language/common.h"
#include "runtime/data/bytes/byte_range.h"

namespace kes {

namespace {

void checkRange(std::int64_t start, std::int64_t count, std::size_t length) {
  if (start < 0 || count < 0 || start + count > static_cast<std::int64_t>(length))
    throw KesException(
        "Out of bounds. Index=" + std::to_string(start < 0 || count < 0 ? start : start + count) +
        " Length=" + std::to_string(length));
}

template <class Item>
void copyItems(const std::vector<Item>& source, std::int32_t sourceStart,
               std::vector<Item>& destination, std::int32_t destinationStart, std::int32_t count) {
  checkRange(sourceStart, count, source.size());
  checkRange(destinationStart, count, destination.size());
  const auto from = source.begin() + sourceStart;
  const auto to = destination.begin() + destinationStart;
  if (&source == &destination && sourceStart < destinationStart)
    std::copy_backward(from, from + count, to + count);
  else
    std::copy(from, from + count, to);
}

template <class T>
T numberAs(const Value& v) {
  if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(v.asDouble());
  else
    return static_cast<T>(v.asInt64());
}

}  // namespace

template <class T>
Ref<KesArray> KesByteConverter::toBytes(const Ref<KesArray>& numbers) const {
  if (!numbers || numbers->isBytes()) throw KesException("An array of numbers is expected.");
  const auto& items = numbers->objectsData();
  std::vector<std::uint8_t> bytes(items.size() * sizeof(T));
  auto* to = bytes.data();
  for (const auto& item : items) {
    storeNumber(to, numberAs<T>(item), order());
    to += sizeof(T);
  }
  return KesArray::initBytesWithData(std::move(bytes));
}

template <class T>
Ref<KesArray> KesByteConverter::fromBytes(const Ref<KesArray>& bytes) const {
  const auto whole = wholeBytes(bytes);
  std::vector<Value> items;
  items.reserve(whole.size() / sizeof(T));
  for (std::size_t at = 0; at + sizeof(T) <= whole.size(); at += sizeof(T))
    items.emplace_back(loadNumber<T>(whole.data() + at, order()));
  return KesArray::initObjectsWithData(std::move(items));
}

Ref<KesArray> KesByteConverter::ShortsToBytes(const Ref<KesArray>& numbers) const {
  return toBytes<std::int16_t>(numbers);
}
Ref<KesArray> KesByteConverter::ShortsFromBytes(const Ref<KesArray>& bytes) const {
  return fromBytes<std::int16_t>(bytes);
}
Ref<KesArray> KesByteConverter::IntsToBytes(const Ref<KesArray>& numbers) const {
  return toBytes<std::int32_t>(numbers);
}
Ref<KesArray> KesByteConverter::IntsFromBytes(const Ref<KesArray>& bytes) const {
  return fromBytes<std::int32_t>(bytes);
}
Ref<KesArray> KesByteConverter::LongsToBytes(const Ref<KesArray>& numbers) const {
  return toBytes<std::int64_t>(numbers);
}
Ref<KesArray> KesByteConverter::LongsFromBytes(const Ref<KesArray>& bytes) const {
  return fromBytes<std::int64_t>(bytes);
}
Ref<KesArray> KesByteConverter::FloatsToBytes(const Ref<KesArray>& numbers) const {
  return toBytes<float>(numbers);
}
Ref<KesArray> KesByteConverter::FloatsFromBytes(const Ref<KesArray>& bytes) const {
  return fromBytes<float>(bytes);
}
Ref<KesArray> KesByteConverter::DoublesToBytes(const Ref<KesArray>& numbers) const {
  return toBytes<double>(numbers);
}
Ref<KesArray> KesByteConverter::DoublesFromBytes(const Ref<KesArray>& bytes) const {
  return fromBytes<double>(bytes);
}

Ref<KesArray> KesByteConverter::StringToBytes(std::string_view text, std::string_view charset) {
  return KesArray::initBytesWithData(KesCommon::GetBytes(text, charset));
}

Text KesByteConverter::StringFromBytes(const Ref<KesArray>& bytes, std::string_view charset) {
  const auto whole = wholeBytes(bytes);
  return KesCommon::BytesToString(whole, 0, static_cast<int>(whole.size()), charset);
}

Text KesByteConverter::HexFromBytes(const Ref<KesArray>& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string hex;
  hex.reserve(wholeBytes(bytes).size() * 2);
  for (const auto b : wholeBytes(bytes)) {
    hex += kDigits[b >> 4];
    hex += kDigits[b & 15];
  }
  return Text(hex);
}

Ref<KesArray> KesByteConverter::HexToBytes(const Text& hex) {
  const auto units = hex.utf16();
  std::vector<std::uint8_t> bytes;
  bytes.reserve(units.size() / 2);
  // No digit has a code above 127, so any other character may stand for the rest.
  const auto plain = [](char16_t unit) { return unit < 128 ? static_cast<char>(unit) : '?'; };
  for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
    const char pair[] = {plain(units[i]), plain(units[i + 1]), '\0'};
    bytes.push_back(static_cast<std::uint8_t>(std::strtol(pair, nullptr, 16)));
  }
  return KesArray::initBytesWithData(std::move(bytes));
}

void KesByteConverter::ArrayCopy(const Ref<KesArray>& source, std::int32_t sourceStart,
                                 const Ref<KesArray>& destination, std::int32_t destinationStart,
                                 std::int32_t count) {
  if (!source || !destination || source->isBytes() != destination->isBytes())
    throw KesException("Two arrays of one kind are expected.");
  if (source->isBytes())
    copyItems(source->bytesData(), sourceStart, destination->bytesData(), destinationStart, count);
  else
    copyItems(source->objectsData(), sourceStart, destination->objectsData(), destinationStart,
              count);
}

Ref<KesArray> KesByteConverter::SupportedEncodings() {
  static const Ref<KesArray> names = [] {
    std::vector<Value> items;
    for (const auto& name : KesCommon::availableEncodings()) items.emplace_back(name);
    return KesArray::initObjectsWithData(std::move(items));
  }();
  return names;
}

}  // namespace kes
