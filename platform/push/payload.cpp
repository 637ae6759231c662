#include "platform/push/payload.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cstdint>
#include <cstdio>

namespace push {

namespace {

// Walks the text without keeping it; answering false ends the walk.
class Walker : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Walker> {
 public:
  explicit Walker(Payload& payload) : payload_(payload) {}

  bool Default() {
    if (depth_ == 0) return refuse("it is no object");
    atId_ = false;
    return true;
  }
  bool Int(int n) { return number(n); }
  bool Uint(unsigned n) { return number(n); }
  bool Int64(std::int64_t n) { return number(n); }
  bool Uint64(std::uint64_t n) { return number(n); }
  bool String(const char* text, unsigned size, bool) {
    if (atId_) payload_.id.assign(text, size);
    return Default();
  }
  bool Key(const char* text, unsigned size, bool) {
    atId_ = depth_ == 1 && std::string_view(text, size) == "id";
    return true;
  }
  bool StartObject() { return descend(); }
  bool StartArray() { return depth_ == 0 ? Default() : descend(); }
  bool EndObject(unsigned) { return ascend(); }
  bool EndArray(unsigned) { return ascend(); }

 private:
  template <class N>
  bool number(N n) {
    if (atId_) payload_.id = std::to_string(n);
    return Default();
  }
  bool descend() {
    atId_ = false;
    return ++depth_ <= kDeepestPayload || refuse("it nests too deep");
  }
  bool ascend() {
    --depth_;
    return true;
  }
  bool refuse(const char* why) {
    payload_.refusal = why;
    return false;
  }

  Payload& payload_;
  std::size_t depth_ = 0;
  bool atId_ = false;
};

}  // namespace

Payload readPayload(std::string_view bytes) {
  Payload payload;
  if (bytes.size() > kLargestPayload) {
    payload.refusal = "it has " + std::to_string(bytes.size()) + " bytes";
    return payload;
  }
  Walker walker(payload);
  rapidjson::MemoryStream text(bytes.data(), bytes.size());
  rapidjson::Reader reader;
  constexpr unsigned kFlags =
      rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
  if (!reader.Parse<kFlags>(text, walker) && payload.refusal.empty())
    payload.refusal = "it is no JSON, from byte " + std::to_string(reader.GetErrorOffset());
  return payload;
}

std::string digest(std::string_view bytes) {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (const unsigned char byte : bytes) hash = (hash ^ byte) * 0x100000001b3u;
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

}  // namespace push
