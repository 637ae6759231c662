// A character as UTF-8: the one place where it is put together. Any thread; throws nothing.
#pragma once

#include <string_view>

namespace platform {

struct Utf8Bytes {
  char bytes[4];
  unsigned char count;
  constexpr operator std::string_view() const { return {bytes, count}; }
};

// Of half a surrogate pair it gives the three bytes that it would have.
constexpr Utf8Bytes toUtf8(char32_t c) noexcept {
  const auto tail = [c](int shift) { return static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) return {{static_cast<char>(c)}, 1};
  if (c < 0x800) return {{static_cast<char>(0xC0 | c >> 6), tail(0)}, 2};
  if (c < 0x10000) return {{static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)}, 3};
  return {{static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)}, 4};
}

}  // namespace platform
