// Writing the JSON that the host serves: calls one after the other, each object and list
// closed by its own. A value on the stack; any thread.
#pragma once

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace town {

template <class Writer>
class JsonWriter {
 public:
  JsonWriter() {
    if constexpr (std::is_same_v<Writer, rapidjson::PrettyWriter<rapidjson::StringBuffer>>)
      writer_.SetIndent(' ', 1);
  }
  JsonWriter& open() { return writer_.StartObject(), *this; }
  JsonWriter& open(std::string_view name) { return key(name).open(); }
  JsonWriter& close() { return writer_.EndObject(), *this; }
  JsonWriter& openList() { return writer_.StartArray(), *this; }
  JsonWriter& openList(std::string_view name) { return key(name).openList(); }
  JsonWriter& closeList() { return writer_.EndArray(), *this; }
  JsonWriter& key(std::string_view name) { return writer_.Key(name.data(), size(name)), *this; }
  JsonWriter& text(std::string_view name, std::string_view value) {
    return key(name), writer_.String(value.data(), size(value)), *this;
  }
  JsonWriter& number(std::string_view name, std::int64_t value) {
    return key(name), writer_.Int64(value), *this;
  }
  JsonWriter& degrees(std::string_view name, double value) {
    return key(name), writer_.Double(value), *this;
  }
  JsonWriter& flag(std::string_view name, bool value) {
    return key(name), writer_.Bool(value), *this;
  }
  std::string take() const { return {buffer_.GetString(), buffer_.GetSize()}; }

 private:
  static rapidjson::SizeType size(std::string_view text) {
    return static_cast<rapidjson::SizeType>(text.size());
  }

  rapidjson::StringBuffer buffer_;
  Writer writer_{buffer_};
};

// As a service answers.
using JsonText = JsonWriter<rapidjson::Writer<rapidjson::StringBuffer>>;
// A document that people look after: a field a line.
using JsonPage = JsonWriter<rapidjson::PrettyWriter<rapidjson::StringBuffer>>;

}  // namespace town
