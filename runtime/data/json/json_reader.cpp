#include "runtime/data/json/json_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

#include "platform/base/utf8.h"
#include "runtime/core/array_store.h"
#include "runtime/core/map.h"
#include "runtime/core/text/utf8.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kes {

namespace {

using detail::Cell;

constexpr std::size_t kBlock = 16;
constexpr std::size_t kDistinctByEye = 12;  // tables that a Dictionary searches in line

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

#if defined(__SSE2__)
// Sixteen bytes of text, seen at once. The bits of a mask stand for bytes, lowest first.
class Block {
 public:
  explicit Block(const char* p) : b_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))) {}

  // Bytes at which a plain run of a string ends: quote, backslash, control character.
  unsigned stops() const {
    const __m128i quote = _mm_cmpeq_epi8(b_, _mm_set1_epi8('"'));
    const __m128i slash = _mm_cmpeq_epi8(b_, _mm_set1_epi8('\\'));
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(b_, _mm_set1_epi8(0x1F)), b_);
    return mask(_mm_or_si128(_mm_or_si128(quote, slash), control));
  }
  unsigned wide() const { return mask(b_); }
  unsigned notBlank() const { return ~mask(_mm_cmpeq_epi8(b_, _mm_set1_epi8(' '))) & 0xFFFF; }

  // The first n bytes as the cell of a short text.
  void storeShort(Cell& out, std::size_t n) const {
    const auto& parts = kShort[n];
    const __m128i keep = _mm_load_si128(reinterpret_cast<const __m128i*>(parts.keep));
    const __m128i tail = _mm_load_si128(reinterpret_cast<const __m128i*>(parts.tail));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out.b),
                     _mm_or_si128(_mm_and_si128(b_, keep), tail));
  }

 private:
  struct alignas(16) Parts {
    unsigned char keep[16];
    unsigned char tail[16];
  };
  static constexpr auto kShort = [] {
    std::array<Parts, Cell::kInline + 1> all{};
    for (std::size_t n = 0; n < all.size(); ++n) {
      for (std::size_t i = 0; i < n; ++i) all[n].keep[i] = 0xFF;
      all[n].tail[14] = static_cast<unsigned char>(n);
      all[n].tail[15] = detail::kInlineText;
    }
    return all;
  }();
  static unsigned mask(__m128i v) { return static_cast<unsigned>(_mm_movemask_epi8(v)); }

  __m128i b_;
};
#endif

void storeShort(Cell& out, std::string_view bytes) {
  std::memset(out.b, 0, sizeof out.b);
  std::memcpy(out.b, bytes.data(), bytes.size());
  out.aux() = static_cast<unsigned char>(bytes.size());
  out.tag() = detail::kInlineText;
}

void storeNumber(Cell& out, NumberType type, std::int64_t payload) {
  std::memset(out.b, 0, sizeof out.b);
  out.put(payload);
  out.aux() = static_cast<unsigned char>(type);
  out.tag() = detail::kNumber;
}

void storeDouble(Cell& out, double d) {
  std::int64_t bits;
  std::memcpy(&bits, &d, sizeof bits);
  storeNumber(out, NumberType::Double, bits);
}

std::string_view viewOf(const Cell& c) {
  if (c.tag() == detail::kInlineText) return {reinterpret_cast<const char*>(c.b), c.aux()};
  auto* r = c.get<detail::TextRep*>();
  return {r->data(), r->bytes};
}

std::size_t keyHash(std::string_view s) {
  std::uint64_t first, last;
  std::memcpy(&first, s.data(), 8);
  std::memcpy(&last, s.data() + s.size() - 8, 8);
  const std::uint64_t h = (first ^ (last << 5 | last >> 59) ^ s.size()) * 0x9E3779B97F4A7C15ull;
  return static_cast<std::size_t>(h >> 40);
}

constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

}  // namespace

JsonReader::JsonReader(std::string_view utf8)
    : begin_(utf8.data()), end_(utf8.data() + utf8.size()), p_(begin_), keys_(kKeySlots) {
  for (auto& k : keys_) k.tag() = detail::kNil;
}

