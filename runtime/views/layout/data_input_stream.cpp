#include "runtime/views/layout/data_input_stream.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "runtime/core/kes.h"
#include "runtime/views/layout/layout_format.h"

namespace kes {

namespace {

constexpr std::size_t kBlock = 8192;

[[noreturn]] void damaged(const char* what, std::int64_t number) {
  throw KesException(formatText(what, {std::to_string(number)}));
}

Text decoded(std::string_view bytes) {
  auto text = Text::fromUtf8(bytes);
  if (!text) throw KesException("Error decoding data as string.");
  return std::move(*text);
}

}  // namespace

bool KesDataInputStream::fill() {
  if (ended_) return false;
  buffer_.resize(kBlock);
  next_ = 0;
  filled_ = socket.read(buffer_);
  ended_ = filled_ == 0;
  return !ended_;
}

std::size_t KesDataInputStream::readNotFull(std::uint8_t* into, std::size_t limit) {
  if (next_ == filled_ && !fill()) return 0;
  const std::size_t n = std::min(limit, filled_ - next_);
  std::memcpy(into, buffer_.data() + next_, n);
  next_ += n;
  return n;
}

bool KesDataInputStream::receiveBytes(std::uint8_t* into, std::size_t count) {
  while (count > 0) {
    const std::size_t n = readNotFull(into, count);
    if (n < 1) return false;
    into += n;
    count -= n;
  }
  return true;
}

std::int8_t KesDataInputStream::readByte() {
  if (next_ < filled_) return static_cast<std::int8_t>(buffer_[next_++]);
  std::uint8_t byte;
  return receiveBytes(&byte, 1) ? static_cast<std::int8_t>(byte) : static_cast<std::int8_t>(-1);
}

Text KesDataInputStream::readString() {
  const std::int32_t length = readInt();
  if (length < 0) damaged("Invalid text length: %@", length);
  const auto size = static_cast<std::size_t>(length);
  if (size <= filled_ - next_) {
    const auto* at = reinterpret_cast<const char*>(buffer_.data() + next_);
    next_ += size;
    return decoded({at, size});
  }
  std::string bytes;
  // Grows with what really comes, whatever length was promised.
  for (auto left = size; left > 0;) {
    const std::size_t part = std::min(left, kBlock), former = bytes.size();
    bytes.resize(former + part);
    if (!receiveBytes(reinterpret_cast<std::uint8_t*>(bytes.data()) + former, part)) return {};
    left -= part;
  }
  return decoded(bytes);
}

const Text& KesDataInputStream::readCachedString(const std::vector<Text>& table) {
  static const Text none;
  const std::int32_t index = readInt();
  if (ended_) return none;
  if (index < 0 || static_cast<std::size_t>(index) >= table.size())
    damaged("Invalid text number: %@", index);
  return table[static_cast<std::size_t>(index)];
}

std::vector<Text> KesDataInputStream::readStringTable() {
  const std::int32_t count = readInt();
  if (count < 0) damaged("Invalid number of texts: %@", count);
  std::vector<Text> table;
  for (std::int32_t i = 0; i < count && !ended_; ++i) table.push_back(readString());
  return table;
}

void KesDataInputStream::readAndDiscard(std::int64_t length) {
  std::uint8_t nowhere[512];
  while (length > 0) {
    const std::size_t n = readNotFull(
        nowhere, static_cast<std::size_t>(std::min<std::int64_t>(length, sizeof nowhere)));
    if (n < 1) return;
    length -= static_cast<std::int64_t>(n);
  }
}

Value KesDataInputStream::readValue(std::int8_t tag, const std::vector<Text>* table) {
  switch (tag) {
    case layout_format::kInteger:
      return readInt();
    case layout_format::kString:
      return readString();
    case layout_format::kBoolean:
      return static_cast<std::int32_t>(readByte() == 1 ? 1 : 0);
    case layout_format::kColor: {
      std::uint8_t b[4] = {};
      receiveBytes(b, sizeof b);
      return static_cast<std::uint32_t>(b[0]) << 24 | static_cast<std::uint32_t>(b[1]) << 16 |
             static_cast<std::uint32_t>(b[2]) << 8 | static_cast<std::uint32_t>(b[3]);
    }
    case layout_format::kFloat:
      return readFloat();
    case layout_format::kCachedString:
      return readCachedString(table ? *table : std::vector<Text>());
    case layout_format::kDouble:
      return readDouble();
    default:
      damaged("Unknown type: %@", tag);
  }
}

Ref<Dictionary> KesDataInputStream::mapWith(const std::vector<Text>* table) {
  struct Open {
    Text key;           // of the map, in the one around it
    std::size_t first;  // of its entries
  };
  // Entries wait here until their map is whole.
  Dictionary::Entries entries;
  entries.reserve(64);
  std::vector<Open> open{{Text(), 0}};
  for (;;) {
    const Text key = table ? readCachedString(*table) : readString();
    const std::int8_t tag = readByte();
    if (tag == layout_format::kEnd) {
      const Open done = std::move(open.back());
      open.pop_back();
      const auto first = entries.begin() + static_cast<std::ptrdiff_t>(done.first);
      Dictionary::Entries own;
      own.reserve(static_cast<std::size_t>(entries.end() - first));
      std::move(first, entries.end(), std::back_inserter(own));
      entries.erase(first, entries.end());
      auto map = platform::makeShared<Dictionary>(std::move(own));
      if (open.empty()) return map;
      entries.push_back({done.key, std::move(map)});
    } else if (tag == layout_format::kMap) {
      if (static_cast<int>(open.size()) >= layout_format::kMaxDepth)
        damaged("Maps nested deeper than %@", layout_format::kMaxDepth);
      open.push_back({key, entries.size()});
    } else {
      entries.push_back({key, readValue(tag, table)});
    }
  }
}

}  // namespace kes
