#include "runtime/data/serialized/value_reader.h"

#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/language/common.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/data/serialized/serialized_format.h"
#include "runtime/data/serialized/value_writer.h"

namespace kes {

using namespace serialized;

namespace {

[[noreturn]] void failTag(int tag) {
  throw KesException(formatText("Unknown type in readObject: %@", {std::to_string(tag)}));
}

Text textOf(std::span<const std::uint8_t> bytes) {
  if (auto text = Text::fromUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()}))
    return *std::move(text);
  throw KesException("Error decoding data as string.");
}

// A fresh object of the type, or null for a name that stands for no custom type here.
Ref<Shared> makeCustomType(const Value& name) {
  if (!name.isText()) return nullptr;
  auto local = name.textView();
  if (const auto dollar = local.rfind(kNamePrefixEnd); dollar != local.npos)
    local.remove_prefix(dollar + 1);
  const auto* info = ClassRegistry::instance().find(local);
  auto object = info ? info->make() : nullptr;
  // Only what could have been written comes back, whatever name the data gives.
  return object && answersIsInitialized(*object) ? object : nullptr;
}

void setField(Shared& object, const Value& key, const Value& v) {
  try {
    const auto* info = ClassRegistry::instance().of(object);
    const auto* field = key.isText() ? info->field(key.textView()) : nullptr;
    if (!field) throw KesException("the type has no such field");
    if (v.as<ArrayStore>()) {
      KesList list;
      list.setObject(v);
      field->set(object, list);
    } else {
      field->set(object, v);
    }
  } catch (const std::exception& e) {
    KesCommon::Log(formatText("Error setting key: %@, %@",
                              {key.description().view(), std::string_view(e.what())}));
  }
}

}  // namespace

Value ValueReader::read() {
  for (;;) {
    Value v;
    bool complete = readValue(v);
    while (complete) {
      if (levels_.empty()) return v;
      Level& top = levels_.back();
      attach(top, std::move(v));
      complete = top.kind != Kind::CustomName && top.left == 0;
      if (!complete) break;
      v = close(top);
      levels_.pop_back();
    }
  }
}

template <class T>
T ValueReader::number() {
  if (rest() >= sizeof(T)) {
    const T v = loadNumber<T>(bytes_.data() + at_, kOrder);
    at_ += sizeof(T);
    return v;
  }
  std::uint8_t padded[sizeof(T)] = {};
  std::copy(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), bytes_.end(), padded);
  at_ = bytes_.size();
  return loadNumber<T>(padded, kOrder);
}

std::int32_t ValueReader::readLength() {
  const auto length = number<std::int32_t>();
  if (length < 0 || static_cast<std::size_t>(length) > bytes_.size()) failTag(kEndOfData);
  return length;
}

Value ValueReader::readText() {
  const auto length = static_cast<std::size_t>(readLength());
  const auto there = bytes_.subspan(at_, std::min(length, rest()));
  at_ += there.size();
  if (there.size() == length) return textOf(there);
  std::vector<std::uint8_t> padded(there.begin(), there.end());
  padded.resize(length);
  return textOf(padded);
}

Value ValueReader::readByteArray() {
  const auto length = static_cast<std::size_t>(readLength());
  const auto there = bytes_.subspan(at_, std::min(length, rest()));
  at_ += there.size();
  std::vector<std::uint8_t> bytes(there.begin(), there.end());
  bytes.resize(length);
  return KesArray::initBytesWithData(std::move(bytes));
}

void ValueReader::charge(std::size_t bytes) {
  memory_ += bytes;
  if (memory_ > mostMemory_) throw KesException("Serialized value too large");
}

std::size_t ValueReader::reserve(std::int32_t count) {
  // An item takes a byte at least, so the counts of an honest document add up to no
  // more than its length.
  const auto granted = std::min(static_cast<std::size_t>(std::max(count, 0)), reservable_);
  reservable_ -= granted;
  return granted;
}

