#include "tools/layout_bytes.h"

#include <bit>
#include <unordered_map>

#include "runtime/views/layout/layout_format.h"

namespace layouts {

namespace format = kes::layout_format;

namespace {

class Writer {
 public:
  // The maps first, though they stand last: writing them gathers the texts.
  std::string write(const Layout& layout) {
    writeMap(layout.root);
    std::string body = std::move(out_);
    out_.clear();
    integer(0);  // header word
    integer(0);  // no skipped block
    integer(static_cast<std::int32_t>(texts_.size()));
    for (const auto& t : texts_) {
      integer(static_cast<std::int32_t>(t.size()));
      out_ += t;
    }
    integer(static_cast<std::int32_t>(layout.variants.size()));
    for (const auto& v : layout.variants) {
      number(std::bit_cast<std::uint32_t>(1.0f));
      integer(v.width);
      integer(v.height);
    }
    return out_ + body;
  }

 private:
  template <class T>
  void number(T v) {
    for (std::size_t i = 0; i < sizeof v; ++i) out_ += static_cast<char>(v >> (8 * i) & 0xFF);
  }
  void integer(std::int32_t v) { number(static_cast<std::uint32_t>(v)); }
  void cached(const std::string& text) {
    const auto [i, fresh] = index_.try_emplace(text, static_cast<std::int32_t>(texts_.size()));
    if (fresh) texts_.push_back(text);
    integer(i->second);
  }

  void writeMap(const Map& map) {
    for (const auto& e : map.entries) {
      cached(e.key);
      std::visit([this](const auto& v) { value(v); }, e.value);
    }
    cached("");
    out_ += static_cast<char>(format::kEnd);
  }
  void tag(format::Tag t) { out_ += static_cast<char>(t); }
  void value(std::int32_t v) {
    tag(format::kInteger);
    integer(v);
  }
  void value(const std::string& v) {
    tag(format::kCachedString);
    cached(v);
  }
  void value(bool v) {
    tag(format::kBoolean);
    out_ += static_cast<char>(v ? 1 : 0);
  }
  void value(Color v) {
    tag(format::kColor);
    for (int shift = 24; shift >= 0; shift -= 8) out_ += static_cast<char>(v.argb >> shift & 0xFF);
  }
  void value(float v) {
    tag(format::kFloat);
    number(std::bit_cast<std::uint32_t>(v));
  }
  void value(double v) {
    tag(format::kDouble);
    number(std::bit_cast<std::uint64_t>(v));
  }
  void value(const std::unique_ptr<Map>& v) {
    tag(format::kMap);
    writeMap(*v);
  }

  std::string out_;
  std::vector<std::string> texts_;
  std::unordered_map<std::string, std::int32_t> index_;
};

class Reader {
 public:
  explicit Reader(std::string_view bytes) : in_(bytes) {}

  Layout read() {
    integer();
    take(count("skipped bytes"));
    for (std::size_t n = count("texts"); n > 0; --n) texts_.emplace_back(take(count("text")));
    Layout layout;
    for (std::size_t n = count("variants"); n > 0; --n) {
      number<std::uint32_t>();
      const std::int32_t width = integer();
      layout.variants.push_back({width, integer()});
    }
    readMap(layout.root, 1);
    if (at_ != in_.size()) fail("bytes after the end");
    return layout;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw Error("at byte " + std::to_string(at_) + ": " + what);
  }
  std::string_view take(std::size_t n) {
    if (n > in_.size() - at_) fail("the file ends too early");
    const auto part = in_.substr(at_, n);
    at_ += n;
    return part;
  }
  template <class T>
  T number() {
    const auto part = take(sizeof(T));
    T v = 0;
    for (std::size_t i = 0; i < sizeof v; ++i)
      v |= static_cast<T>(static_cast<unsigned char>(part[i])) << (8 * i);
    return v;
  }
  std::int32_t integer() { return static_cast<std::int32_t>(number<std::uint32_t>()); }
  // A number of things that take at least a byte each.
  std::size_t count(const char* of) {
    const std::int32_t n = integer();
    if (n < 0 || static_cast<std::size_t>(n) > in_.size() - at_)
      fail("impossible number of " + std::string(of) + ": " + std::to_string(n));
    return static_cast<std::size_t>(n);
  }
  const std::string& cached() {
    const std::int32_t i = integer();
    if (i < 0 || static_cast<std::size_t>(i) >= texts_.size())
      fail("no text has the number " + std::to_string(i));
    return texts_[static_cast<std::size_t>(i)];
  }

  void readMap(Map& map, int depth) {
    if (depth > format::kMaxDepth) fail("maps nested too deeply");
    for (;;) {
      const std::string& key = cached();
      const auto tag = static_cast<std::int8_t>(take(1)[0]);
      if (tag == format::kEnd) return;
      if (tag == format::kMap)
        readMap(map.addMap(key), depth + 1);
      else
        map.entries.push_back({key, readValue(tag)});
    }
  }
  Value readValue(std::int8_t tag) {
    switch (tag) {
      case format::kInteger:
        return integer();
      case format::kString:
        return std::string(take(count("text")));
      case format::kBoolean:
        return take(1)[0] == 1;
      case format::kColor: {
        const auto b = take(4);
        std::uint32_t argb = 0;
        for (const char c : b) argb = argb << 8 | static_cast<unsigned char>(c);
        return Color{argb};
      }
      case format::kFloat:
        return std::bit_cast<float>(number<std::uint32_t>());
      case format::kCachedString:
        return cached();
      case format::kDouble:
        return std::bit_cast<double>(number<std::uint64_t>());
      default:
        fail("unknown type " + std::to_string(tag));
    }
  }

  std::string_view in_;
  std::size_t at_ = 0;
  std::vector<std::string> texts_;
};

}  // namespace

std::string toBytes(const Layout& layout) { return Writer().write(layout); }
Layout fromBytes(std::string_view bytes) { return Reader(bytes).read(); }

}  // namespace layouts