JsonReader::~JsonReader() {
  for (std::uint32_t i = 0; i < size_; ++i) Value::takeIn(stack_[i]);
  for (const auto& k : keys_) Value::takeIn(k);
}

void JsonReader::fail(const char* reason, const char* at) const {
  throw JsonError{reason, static_cast<std::size_t>(at - begin_)};
}

void JsonReader::grow() {
  const std::uint32_t more = capacity_ ? capacity_ * 2 : 256;
  auto larger = std::make_unique_for_overwrite<Cell[]>(more);
  if (size_) std::memcpy(larger.get(), stack_.get(), size_ * sizeof(Cell));
  stack_ = std::move(larger);
  capacity_ = more;
}

inline void JsonReader::push(const Cell& c) {
  if (size_ == capacity_) grow();
  stack_[size_++] = c;
}

// From the first bracket on p_ stays on or before the last byte, which closes the top level: no
// step but the closing of a container and the inside of a string can pass it.
Value JsonReader::read() {
  findEnds();
  for (;;) {
    // p_ is where a value begins.
    if (*p_ == '{' || *p_ == '[') {
      if (open()) continue;
    } else {
      readScalar();
    }
    if (!step()) break;
  }
  if (p_ != end_) fail("The text goes on after its end", p_);
  return Value::takeIn(stack_[--size_]);
}

// To the first bracket, and back to the last one.
void JsonReader::findEnds() {
  if (std::string_view(begin_, static_cast<std::size_t>(end_ - begin_)).starts_with("\xEF\xBB\xBF"))
    p_ += 3;
  while (end_ > p_ && isSpace(end_[-1])) --end_;
  if (p_ == end_) fail("The text is empty", p_);
  while (isSpace(*p_)) ++p_;
  if (*p_ != '{' && *p_ != '[') fail("Neither an object nor an array is at the top", p_);
  if (end_[-1] != '}' && end_[-1] != ']')
    fail("The text ends too early, or goes on too long", end_);
}

// Enters a container; true when its first value comes next, false when there is none.
inline bool JsonReader::open() {
  const bool isObject = *p_ == '{';
  frames_.push_back({size_, isObject});
  ++p_;
  skipSpace();
  if (*p_ == (isObject ? '}' : ']')) return false;
  if (isObject) readName();
  return true;
}

// Behind a value, or in an empty container: closes what ends here and goes on to where the next
// value begins; false when there is none.
inline bool JsonReader::step() {
  for (;;) {
    skipSpace();
    const Frame& f = frames_.back();
    if (*p_ == ',') {
      ++p_;
      skipSpace();
      if (f.isObject) readName();
      return true;
    }
    if (*p_ != (f.isObject ? '}' : ']'))
      fail(f.isObject ? "A comma or a closing brace is missing"
                      : "A comma or a closing bracket is missing",
           p_);
    ++p_;
    close();
    if (frames_.empty()) return false;
    if (p_ == end_) fail("The text ends too early", p_);
  }
}

// A member's name and its colon.
inline void JsonReader::readName() {
  if (*p_ != '"') fail("The name of a member is missing", p_);
  Cell name;
  readString(name, true);
  push(name);
  skipSpace();
  if (*p_ != ':') fail("A colon is missing after the name of a member", p_);
  ++p_;
  skipSpace();
}

inline void JsonReader::readScalar() {
  Cell c;
  switch (*p_) {
    case '"':
      readString(c, false);
      break;
    case 't':
      expectWord("true");
      storeNumber(c, NumberType::Bool, 1);
      break;
    case 'f':
      expectWord("false");
      storeNumber(c, NumberType::Bool, 0);
      break;
    case 'n':
      expectWord("null");
      std::memset(c.b, 0, sizeof c.b);
      c.tag() = detail::kNull;
      break;
    default:
      readNumber(c);
  }
  push(c);
}

void JsonReader::close() {
  const Frame f = frames_.back();
  frames_.pop_back();
  if (f.isObject)
    closeObject(f.base);
  else
    closeArray(f.base);
}

