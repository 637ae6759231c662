#include "runtime/data/json/json_generator.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <charconv>
#include <cmath>
#include <unordered_set>

#include "runtime/core/array.h"
#include "runtime/core/language/string_builder.h"

namespace kes {

namespace {

[[noreturn]] void fail(std::string_view reason) {
  throw KesException(formatText("Error writing JSON: %@", {reason}));
}

// Walks a tree with a stack of its own, so that depth is limited by memory only.
template <class Writer>
class Walk {
 public:
  explicit Walk(Writer& out) : out_(out) {}

  void run(const Value& root) {
    write(root);
    while (!open_.empty()) {
      Container& c = open_.back();
      if (c.next == c.count) {
        close();
      } else if (c.dict) {
        const auto& [key, value] = c.dict->entries()[c.next++];
        writeText(key.textView(), true);
        write(value);
      } else {
        write(c.array->items()[c.next++]);
      }
    }
  }

 private:
  struct Container {
    Ref<Dictionary> dict;
    Ref<ArrayStore> array;
    const Shared* identity;
    std::size_t count;
    std::size_t next = 0;
  };

  void write(const Value& v) {
    if (v.isNilOrNull()) {
      out_.Null();
    } else if (v.isText()) {
      writeText(v.textView(), false);
    } else if (v.isNumber()) {
      writeNumber(v);
    } else if (const auto map = v.as<KesMap>()) {
      if (!map->IsInitialized()) throw KesException("Object not initialized (Map)");
      openMap(Ref<Dictionary>(const_cast<Dictionary*>(map->table())));
    } else if (auto dict = v.as<Dictionary>()) {
      openMap(std::move(dict));
    } else if (const auto array = v.as<KesArray>(); array && !array->isBytes()) {
      openArray(array->store());
    } else if (auto store = v.as<ArrayStore>()) {
      openArray(std::move(store));
    } else if (const auto text = v.as<MutableText>()) {
      writeText(text->utf8, false);
    } else if (auto wrapper = v.as<KesObjectWrapper>()) {
      Value inner = wrapper->objectOrNull();
      while ((wrapper = inner.as<KesObjectWrapper>())) inner = wrapper->objectOrNull();
      write(inner);
    } else {
      fail("Invalid type in JSON write (" + std::string(v.object()->className()) + ")");
    }
  }

  void openMap(Ref<Dictionary> dict) {
    const Shared* identity = dict.get();
    enter(identity);
    for (const auto& entry : dict->entries()) {
      if (entry.key.isText()) continue;
      dict = withTextKeys(*dict);
      break;
    }
    out_.StartObject();
    const auto count = dict->size();
    open_.push_back({std::move(dict), nullptr, identity, count});
  }

  // Two keys may have one description: of those the last wins.
  static Ref<Dictionary> withTextKeys(const Dictionary& dict) {
    auto copy = platform::makeShared<Dictionary>();
    for (const auto& [key, value] : dict.entries()) copy->put(key.description(), value);
    return copy;
  }

  void openArray(Ref<ArrayStore> array) {
    enter(array.get());
    out_.StartArray();
    const auto count = array->size();
    const Shared* identity = array.get();
    open_.push_back({nullptr, std::move(array), identity, count});
  }

  void enter(const Shared* container) {
    if (!inside_.insert(container).second) fail("A container holds itself");
  }

  void close() {
    const Container& c = open_.back();
    if (c.dict)
      out_.EndObject();
    else
      out_.EndArray();
    inside_.erase(c.identity);
    open_.pop_back();
  }

  void writeText(std::string_view text, bool isKey) {
    if (!isUtf8(text)) fail("A text holds half of a surrogate pair");
    const auto length = static_cast<rapidjson::SizeType>(text.size());
    if (isKey)
      out_.Key(text.data(), length);
    else
      out_.String(text.data(), length);
  }

  void writeNumber(const Value& v) {
    if (v.numberType() == NumberType::Bool) {
      out_.Bool(v.asBool());
    } else if (v.isFloating()) {
      const double d = v.asDouble();
      if (!std::isfinite(d)) fail("Invalid number value (NaN or infinite) in JSON write");
      // The shortest text that reads as the same number of the same type.
      char text[40];
      const auto end = v.numberType() == NumberType::Float
                           ? std::to_chars(text, text + sizeof text, static_cast<float>(d)).ptr
                           : std::to_chars(text, text + sizeof text, d).ptr;
      out_.RawValue(text, static_cast<std::size_t>(end - text), rapidjson::kNumberType);
    } else if (v.numberType() == NumberType::UnsignedLongLong) {
      out_.Uint64(static_cast<std::uint64_t>(v.asInt64()));
    } else {
      out_.Int64(v.asInt64());
    }
  }

  Writer& out_;
  std::vector<Container> open_;
  std::unordered_set<const Shared*> inside_;
};

template <class Writer>
Text written(const Value& root) {
  rapidjson::StringBuffer buffer;
  Writer writer(buffer);
  if constexpr (requires { writer.SetIndent(' ', 2); }) writer.SetIndent(' ', 2);
  Walk<Writer>(writer).run(root);
  return std::string_view(buffer.GetString(), buffer.GetSize());
}

}  // namespace

Text KesJSONGenerator::ToPrettyString(std::int32_t) const { return generate(true); }

Text KesJSONGenerator::generate(bool pretty) const {
  if (root_.isNil()) throw KesException("JSON was not initialized.");
  return pretty ? written<rapidjson::PrettyWriter<rapidjson::StringBuffer>>(root_)
                : written<rapidjson::Writer<rapidjson::StringBuffer>>(root_);
}

}  // namespace kes
