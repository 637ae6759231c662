// Immutable text, shared by value.
//
// Kept as UTF-8; positions and lengths that callers see count 16-bit units, as they
// do for the citizen's phone. Up to 14 bytes live in the Text itself, longer text is
// shared and counted, so copying never copies bytes. A half of a surrogate pair,
// which SubString and Chr can produce, is kept as the three bytes that UTF-8 would
// give it, and becomes the whole character again when its other half follows. A position in
// a long text is found by marks (text_marks.h), whatever its characters.
// Safe to hand to another thread. Positions out of range throw KesException.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kes {

class Value;

namespace detail {

struct TextRep {
  std::atomic<std::uint32_t> refs{1};
  std::uint32_t bytes = 0;
  std::uint32_t units = 0;  // equal to bytes exactly when all is ASCII
  char* data() { return reinterpret_cast<char*>(this + 1); }
  const char* data() const { return reinterpret_cast<const char*>(this + 1); }
  // Behind the bytes of a text for which marks are worthwhile: where they are.
  void* slot() const {
    const std::size_t behind = (sizeof(TextRep) + bytes + 7) & ~std::size_t{7};
    return const_cast<char*>(reinterpret_cast<const char*>(this)) + behind;
  }
};
// For that many bytes, still to be written, which make that many units.
TextRep* newTextRep(std::size_t bytes, std::size_t units);
void freeTextRep(TextRep* r) noexcept;

// The sixteen bytes that a Text and a Value are made of: a payload, then one byte of
// detail and one that tells what the payload is.
struct alignas(8) Cell {
  static constexpr std::size_t kInline = 14;
  unsigned char b[16];

  template <class T>
  T get() const noexcept {
    T v;
    std::memcpy(&v, b, sizeof(T));  // NOLINT(bugprone-sizeof-expression): pointers too
    return v;
  }
  template <class T>
  void put(T v) noexcept {
    std::memcpy(b, &v, sizeof(T));  // NOLINT(bugprone-sizeof-expression): pointers too
  }
  unsigned char& aux() { return b[14]; }
  unsigned char aux() const { return b[14]; }
  unsigned char& tag() { return b[15]; }
  unsigned char tag() const { return b[15]; }
  // Byte for byte. A short text is always kept within the cell, padded with zeros, so two
  // of them are equal exactly when their cells are.
  bool sameBits(const Cell& o) const noexcept { return std::memcmp(b, o.b, sizeof b) == 0; }
};

enum Tag : unsigned char { kNil, kNull, kNumber, kInlineText, kHeapText, kObject };

std::uint32_t countUnits(std::string_view utf8) noexcept;

}  // namespace detail

class Text {
 public:
  Text() noexcept { makeInline({}); }
  Text(const char* utf8) : Text(std::string_view(utf8 ? utf8 : "")) {}
  Text(const std::string& utf8) : Text(std::string_view(utf8)) {}
  // Bytes known to be valid UTF-8; what comes from outside goes through fromUtf8.
  Text(std::string_view utf8) {
    if (utf8.size() <= detail::Cell::kInline)
      makeInline(utf8);
    else
      makeHeap(utf8);
  }
  Text(const Text& o) noexcept : c_(o.c_) { retain(); }
  Text(Text&& o) noexcept : c_(o.c_) { o.makeInline({}); }
  ~Text() { release(); }
  Text& operator=(Text o) noexcept {
    std::swap(c_, o.c_);
    return *this;
  }

  // The text of bytes from outside, or nothing when they are not UTF-8.
  static std::optional<Text> fromUtf8(std::string_view bytes);
  static Text fromUtf16(std::u16string_view units);
  static Text fromUnit(char16_t unit);
  // A text whose size is known beforehand, which fill(char*) writes: valid UTF-8 of just that
  // many bytes and units.
  template <class Fill>
  static Text filled(std::size_t bytes, std::size_t units, Fill fill) {
    Text t;
    if (bytes <= detail::Cell::kInline) {
      fill(reinterpret_cast<char*>(t.c_.b));
      t.c_.aux() = static_cast<unsigned char>(bytes);
      return t;
    }
    auto* const rep = detail::newTextRep(bytes, units);
    t.c_.put(rep);
    t.c_.tag() = detail::kHeapText;
    fill(rep->data());
    return t;
  }

  std::string_view view() const noexcept {
    if (c_.tag() == detail::kInlineText) return {reinterpret_cast<const char*>(c_.b), c_.aux()};
    auto* r = c_.get<detail::TextRep*>();
    return {r->data(), r->bytes};
  }
  operator std::string_view() const noexcept { return view(); }
  std::string str() const { return std::string(view()); }
  std::u16string utf16() const;
  bool empty() const noexcept { return view().empty(); }
  bool isAscii() const noexcept;

  // Operations that the language gives every text.
  std::int32_t Length() const noexcept;
  std::int32_t IndexOf(std::string_view s) const { return IndexOf2(s, 0); }
  std::int32_t IndexOf2(std::string_view s, std::int32_t start) const;
  std::int32_t LastIndexOf(std::string_view s) const;
  std::int32_t LastIndexOf2(std::string_view s, std::int32_t start) const;
  Text Trim() const;
  Text SubString(std::int32_t begin) const { return SubString2(begin, Length()); }
  Text SubString2(std::int32_t begin, std::int32_t end) const;  // end is exclusive
  std::int32_t CompareTo(std::string_view s) const;             // -1, 0, 1
  bool EqualsIgnoreCase(std::string_view s) const;
  char16_t CharAt(std::int32_t i) const;
  bool StartsWith(std::string_view s) const;
  bool EndsWith(std::string_view s) const;
  bool Contains(std::string_view s) const { return IndexOf(s) != -1; }
  Text Replace(std::string_view what, std::string_view with) const;
  Text ToLowerCase() const;  // by "en_US"
  Text ToUpperCase() const;

  friend bool operator==(const Text& a, const Text& b) noexcept { return a.view() == b.view(); }
  friend bool operator==(const Text& a, std::string_view b) noexcept { return a.view() == b; }
  friend bool operator==(const Text& a, const char* b) noexcept { return a.view() == b; }
  friend bool operator==(const Text& a, const std::string& b) noexcept { return a.view() == b; }
  friend Text operator+(const Text& a, const Text& b);
  Text& operator+=(const Text& o) { return *this = *this + o; }

 private:
  friend class Value;
  explicit Text(const detail::Cell& c) noexcept : c_(c) { retain(); }
  void makeInline(std::string_view s) noexcept {
    std::memset(c_.b, 0, sizeof c_.b);
    if (!s.empty()) std::memcpy(c_.b, s.data(), s.size());
    c_.aux() = static_cast<unsigned char>(s.size());
    c_.tag() = detail::kInlineText;
  }
  void makeHeap(std::string_view s);
  void retain() const noexcept {
    if (c_.tag() == detail::kHeapText)
      c_.get<detail::TextRep*>()->refs.fetch_add(1, std::memory_order_relaxed);
  }
  void release() noexcept {
    if (c_.tag() == detail::kHeapText) {
      auto* r = c_.get<detail::TextRep*>();
      if (r->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) detail::freeTextRep(r);
    }
  }
  // Byte offset of a position in units; the unit may be the second of a pair.
  std::size_t byteOf(std::int32_t unit, bool& inPair) const;
  // The other way, for the byte at which a character begins.
  std::int32_t unitOf(std::size_t byte) const;

  detail::Cell c_;
};

// Whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes) noexcept;

}  // namespace kes
