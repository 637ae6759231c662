#include "runtime/core/text/utf8.h"

#include <bit>
#include <cstring>

namespace kes::detail {

std::optional<std::uint32_t> unitsIfUtf8(std::string_view bytes) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const auto* const end = p + bytes.size();
  // Bytes beyond the first unit that each character makes.
  std::size_t surplus = 0;
  const auto follows = [&](int i, unsigned char from = 0x80, unsigned char to = 0xBF) {
    return p[i] >= from && p[i] <= to;
  };
  while (p != end) {
    while (end - p >= 8) {
      std::uint64_t word;
      std::memcpy(&word, p, 8);
      word &= kHighBits;
      if (word) {
        if constexpr (std::endian::native == std::endian::little) p += std::countr_zero(word) / 8;
        break;
      }
      p += 8;
    }
    while (p != end && *p < 0x80) ++p;
    if (p == end) break;
    const unsigned char lead = *p;
    const auto left = end - p;
    if (lead >= 0xC2 && lead <= 0xDF && left >= 2 && follows(1)) {
      p += 2;
      surplus += 1;
    } else if (lead >= 0xE0 && lead <= 0xEF && left >= 3 &&
               follows(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF) && follows(2)) {
      p += 3;
      surplus += 2;
    } else if (lead >= 0xF0 && lead <= 0xF4 && left >= 4 &&
               follows(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF) && follows(2) &&
               follows(3)) {
      p += 4;
      surplus += 2;
    } else {
      return std::nullopt;
    }
  }
  return static_cast<std::uint32_t>(bytes.size() - surplus);
}

}  // namespace kes::detail