inline void JsonReader::skipSpace() {
  if (p_ == end_) fail("The text ends too early", p_);
  if (static_cast<unsigned char>(*p_) > ' ') return;
#if defined(__SSE2__)
  if (isSpace(*p_)) ++p_;
  for (; static_cast<std::size_t>(end_ - p_) >= kBlock; p_ += kBlock)
    if (const unsigned other = Block(p_).notBlank()) {
      p_ += __builtin_ctz(other);
      break;
    }
#endif
  while (isSpace(*p_)) ++p_;
}

void JsonReader::expectWord(std::string_view word) {
  if (static_cast<std::size_t>(end_ - p_) <= word.size() ||
      std::memcmp(p_, word.data(), word.size()) != 0)
    fail("A value is expected", p_);
  p_ += word.size();
}

inline void JsonReader::readString(Cell& out, bool isKey) {
  const char* const begin = ++p_;
  const char* p = begin;
  unsigned wide = 0;
#if defined(__SSE2__)
  if (static_cast<std::size_t>(end_ - p) >= kBlock) {
    const Block first(p);
    if (const unsigned stops = first.stops()) {
      const auto n = static_cast<unsigned>(__builtin_ctz(stops));
      wide = first.wide() & ((1u << n) - 1);
      if (n <= Cell::kInline && !wide && p[n] == '"') {
        first.storeShort(out, n);
        p_ = p + n + 1;
        return;
      }
      p += n;
    } else {
      wide = first.wide();
      p = scanPlain(p + kBlock, wide);
    }
  } else
#endif
    p = scanPlain(p, wide);
  if (p == end_) fail("A string has no end", begin - 1);
  if (*p != '"') return readEscaped(out, begin, isKey);
  p_ = p + 1;
  makeText(out, {begin, static_cast<std::size_t>(p - begin)}, wide != 0, isKey);
}

// The first byte from p on at which a plain run ends, or the end of the text.
const char* JsonReader::scanPlain(const char* p, unsigned& wide) const {
#if defined(__SSE2__)
  for (; static_cast<std::size_t>(end_ - p) >= kBlock; p += kBlock) {
    const Block b(p);
    if (const unsigned stops = b.stops()) {
      const auto n = static_cast<unsigned>(__builtin_ctz(stops));
      wide |= b.wide() & ((1u << n) - 1);
      return p + n;
    }
    wide |= b.wide();
  }
#endif
  for (; p != end_; ++p) {
    const auto c = static_cast<unsigned char>(*p);
    if (c == '"' || c == '\\' || c < 0x20) break;
    wide |= c & 0x80;
  }
  return p;
}

char32_t JsonReader::readHex(const char* p) const {
  if (end_ - p < 4) fail("An escape has no end", p);
  unsigned unit = 0;
  const auto [last, error] = std::from_chars(p, p + 4, unit, 16);
  if (error != std::errc() || last != p + 4 || *p == '-')
    fail("An escape needs four hexadecimal digits", p);
  return unit;
}

void JsonReader::readEscaped(Cell& out, const char* begin, bool isKey) {
  scratch_.clear();
  unsigned wide = 0;
  for (const char* p = begin;;) {
    const char* const run = p;
    p = scanPlain(p, wide);
    scratch_.append(run, p);
    if (p == end_) fail("A string has no end", begin - 1);
    if (*p == '"') {
      p_ = p + 1;
      break;
    }
    if (*p != '\\') fail("A control character stands in a string", p);
    const char* const escape = p++;
    if (p == end_) fail("A string has no end", begin - 1);
    switch (const char c = *p++) {
      case '"':
      case '\\':
      case '/':
        scratch_ += c;
        break;
      case 'b':
        scratch_ += '\b';
        break;
      case 'f':
        scratch_ += '\f';
        break;
      case 'n':
        scratch_ += '\n';
        break;
      case 'r':
        scratch_ += '\r';
        break;
      case 't':
        scratch_ += '\t';
        break;
      case 'u': {
        char32_t u = readHex(p);
        p += 4;
        if (u >= 0xD800 && u < 0xE000) {
          const bool pair = u < 0xDC00 && end_ - p >= 6 && p[0] == '\\' && p[1] == 'u';
          const char32_t low = pair ? readHex(p + 2) : 0;
          if (low >= 0xDC00 && low <= 0xDFFF) {
            u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
            p += 6;
          } else {
            u = 0xFFFD;  // somebody clipped an emoji: no reason to lose the document
          }
        }
        wide |= u >= 0x80;
        scratch_ += platform::toUtf8(u);
        break;
      }
      default:
        fail("An escape is unknown", escape);
    }
  }
  p_ -= 1;  // for a position inside the string, should it be no UTF-8
  makeText(out, scratch_, wide != 0, isKey);
  p_ += 1;
}

