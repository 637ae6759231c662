// BMP needs no library: rows of 1, 4, 8, 24 or 32 bits a pixel, neither packed nor in
// passes. Packed ones (which hardly anybody writes) are refused.
#include <algorithm>
#include <array>

#include "platform/pictures/formats.h"
#include "platform/pictures/shrinker.h"

namespace pictures {

namespace {

struct Layout {
  Extent size;
  bool topDown = false;
  unsigned bits = 0;
  std::size_t pixelsAt = 0, stride = 0;
  std::array<std::uint32_t, 4> masks{0xFF0000, 0xFF00, 0xFF, 0};  // red, green, blue, alpha
  std::vector<std::array<std::uint8_t, 3>> palette;
};

constexpr std::size_t kFileHeader = 14, kInfoHeader = 40;
constexpr std::uint32_t kPlain = 0, kMasked = 3, kMaskedWithAlpha = 6;

std::uint32_t number(Bytes file, std::size_t at, int bytes) {
  std::uint32_t result = 0;
  for (int i = bytes - 1; i >= 0; --i) {
    const std::size_t from = at + static_cast<std::size_t>(i);
    result = result << 8u | (from < file.size() ? file[from] : 0u);
  }
  return result;
}

void readPalette(Bytes file, std::size_t at, Layout& layout) {
  if (layout.bits > 8) return;
  std::size_t colors = number(file, kFileHeader + 32, 4);
  const std::size_t most = std::size_t{1} << layout.bits;
  if (colors == 0 || colors > most) colors = most;
  layout.palette.resize(most);
  for (std::size_t i = 0; i < colors && at + 4 * i + 3 <= file.size(); ++i)
    layout.palette[i] = {file[at + 4 * i + 2], file[at + 4 * i + 1], file[at + 4 * i]};
}

Layout layoutOf(Bytes file) {
  const std::size_t header = number(file, kFileHeader, 4);
  if (file.size() < kFileHeader + kInfoHeader || header < kInfoHeader)
    throw Unreadable("a BMP picture of an old kind");
  Layout layout;
  const auto height = static_cast<std::int32_t>(number(file, kFileHeader + 8, 4));
  layout.topDown = height < 0;
  layout.size = {static_cast<std::int32_t>(number(file, kFileHeader + 4, 4)),
                 height == INT32_MIN ? 0 : std::abs(height)};
  layout.bits = number(file, kFileHeader + 14, 2);
  layout.pixelsAt = number(file, 10, 4);
  const std::uint32_t kind = number(file, kFileHeader + 16, 4);
  const bool masked = kind == kMasked || kind == kMaskedWithAlpha;
  const auto allowed = {1u, 4u, 8u, 16u, 24u, 32u};
  if (std::find(allowed.begin(), allowed.end(), layout.bits) == allowed.end() ||
      (kind != kPlain && !(masked && layout.bits >= 16)))
    throw Unreadable("a packed BMP picture");
  if (layout.bits == 16) layout.masks = {0x7C00, 0x3E0, 0x1F, 0};
  if (masked)
    for (std::size_t i = 0; i < 4; ++i)
      layout.masks[i] = i < 3 || header > kInfoHeader || kind == kMaskedWithAlpha
                            ? number(file, kFileHeader + kInfoHeader + 4 * i, 4)
                            : 0;
  readPalette(file, kFileHeader + header, layout);
  if (layout.size.width < 1 || layout.size.height < 1) throw Unreadable("it has no size");
  layout.stride = (static_cast<std::size_t>(layout.size.width) * layout.bits + 31) / 32 * 4;
  const std::size_t pixels = layout.stride * static_cast<std::size_t>(layout.size.height);
  if (layout.pixelsAt > file.size() || pixels > file.size() - layout.pixelsAt)
    throw Unreadable("it is cut off");
  return layout;
}

// The part of a pixel under a mask, as 0 to 255.
std::uint8_t channel(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) return 0;
  const std::uint32_t lowest = mask & (~mask + 1);
  return static_cast<std::uint8_t>(std::uint64_t{(pixel & mask) / lowest} * 255 / (mask / lowest));
}

void readRow(Bytes line, const Layout& layout, std::uint8_t* to) {
  for (std::size_t x = 0; x < static_cast<std::size_t>(layout.size.width); ++x, to += 4) {
    to[3] = 255;
    if (layout.bits <= 8) {
      const std::size_t bit = x * layout.bits;
      const unsigned shift = 8 - layout.bits - static_cast<unsigned>(bit % 8);
      const unsigned index = line[bit / 8] >> shift & ((1u << layout.bits) - 1);
      std::copy_n(layout.palette[index].begin(), 3, to);
      continue;
    }
    const int bytes = static_cast<int>(layout.bits / 8);
    const std::uint32_t pixel = number(line, x * layout.bits / 8, bytes);
    for (std::size_t i = 0; i < 3; ++i) to[i] = channel(pixel, layout.masks[i]);
    if (layout.masks[3] != 0) to[3] = channel(pixel, layout.masks[3]);
  }
}

bool isBmp(Bytes file) { return startsWith(file, "BM"); }

Header bmpHeader(Bytes file) { return {layoutOf(file).size, 1}; }

Bitmap decodeBmp(Bytes file, Extent wanted) {
  const Layout layout = layoutOf(file);
  Shrinker shrinker(layout.size, wanted);
  std::vector<std::uint8_t> row(static_cast<std::size_t>(layout.size.width) * 4);
  for (int y = 0; y < layout.size.height; ++y) {
    const int stored = layout.topDown ? y : layout.size.height - 1 - y;
    const std::size_t at = layout.pixelsAt + layout.stride * static_cast<std::size_t>(stored);
    readRow(file.subspan(at, layout.stride), layout, row.data());
    shrinker.add(row.data());
  }
  return shrinker.take();
}

}  // namespace

const Format kBmp{isBmp, bmpHeader, decodeBmp};

}  // namespace pictures