bool ValueReader::readValue(Value& out) {
  const int tag = rest() ? bytes_[at_++] : kEndOfData;
  switch (tag) {
    case kNull:
      return true;
    case kString:
      out = readText();
      return true;
    case kShort:
      out = number<std::int16_t>();
      return true;
    case kInt:
      out = number<std::int32_t>();
      return true;
    case kLong:
      out = number<std::int64_t>();
      return true;
    case kFloat:
      out = number<float>();
      return true;
    case kDouble:
      out = number<double>();
      return true;
    case kBoolean:
      out = number<std::uint8_t>() == 1;
      return true;
    case kByte:
      out = static_cast<signed char>(number<std::uint8_t>());
      return true;
    case kChar:
      out = number<std::uint16_t>();
      return true;
    case kByteArray:
      out = readByteArray();
      return true;
    case kList:
    case kObjectArray:
    case kMap: {
      const auto kind = tag == kMap ? Kind::Map : tag == kList ? Kind::List : Kind::ObjectArray;
      if (open(kind)) return false;
      out = close(levels_.back());
      levels_.pop_back();
      return true;
    }
    case kCustomType:
      open(Kind::CustomName);
      return false;
    default:
      failTag(tag);
  }
}

// Opens a level; false when it is complete already, having no items.
bool ValueReader::open(Kind kind) {
  const auto depth = levels_.size();
  if (keyLevel_) {
    if (depth - keyLevel_ >= kDeepestKey) throw KesException("Map key nested too deeply");
  } else if (depth && !levels_.back().keyRead &&
             (levels_.back().kind == Kind::Map || levels_.back().kind == Kind::CustomType)) {
    keyLevel_ = depth;
  }
  charge(kContainerCost);
  const std::size_t run = kind == Kind::CustomName ? runOfCustomTypes() + 1 : 0;
  if (run > kLongestCustomRun) throw KesException("Custom types nested too deeply");
  auto& level = levels_.emplace_back();
  level.kind = kind;
  level.customRun = run;
  if (kind == Kind::CustomName) return true;
  if (kind == Kind::Map) {
    readEntryCount(level);
  } else {
    level.left = number<std::int32_t>();
    level.items.reserve(reserve(level.left));
  }
  return level.left > 0;
}

std::size_t ValueReader::runOfCustomTypes() const {
  return levels_.empty() ? 0 : levels_.back().customRun;
}

void ValueReader::readEntryCount(Level& level) {
  level.left = number<std::int32_t>();
  level.entries.reserve(reserve(level.left));
}

void ValueReader::attach(Level& level, Value v) {
  charge(sizeof v);
  switch (level.kind) {
    case Kind::List:
    case Kind::ObjectArray:
      level.items.push_back(nilToNull(std::move(v)));
      --level.left;
      return;
    case Kind::CustomName:
      level.kind = Kind::CustomType;
      level.name = std::move(v);
      readEntryCount(level);
      level.left = std::max(level.left, 0);
      return;
    case Kind::Map:
    case Kind::CustomType:
      if (level.keyRead) {
        level.entries.back().value = std::move(v);
        level.keyRead = false;
        --level.left;
      } else {
        if (v.isObject() && ++level.objectKeys > kMostObjectKeys)
          throw KesException("Too many map keys that are objects");
        level.entries.push_back({nilToNull(std::move(v)), {}});
        level.keyRead = true;
        if (keyLevel_ == levels_.size()) keyLevel_ = 0;
      }
      return;
  }
}

Value ValueReader::close(Level& level) {
  switch (level.kind) {
    case Kind::List:
      return platform::makeShared<ArrayStore>(std::move(level.items));
    case Kind::ObjectArray:
      return KesArray::initObjectsWithData(std::move(level.items));
    case Kind::Map: {
      auto map = platform::makeShared<KesMap>();
      map->setMap(platform::makeShared<Dictionary>(std::move(level.entries)));
      return map;
    }
    case Kind::CustomName:
    case Kind::CustomType:
      break;
  }
  const auto object = makeCustomType(level.name);
  if (!object) return {};
  for (const auto& [key, value] : level.entries) setField(*object, key, value);
  return object;
}

}  // namespace kes
