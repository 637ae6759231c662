// A colour: alpha in the top byte, then red, green, blue. A plain value.
#pragma once

#include <cstdint>

namespace ui {

struct Color {
  std::uint32_t argb = 0;

  constexpr Color() = default;
  constexpr explicit Color(std::uint32_t v) : argb(v) {}
  bool operator==(const Color&) const = default;

  constexpr int alpha() const { return static_cast<int>(argb >> 24); }
  constexpr int red() const { return static_cast<int>(argb >> 16 & 0xFF); }
  constexpr int green() const { return static_cast<int>(argb >> 8 & 0xFF); }
  constexpr int blue() const { return static_cast<int>(argb & 0xFF); }
  constexpr bool transparent() const { return alpha() == 0; }

  // The colour a part t (0 to 1) of the way to another; alpha goes along.
  constexpr Color mixed(Color to, double t) const {
    auto part = [t](int a, int b) {
      double v = a + (b - a) * t + 0.5;
      return static_cast<std::uint32_t>(v < 0 ? 0 : v > 255 ? 255 : v);
    };
    return Color(part(alpha(), to.alpha()) << 24 | part(red(), to.red()) << 16 |
                 part(green(), to.green()) << 8 | part(blue(), to.blue()));
  }
  constexpr Color withAlpha(int a) const {
    return Color((argb & 0x00FFFFFF) | static_cast<std::uint32_t>(a) << 24);
  }
};

// How well two colours stand apart, alpha not looked at: 1 for the same, 21 for black on
// white; small text needs 4.5, a shape 3.
double contrast(Color a, Color b);
// Black, or white where black could not be read.
Color readableOn(Color background);

inline constexpr Color kClear{0x00000000};
inline constexpr Color kBlack{0xFF000000};
inline constexpr Color kWhite{0xFFFFFFFF};

}  // namespace ui
