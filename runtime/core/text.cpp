#include "runtime/core/text.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

#include "platform/base/utf8.h"
#include "runtime/core/exception.h"
#include "runtime/core/slab.h"
#include "runtime/core/text/utf8.h"
#include "runtime/core/text_marks.h"

namespace kes {

namespace detail {

TextRep* newTextRep(std::size_t bytes, std::size_t units) {
  if (bytes > std::numeric_limits<std::uint32_t>::max()) throw KesException("Text too long");
  const bool marked = TextMarks::areWorthwhile(bytes, units);
  const std::size_t room = sizeof(TextRep) + bytes;
  auto* r = new (Slab::allocate(marked ? ((room + 7) & ~std::size_t{7}) + 8 : room)) TextRep;
  r->bytes = static_cast<std::uint32_t>(bytes);
  r->units = static_cast<std::uint32_t>(units);
  if (marked) new (r->slot()) std::atomic<const std::uint32_t*>(nullptr);
  return r;
}

void freeTextRep(TextRep* r) noexcept {
  TextMarks::free(*r);
  Slab::free(r);
}

std::uint32_t countUnits(std::string_view utf8) noexcept {
  // One unit for each byte, less those that go on with a character, and one more for
  // each surrogate pair; eight bytes at a time, each with a one of its own to count.
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  std::size_t units = utf8.size();
  const char* p = utf8.data();
  std::size_t left = utf8.size();
  const auto count = [&](std::uint64_t w) {
    if (!(w & (kOnes << 7))) return;
    const std::uint64_t high = w >> 7 & kOnes;
    const std::uint64_t goesOn = high & ~(w >> 6);
    const std::uint64_t leadsFour = high & (w >> 6) & (w >> 5) & (w >> 4);
    units -= goesOn * kOnes >> 56;
    units += leadsFour * kOnes >> 56;
  };
  for (; left >= 8; p += 8, left -= 8) {
    std::uint64_t w;
    std::memcpy(&w, p, 8);
    count(w);
  }
  std::uint64_t w = 0;
  if (left) std::memcpy(&w, p, left);
  count(w);
  return static_cast<std::uint32_t>(units);
}

}  // namespace detail

namespace {

constexpr auto npos = std::string_view::npos;

unsigned char byteAt(std::string_view s, std::size_t i) { return static_cast<unsigned char>(s[i]); }

bool allAscii(std::string_view s) {
  unsigned char seen = 0;
  for (const char c : s) seen |= static_cast<unsigned char>(c);
  return seen < 0x80;
}

// Whether a half of a surrogate pair stands somewhere by itself.
bool hasHalf(std::string_view s) {
  for (std::size_t i = 0; (i = s.find('\xED', i)) != npos; ++i)
    if (i + 1 < s.size() && byteAt(s, i + 1) >= 0xA0) return true;
  return false;
}

std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0xC0) return 1;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// Walks the 16-bit units of UTF-8. Damaged bytes never lead it out of the text.
class UnitReader {
 public:
  explicit UnitReader(std::string_view s) : s_(s) {}
  bool done() const { return !low_ && at_ >= s_.size(); }
  char16_t next() {
    if (low_) return std::exchange(low_, u'\0');
    const unsigned char lead = byteAt(s_, at_);
    const std::size_t n = std::min(sequenceLength(lead), s_.size() - at_);
    char32_t c = n == 1 ? lead : lead & (0x7F >> n);
    for (std::size_t i = 1; i < n; ++i) c = c << 6 | (byteAt(s_, at_ + i) & 0x3F);
    at_ += n;
    if (c < 0x10000) return static_cast<char16_t>(c);
    low_ = static_cast<char16_t>(0xDC00 | (c & 0x3FF));
    return static_cast<char16_t>(0xD7C0 + (c >> 10));
  }

 private:
  std::string_view s_;
  std::size_t at_ = 0;
  char16_t low_ = 0;
};

std::u16string toUtf16(std::string_view s) {
  std::u16string out;
  if (allAscii(s)) {
    out.resize(s.size());
    std::copy(s.begin(), s.end(), out.begin());
    return out;
  }
  out.reserve(s.size());
  for (UnitReader r(s); !r.done();) out.push_back(r.next());
  return out;
}

icu::UnicodeString toIcu(std::string_view s) {
  const std::u16string u = toUtf16(s);
  return {u.data(), static_cast<std::int32_t>(u.size())};
}

Text fromIcu(const icu::UnicodeString& u) {
  return Text::fromUtf16({u.getBuffer(), static_cast<std::size_t>(u.length())});
}

const icu::Locale& textLocale() {
  static const icu::Locale locale("en", "US");
  return locale;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

[[noreturn]] void failRange(std::int64_t begin, std::int64_t end, std::int32_t length) {
  throw KesException("NSRangeException", formatText("Range %@ to %@ is outside a text of length %@",
                                                    {std::to_string(begin), std::to_string(end),
                                                     std::to_string(length)}));
}

std::int32_t position(std::size_t found) {
  return found == npos ? -1 : static_cast<std::int32_t>(found);
}

bool isSpaceOrLineEnd(UChar32 c) {
  if ((c >= 0x09 && c <= 0x0D) || c == 0x85) return true;
  return (U_GET_GC_MASK(c) & U_GC_Z_MASK) != 0;
}

}  // namespace

void Text::makeHeap(std::string_view s) {
  auto* r = detail::newTextRep(s.size(), detail::countUnits(s));
  std::memcpy(r->data(), s.data(), s.size());
  std::memset(c_.b, 0, sizeof c_.b);
  c_.put(r);
  c_.tag() = detail::kHeapText;
}

std::optional<Text> Text::fromUtf8(std::string_view bytes) {
  if (!isUtf8(bytes)) return std::nullopt;
  return Text(bytes);
}

Text Text::fromUtf16(std::u16string_view units) {
  std::string out;
  out.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t c = units[i];
    if (U16_IS_LEAD(c) && i + 1 < units.size() && U16_IS_TRAIL(units[i + 1]))
      c = U16_GET_SUPPLEMENTARY(c, units[++i]);
    out += platform::toUtf8(c);
  }
  return Text(out);
}

