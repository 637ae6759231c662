// Pictures as pixels: how large an encoded picture is, its pixels in any size, and pixels
// written as a file again. PNG, JPEG, GIF (its first frame), WebP and BMP, told apart by
// their first bytes; one code for every screen, so that sizes and looks agree.
//
// Pure functions; any thread. Sizes are pixels of the upright picture: the turn that a
// camera notes is applied. Nothing that a header claims is believed: only what is asked
// for is allocated, and what would cost more than kMostWork while it is decoded, or has
// more than kMostPixels, is refused. Throws Unreadable, with the reason, for bytes that are
// no picture. A picture that is cut off is shown as far as it goes.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace pictures {

using Bytes = std::span<const std::uint8_t>;

struct Extent {
  int width = 0, height = 0;
  std::int64_t area() const { return std::int64_t{width} * height; }
  Extent turned() const { return {height, width}; }
  bool operator==(const Extent&) const = default;
};

// Rows from top to bottom, four bytes a pixel: red, green, blue, each multiplied by the
// fourth, alpha.
struct Bitmap {
  explicit Bitmap(Extent extent)
      : size(extent), rgba(static_cast<std::size_t>(extent.area()) * 4) {}
  std::uint8_t* row(int y) { return rgba.data() + rowBytes() * y; }
  const std::uint8_t* row(int y) const { return rgba.data() + rowBytes() * y; }
  std::size_t rowBytes() const { return static_cast<std::size_t>(size.width) * 4; }

  Extent size;
  std::vector<std::uint8_t> rgba;
};

class Unreadable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr std::int64_t kMostPixels = std::int64_t{512} << 20;
inline constexpr std::int64_t kMostWork = std::int64_t{128} << 20;  // bytes

Extent sizeOf(Bytes file);

// The pixels in the wanted size, or in the picture's own where that is smaller (each side
// by itself); shrunk by averaging. Sides below 1 count as 1.
Bitmap decode(Bytes file, Extent wanted);

// In another size, smaller or larger.
Bitmap scaled(const Bitmap& bitmap, Extent wanted);

// As "PNG" or "JPEG" (on white), quality 0 to 100 for the latter. Throws
// std::invalid_argument for another format and std::runtime_error where the encoder fails.
std::vector<std::uint8_t> encode(const Bitmap& bitmap, std::string_view format, int quality);

}  // namespace pictures
