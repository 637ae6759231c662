#include "runtime/data/serialized/value_writer.h"

#include <limits>
#include <typeinfo>

#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/language/module.h"
#include "runtime/core/language/string_builder.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/core/text/utf8_out.h"
#include "runtime/data/serialized/serialized_format.h"

namespace kes {

using namespace serialized;

namespace {

constexpr std::size_t kLongest = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kSmallestBlock = 1024;
constexpr std::size_t kLargestBlock = 65536;

[[noreturn]] void refuse(std::string_view what) {
  throw KesException(formatText("Cannot serialize: %@", {what}));
}

[[noreturn]] void refuse(Shared& object) { refuse(Value(Ref<Shared>(&object)).description()); }

bool fieldKindIsKnown(char kind) {
  return std::string_view("@BcCsSiIlLqQfd").find(kind) != std::string_view::npos;
}

}  // namespace

bool answersIsInitialized(const Shared& object) {
  if (dynamic_cast<const KesClass*>(&object)) return true;
  const auto* info = ClassRegistry::instance().of(object);
  return info && (info->field("_IsInitialized") || info->field("_isinitialized") ||
                  info->field("IsInitialized") || info->method("IsInitialized") ||
                  info->method("_isinitialized"));
}

std::vector<std::uint8_t> ValueWriter::write(const Value& root) {
  writeValue(root);
  while (!levels_.empty()) {
    Level& top = levels_.back();
    if (top.item != top.itemEnd) {
      writeValue(*top.item++);
    } else if (top.entry != top.entryEnd) {
      // The entry is passed on before writing, which may move the levels.
      const auto& entry = *top.entry;
      top.keyWritten = !top.keyWritten;
      if (top.keyWritten) {
        writeValue(entry.key);
      } else {
        ++top.entry;
        writeValue(entry.value);
      }
    } else {
      levels_.pop_back();
    }
  }
  return joined();
}

void ValueWriter::newBlock(std::size_t atLeast) {
  if (!full_.empty()) full_.back().used = blockUsed_;
  fullSize_ += blockUsed_;
  if (atLeast > kLongest - fullSize_) refuse("more than 2147483647 bytes");
  blockSize_ = std::max(atLeast, std::clamp(blockSize_ * 2, kSmallestBlock, kLargestBlock));
  // Not a vector: nobody needs the block cleared.
  full_.push_back({std::unique_ptr<std::uint8_t[]>(new std::uint8_t[blockSize_]), 0});
  block_ = full_.back().bytes.get();
  blockUsed_ = 0;
}

std::vector<std::uint8_t> ValueWriter::joined() {
  full_.back().used = blockUsed_;
  std::vector<std::uint8_t> all;
  all.reserve(fullSize_ + blockUsed_);
  for (const auto& block : full_)
    all.insert(all.end(), block.bytes.get(), block.bytes.get() + block.used);
  return all;
}

template <class T>
void ValueWriter::put(std::uint8_t tag, T v) {
  auto* at = room(1 + sizeof v);
  *at = tag;
  storeNumber(at + 1, v, kOrder);
}

void ValueWriter::writeCount(std::size_t n) {
  if (n > kLongest) refuse("more than 2147483647 items");
  storeNumber(room(4), static_cast<std::int32_t>(n), kOrder);
}

void ValueWriter::writeText(std::string_view utf8) {
  std::string corrected;
  if (mayHoldHalf(utf8)) utf8 = wellFormedUtf8(utf8, corrected);
  if (utf8.size() > kLongest - 5) refuse("more than 2147483647 bytes");
  auto* at = room(5 + utf8.size());
  *at = kString;
  storeNumber(at + 1, static_cast<std::int32_t>(utf8.size()), kOrder);
  if (!utf8.empty()) std::memcpy(at + 5, utf8.data(), utf8.size());
}

void ValueWriter::writeNumber(const Value& v) {
  switch (v.numberType()) {
    case NumberType::Bool:
      return put(kBoolean, static_cast<std::uint8_t>(v.asBool()));
    case NumberType::UnsignedChar:
      return put(kByte, static_cast<std::uint8_t>(v.asInt64()));
    case NumberType::Short:
      return put(kShort, static_cast<std::int16_t>(v.asInt64()));
    case NumberType::UnsignedShort:
      return put(kChar, static_cast<std::uint16_t>(v.asInt64()));
    case NumberType::Int:
      return put(kInt, static_cast<std::int32_t>(v.asInt64()));
    case NumberType::LongLong:
      return put(kLong, v.asInt64());
    case NumberType::Float:
      return put(kFloat, static_cast<float>(v.asDouble()));
    case NumberType::Double:
      return put(kDouble, v.asDouble());
    default:
      throw KesException("Unknown number type", std::to_string(static_cast<int>(v.numberType())));
  }
}

void ValueWriter::writeValue(const Value& v) {
  if (v.isText())
    writeText(v.textView());
  else if (v.isNumber())
    writeNumber(v);
  else if (v.isObject())
    writeObject(*v.object());
  else
    *room(1) = kNull;
}

void ValueWriter::writeObject(Shared& object) {
  const auto& type = typeid(object);
  if (type == typeid(KesMap)) {
    const auto* table = static_cast<const KesMap&>(object).table();
    *room(1) = kMap;
    if (table)
      openEntries(table->entries());
    else
      writeCount(0);
  } else if (type == typeid(ArrayStore)) {
    openItems(kList, static_cast<const ArrayStore&>(object).items());
  } else if (type == typeid(KesArray)) {
    const auto& array = static_cast<const KesArray&>(object);
    if (!array.isBytes()) return openItems(kObjectArray, array.objectsData());
    const auto& bytes = array.bytesData();
    *room(1) = kByteArray;
    writeCount(bytes.size());
    if (!bytes.empty()) std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
  } else if (type == typeid(MutableText)) {
    writeText(static_cast<const MutableText&>(object).utf8);
  } else if (type == typeid(KesList)) {
    writeValue(static_cast<const KesList&>(object).objectOrNull());
  } else if (auto* wrapper = dynamic_cast<KesObjectWrapper*>(&object)) {
    const Value* inner = &wrapper->objectOrNull();
    while (const auto* next = dynamic_cast<const KesObjectWrapper*>(inner->object()))
      inner = &next->objectOrNull();
    writeValue(*inner);
  } else {
    openCustomType(object);
  }
}

ValueWriter::Level& ValueWriter::push() {
  // Its description would never end: it holds itself.
  if (levels_.size() >= kDeepest) refuse("values nested too deeply");
  return levels_.emplace_back();
}

void ValueWriter::openItems(std::uint8_t tag, const std::vector<Value>& items) {
  *room(1) = tag;
  writeCount(items.size());
  if (items.empty()) return;
  auto& level = push();
  level.item = items.data();
  level.itemEnd = items.data() + items.size();
}

void ValueWriter::openEntries(std::span<const Dictionary::Entry> entries) {
  writeCount(entries.size());
  if (entries.empty()) return;
  auto& level = push();
  level.entry = entries.data();
  level.entryEnd = entries.data() + entries.size();
}

void ValueWriter::openCustomType(Shared& object) {
  if (!answersIsInitialized(object)) refuse(object);
  const auto* info = ClassRegistry::instance().of(object);
  if (!info) refuse(object);
  auto fields = std::make_unique<Dictionary::Entries>();
  fields->reserve(info->fields().size());
  for (const auto& field : info->fields()) {
    if (!fieldKindIsKnown(field.kind)) refuse(object);
    fields->push_back({Text(field.name), field.get(object)});
  }
  *room(1) = kCustomType;
  writeText(info->name());
  const auto depth = levels_.size();
  const auto run = depth ? levels_.back().customRun + 1 : 1;
  if (run > kLongestCustomRun) refuse("custom types nested too deeply");
  openEntries(*fields);
  if (levels_.size() == depth) return;
  levels_.back().customRun = run;
  levels_.back().collected = std::move(fields);
}

}  // namespace kes