Text Text::fromUnit(char16_t unit) { return fromUtf16({&unit, 1}); }

std::u16string Text::utf16() const { return toUtf16(view()); }

bool Text::isAscii() const noexcept {
  if (c_.tag() == detail::kInlineText) return allAscii(view());
  const auto* r = c_.get<detail::TextRep*>();
  return r->bytes == r->units;
}

std::int32_t Text::Length() const noexcept {
  if (c_.tag() == detail::kInlineText) return static_cast<std::int32_t>(detail::countUnits(view()));
  return static_cast<std::int32_t>(c_.get<detail::TextRep*>()->units);
}

std::size_t Text::byteOf(std::int32_t unit, bool& inPair) const {
  inPair = false;
  if (isAscii()) return static_cast<std::size_t>(unit);
  const std::string_view s = view();
  std::size_t at = 0;
  if (c_.tag() == detail::kHeapText) {
    const auto mark =
        detail::TextMarks::before(*c_.get<detail::TextRep*>(), static_cast<std::uint32_t>(unit));
    at = mark.byte;
    unit -= static_cast<std::int32_t>(mark.unit);
    if (unit < 0) {
      inPair = true;
      return at - 4;
    }
  }
  while (unit > 0 && at < s.size()) {
    const std::size_t n = sequenceLength(byteAt(s, at));
    if (n == 4 && unit == 1) {
      inPair = true;
      break;
    }
    unit -= n == 4 ? 2 : 1;
    at += n;
  }
  return std::min(at, s.size());
}

std::int32_t Text::unitOf(std::size_t byte) const {
  if (isAscii()) return static_cast<std::int32_t>(byte);
  detail::TextMarks::Place mark;
  if (c_.tag() == detail::kHeapText)
    mark = detail::TextMarks::beforeByte(*c_.get<detail::TextRep*>(), byte);
  const auto rest = detail::countUnits(view().substr(mark.byte, byte - mark.byte));
  return static_cast<std::int32_t>(mark.unit + rest);
}

std::int32_t Text::IndexOf2(std::string_view s, std::int32_t start) const {
  const std::int32_t length = Length();
  if (length == 0) return -1;
  if (start < 0 || start > length) failRange(start, length, length);
  if (s.empty()) return -1;
  if (hasHalf(s)) return position(utf16().find(toUtf16(s), static_cast<std::size_t>(start)));
  bool inPair;
  const std::size_t from = byteOf(start, inPair) + (inPair ? 1 : 0);
  const std::size_t found = view().find(s, from);
  return found == npos ? -1 : unitOf(found);
}

std::int32_t Text::LastIndexOf(std::string_view s) const { return LastIndexOf2(s, Length()); }

std::int32_t Text::LastIndexOf2(std::string_view s, std::int32_t start) const {
  const std::int32_t length = Length();
  if (start < 0 || start > length) failRange(start, length, length);
  if (s.empty()) return -1;
  if (hasHalf(s)) return position(utf16().rfind(toUtf16(s), static_cast<std::size_t>(start)));
  bool inPair;
  const std::size_t found = view().rfind(s, byteOf(start, inPair));
  return found == npos ? -1 : unitOf(found);
}

bool Text::StartsWith(std::string_view s) const {
  return hasHalf(s) ? utf16().starts_with(toUtf16(s)) : view().starts_with(s);
}

bool Text::EndsWith(std::string_view s) const {
  return hasHalf(s) ? utf16().ends_with(toUtf16(s)) : view().ends_with(s);
}

Text Text::Trim() const {
  const std::string_view s = view();
  std::size_t begin = 0, end = s.size();
  while (begin < end && isSpaceOrLineEnd(UnitReader(s.substr(begin)).next()))
    begin += std::min(sequenceLength(byteAt(s, begin)), end - begin);
  while (end > begin) {
    std::size_t last = end - 1;
    while (last > begin && (byteAt(s, last) & 0xC0) == 0x80) --last;
    if (!isSpaceOrLineEnd(UnitReader(s.substr(last)).next())) break;
    end = last;
  }
  return end - begin == s.size() ? *this : Text(s.substr(begin, end - begin));
}