void JsonReader::makeText(Cell& out, std::string_view bytes, bool mayBeWide, bool isKey) {
  std::uint32_t units = static_cast<std::uint32_t>(bytes.size());
  if (mayBeWide) {
    const auto counted = detail::unitsIfUtf8(bytes);
    if (!counted) fail("A string is not UTF-8", p_ - 1);
    units = *counted;
  }
  if (bytes.size() <= Cell::kInline) return storeShort(out, bytes);
  if (isKey && keysShared_) return internKey(out, bytes, units);
  makeLong(out, bytes, units);
}

void JsonReader::makeLong(Cell& out, std::string_view bytes, std::uint32_t units) {
  auto* rep = detail::newTextRep(bytes.size(), units);
  std::memcpy(rep->data(), bytes.data(), bytes.size());
  std::memset(out.b, 0, sizeof out.b);
  out.put(rep);
  out.tag() = detail::kHeapText;
}

void JsonReader::internKey(Cell& out, std::string_view bytes, std::uint32_t units) {
  std::size_t slot = keyHash(bytes) % kKeySlots;
  while (keys_[slot].tag() != detail::kNil && viewOf(keys_[slot]) != bytes)
    slot = (slot + 1) % kKeySlots;
  if (keys_[slot].tag() == detail::kNil) {
    if (keyCount_ == kKeySlots / 2) {
      // A document of names without number: what is not kept once cannot be compared by
      // its address either.
      keysShared_ = false;
      return makeLong(out, bytes, units);
    }
    makeLong(keys_[slot], bytes, units);
    ++keyCount_;
  }
  out = keys_[slot];
  out.get<detail::TextRep*>()->refs.fetch_add(1, std::memory_order_relaxed);
}

void JsonReader::readNumber(Cell& out) {
  const char* const begin = p_;
  const char* p = p_;
  const bool negative = *p == '-';
  if (negative) ++p;
  if (!isDigit(*p)) fail(negative ? "A digit is expected" : "A value is expected", p);
  const char* const digits = p;
  std::uint64_t n = 0;
  if (*p == '0')
    ++p;
  else
    for (; isDigit(*p); ++p) n = n * 10 + static_cast<unsigned>(*p - '0');
  if (isDigit(*p)) fail("A number begins with a needless zero", digits);
  if (*p == '.' || *p == 'e' || *p == 'E') {
    p_ = p;
    return readDouble(out, begin);
  }
  p_ = p;
  if (p - digits > 18) {
    // More than 64 bits may hold, or at the edge of them.
    std::int64_t exact = 0;
    if (std::from_chars(begin, p, exact).ec == std::errc())
      return storeNumber(out, NumberType::LongLong, exact);
    std::uint64_t large = 0;
    if (!negative && std::from_chars(begin, p, large).ec == std::errc())
      return storeNumber(out, NumberType::UnsignedLongLong, static_cast<std::int64_t>(large));
    return readDouble(out, begin);
  }
  storeNumber(out, NumberType::LongLong,
              negative ? -static_cast<std::int64_t>(n) : static_cast<std::int64_t>(n));
}

