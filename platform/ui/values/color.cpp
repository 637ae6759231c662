#include "platform/ui/values/color.h"

#include <algorithm>
#include <cmath>

namespace ui {

namespace {

constexpr double kReadable = 4.5;

double linear(int part) {
  const double v = part / 255.0;
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double luminance(Color c) {
  return 0.2126 * linear(c.red()) + 0.7152 * linear(c.green()) + 0.0722 * linear(c.blue());
}

}  // namespace

double contrast(Color a, Color b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

Color readableOn(Color background) {
  return contrast(kBlack, background) >= kReadable ? kBlack : kWhite;
}

}  // namespace ui
