// Writing JSON for the documents of the town hall.
#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <string_view>

namespace town {

class JsonText {
 public:
  JsonText& open() { return writer_.StartObject(), *this; }
  JsonText& close() { return writer_.EndObject(), *this; }
  JsonText& openList() { return writer_.StartArray(), *this; }
  JsonText& closeList() { return writer_.EndArray(), *this; }
  JsonText& key(std::string_view name) {
    return writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size())), *this;
  }
  JsonText& text(std::string_view key_, std::string_view value) {
    key(key_);
    return writer_.String(value.data(), static_cast<rapidjson::SizeType>(value.size())), *this;
  }
  JsonText& number(std::string_view key_, int value) {
    key(key_);
    return writer_.Int(value), *this;
  }
  std::string take() const { return {buffer_.GetString(), buffer_.GetSize()}; }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

}  // namespace town