// The number from `begin` on, of which p_ has passed the whole part.
void JsonReader::readDouble(Cell& out, const char* begin) {
  const char* p = p_;
  if (*p == '.') {
    ++p;
    if (!isDigit(*p)) fail("A digit is expected", p);
    while (isDigit(*p)) ++p;
  }
  const char* const mantissaEnd = p;
  if (*p == 'e' || *p == 'E') {
    ++p;
    if (*p == '+' || *p == '-') ++p;
    if (!isDigit(*p)) fail("A digit is expected", p);
    while (isDigit(*p)) ++p;
  }
  p_ = p;
  // Up to 15 digits and 22 places are exact in one division.
  const char* const first = *begin == '-' ? begin + 1 : begin;
  if (mantissaEnd == p && mantissaEnd - first <= 16) {
    std::uint64_t n = 0;
    int places = -1;
    for (const char* d = first; d != p; ++d) {
      if (*d == '.') {
        places = static_cast<int>(p - d) - 1;
        continue;
      }
      n = n * 10 + static_cast<unsigned>(*d - '0');
    }
    const double d =
        static_cast<double>(n) / kPowersOfTen[static_cast<std::size_t>(std::max(places, 0))];
    return storeDouble(out, *begin == '-' ? -d : d);
  }
  double d = 0;
  const auto result = std::from_chars(begin, p, d);
  if (result.ec == std::errc::result_out_of_range) {
    // Too large is refused, too small is zero: told apart by where the first digit stands.
    const char* significant = first;
    while (significant != mantissaEnd && (*significant == '0' || *significant == '.'))
      ++significant;
    std::int64_t exponent = 0;
    if (mantissaEnd != p) {
      const char* e = mantissaEnd + 1;
      if (*e == '+') ++e;
      if (std::from_chars(e, p, exponent).ec != std::errc())
        exponent = *e == '-' ? std::numeric_limits<std::int32_t>::min()
                             : std::numeric_limits<std::int32_t>::max();
    }
    const char* const point = std::find(first, mantissaEnd, '.');
    if (exponent + (point - significant) > 0) fail("A number is too large", begin);
    d = *begin == '-' ? -0.0 : 0.0;
  }
  storeDouble(out, d);
}

bool JsonReader::keysDiffer(const Cell* entries, std::size_t count) {
  if (count < 2) return true;
  if (count > kDistinctByEye) return false;
  auto& shape = shapes_[(count * 5 + entries[0].b[0] + entries[0].b[14]) % kShapes];
  if (keysShared_ && shape.size() == count) {
    std::size_t i = 0;
    while (i < count && entries[2 * i].sameBits(shape[i])) ++i;
    if (i == count) return true;
  }
  for (std::size_t i = 1; i < count; ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (viewOf(entries[2 * i]) == viewOf(entries[2 * j])) return false;
  if (keysShared_) {
    shape.resize(count);
    for (std::size_t i = 0; i < count; ++i) shape[i] = entries[2 * i];
  }
  return true;
}

void JsonReader::closeObject(std::uint32_t base) {
  const std::size_t count = (size_ - base) / 2;
  Cell* const cells = stack_.get() + base;
  Dictionary::Entries entries;
  entries.reserve(count);
  const bool differ = keysDiffer(cells, count);
  for (std::size_t i = 0; i < count; ++i)
    entries.push_back({Value::takeIn(cells[2 * i]), Value::takeIn(cells[2 * i + 1])});
  size_ = base;
  const auto map = platform::makeShared<KesMap>();
  map->setDict(differ ? platform::makeShared<Dictionary>(Dictionary::Distinct{}, std::move(entries))
                      : platform::makeShared<Dictionary>(std::move(entries)));
  push(Value(map).giveOut());
}

void JsonReader::closeArray(std::uint32_t base) {
  std::vector<Value> items;
  items.reserve(size_ - base);
  for (std::uint32_t i = base; i < size_; ++i) items.push_back(Value::takeIn(stack_[i]));
  size_ = base;
  push(Value(platform::makeShared<ArrayStore>(std::move(items))).giveOut());
}

}  // namespace kes
