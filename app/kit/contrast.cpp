#include "app/kit/contrast.h"

#include <algorithm>
#include <cmath>

#include "runtime/core/common.h"

namespace varlo {

namespace {

constexpr double kReadable = 4.5;

double linear(std::uint32_t part) {
  const double v = part / 255.0;
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double luminance(std::int32_t argb) {
  const auto c = static_cast<std::uint32_t>(argb);
  return 0.2126 * linear(c >> 16 & 0xFF) + 0.7152 * linear(c >> 8 & 0xFF) +
         0.0722 * linear(c & 0xFF);
}

}  // namespace

double contrast(std::int32_t a, std::int32_t b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

std::int32_t readableOn(std::int32_t background) {
  const bool blackReads = contrast(kes::KesColors::Black, background) >= kReadable;
  return blackReads ? kes::KesColors::Black : kes::KesColors::White;
}

}  // namespace varlo