Text Text::SubString2(std::int32_t begin, std::int32_t end) const {
  const std::int32_t length = Length();
  if (begin < 0 || end > length || begin > end) failRange(begin, end, length);
  if (begin == 0 && end == length) return *this;
  bool beginInPair, endInPair;
  const std::size_t from = byteOf(begin, beginInPair);
  const std::size_t to = byteOf(end, endInPair);
  if (beginInPair || endInPair)
    return fromUtf16(std::u16string_view(utf16()).substr(static_cast<std::size_t>(begin),
                                                         static_cast<std::size_t>(end - begin)));
  return Text(view().substr(from, to - from));
}

std::int32_t Text::CompareTo(std::string_view s) const {
  const std::string_view mine = view();
  std::size_t i = static_cast<std::size_t>(
      std::mismatch(mine.begin(),
                    mine.begin() + static_cast<std::ptrdiff_t>(std::min(mine.size(), s.size())),
                    s.begin())
          .first -
      mine.begin());
  if (i == mine.size() || i == s.size())
    return mine.size() == s.size() ? 0 : mine.size() < s.size() ? -1 : 1;
  const unsigned char a = byteAt(mine, i), b = byteAt(s, i);
  // Bytes order as units do, except that surrogates come before what follows them.
  if (a < 0x80 || b < 0x80) return a < b ? -1 : 1;
  while (i > 0 && (byteAt(mine, i) & 0xC0) == 0x80) --i;
  if (byteAt(mine, i) < 0xED && byteAt(s, i) < 0xED) return a < b ? -1 : 1;
  UnitReader left(mine.substr(i)), right(s.substr(i));
  while (!left.done() && !right.done()) {
    const char16_t l = left.next(), r = right.next();
    if (l != r) return l < r ? -1 : 1;
  }
  return left.done() ? (right.done() ? 0 : -1) : 1;
}

bool Text::EqualsIgnoreCase(std::string_view s) const {
  if (isAscii() && allAscii(s)) {
    const std::string_view mine = view();
    return std::equal(mine.begin(), mine.end(), s.begin(), s.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
  }
  return toIcu(view()).foldCase() == toIcu(s).foldCase();
}

char16_t Text::CharAt(std::int32_t i) const {
  const std::int32_t length = Length();
  if (i < 0 || i >= length) failRange(i, i + std::int64_t{1}, length);
  bool inPair;
  UnitReader reader(view().substr(byteOf(i, inPair)));
  const char16_t first = reader.next();
  return inPair ? reader.next() : first;
}

Text Text::Replace(std::string_view what, std::string_view with) const {
  const std::string_view s = view();
  if (what.empty()) return *this;
  if (hasHalf(s) || hasHalf(what) || hasHalf(with)) {
    // Halves may part from their partners or find new ones.
    const std::u16string from = toUtf16(what), to = toUtf16(with);
    std::u16string out = utf16();
    for (std::size_t at = 0; (at = out.find(from, at)) != npos; at += to.size())
      out.replace(at, from.size(), to);
    return fromUtf16(out);
  }
  std::size_t found = s.find(what);
  if (found == npos) return *this;
  std::string out;
  out.reserve(s.size());
  std::size_t at = 0;
  for (; found != npos; found = s.find(what, at)) {
    out.append(s, at, found - at).append(with);
    at = found + what.size();
  }
  out.append(s, at);
  return Text(out);
}

Text Text::ToLowerCase() const {
  if (!isAscii()) return fromIcu(toIcu(view()).toLower(textLocale()));
  std::string out = str();
  std::transform(out.begin(), out.end(), out.begin(), lower);
  return Text(out);
}

Text Text::ToUpperCase() const {
  if (!isAscii()) return fromIcu(toIcu(view()).toUpper(textLocale()));
  std::string out = str();
  std::transform(out.begin(), out.end(), out.begin(), upper);
  return Text(out);
}

Text operator+(const Text& a, const Text& b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  const std::string_view x = a.view(), y = b.view();
  const bool high = x.size() >= 3 && byteAt(x, x.size() - 3) == 0xED &&
                    byteAt(x, x.size() - 2) >= 0xA0 && byteAt(x, x.size() - 2) < 0xB0;
  const bool low = y.size() >= 3 && byteAt(y, 0) == 0xED && byteAt(y, 1) >= 0xB0;
  if (high && low) return Text::fromUtf16(a.utf16() + b.utf16());
  return Text::filled(x.size() + y.size(),
                      static_cast<std::size_t>(a.Length()) + static_cast<std::size_t>(b.Length()),
                      [&](char* joined) {
                        std::memcpy(joined, x.data(), x.size());
                        std::memcpy(joined + x.size(), y.data(), y.size());
                      });
}

bool isUtf8(std::string_view bytes) noexcept { return detail::unitsIfUtf8(bytes).has_value(); }

}  // namespace kes
