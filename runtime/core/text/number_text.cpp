#include "runtime/core/text/number_text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace kes::detail {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t skipSpace(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size() && (s[i] == ' ' || (s[i] >= '\t' && s[i] <= '\r'))) ++i;
  return i;
}

std::size_t skipDigits(std::string_view s, std::size_t i) {
  while (i < s.size() && isDigit(s[i])) ++i;
  return i;
}

// What a number becomes whose size no double holds: its decimal point tells which way.
double beyondRange(std::string_view digits) {
  long exponent = 0;
  std::size_t end = digits.find_first_of("eE");
  if (end == std::string_view::npos) {
    end = digits.size();
  } else {
    std::string_view e = digits.substr(end + 1);
    if (e.starts_with('+')) e.remove_prefix(1);
    if (std::from_chars(e.data(), e.data() + e.size(), exponent).ec != std::errc())
      exponent = e.starts_with('-') ? -1'000'000'000 : 1'000'000'000;
  }
  const std::string_view mantissa = digits.substr(0, end);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return 0;
  const long size = static_cast<long>(point) - static_cast<long>(first) + exponent;
  return size > 0 ? std::numeric_limits<double>::infinity() : 0;
}

template <class F>
std::string shortest(F v) {
  if (std::isnan(v)) return "nan";
  if (std::isinf(v)) return v < 0 ? "-inf" : "inf";
  const F size = std::fabs(v);
  const bool plain = v == 0 || (size >= F(1e-5) && size < F(1e16));
  char out[64];
  const auto end = std::to_chars(out, out + sizeof out, v,
                                 plain ? std::chars_format::fixed : std::chars_format::scientific);
  return {out, end.ptr};
}

}  // namespace

std::optional<ScannedDouble> scanDouble(std::string_view text) {
  std::size_t i = skipSpace(text);
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  const std::size_t begin = i;
  i = skipDigits(text, i);
  std::size_t digits = i - begin;
  if (i < text.size() && text[i] == '.') {
    const std::size_t fraction = skipDigits(text, i + 1);
    digits += fraction - i - 1;
    if (digits) i = fraction;
  }
  if (!digits) return std::nullopt;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    std::size_t e = i + 1;
    if (e < text.size() && (text[e] == '-' || text[e] == '+')) ++e;
    if (const std::size_t end = skipDigits(text, e); end > e) i = end;
  }
  double value = 0;
  const auto read = std::from_chars(text.data() + begin, text.data() + i, value);
  if (read.ec == std::errc::result_out_of_range) value = beyondRange(text.substr(begin, i - begin));
  return ScannedDouble{negative ? -value : value, i};
}

std::int64_t scanInteger(std::string_view text) {
  std::size_t i = skipSpace(text);
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  // From the sign on, so that the smallest integer is read as such.
  const std::size_t begin = negative ? i - 1 : i;
  std::int64_t value = 0;
  const auto read = std::from_chars(text.data() + begin, text.data() + skipDigits(text, i), value);
  if (read.ec == std::errc::result_out_of_range)
    return negative ? std::numeric_limits<std::int64_t>::min()
                    : std::numeric_limits<std::int64_t>::max();
  return read.ec == std::errc() ? value : 0;
}

std::string doubleText(double v) { return shortest(v); }
std::string floatText(float v) { return shortest(v); }

}  // namespace kes::detail
