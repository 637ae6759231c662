#include "platform/pictures/picture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/pictures/formats.h"
#include "platform/pictures/shrinker.h"

namespace pictures {

namespace {

const Format& formatOf(Bytes file) {
  static constexpr std::array kAll{&kPng, &kJpeg, &kGif, &kWebp, &kBmp};
  for (const Format* format : kAll)
    if (format->is(file)) return *format;
  throw Unreadable("not a picture of a known kind");
}

Header headerOf(const Format& format, Bytes file) {
  const Header header = format.header(file);
  if (header.stored.width < 1 || header.stored.height < 1) throw Unreadable("it has no pixels");
  if (header.stored.area() > kMostPixels)
    throw Unreadable("it claims " + std::to_string(header.stored.width) + "x" +
                     std::to_string(header.stored.height) + " pixels");
  return header;
}

bool liesOnItsSide(int orientation) { return orientation >= 5 && orientation <= 8; }

// Where a pixel of the upright picture is in the stored one.
struct Turn {
  int orientation;
  Extent stored;
  std::pair<int, int> from(int x, int y) const {
    const int right = stored.width - 1, bottom = stored.height - 1;
    switch (orientation) {
      case 2:
        return {right - x, y};
      case 3:
        return {right - x, bottom - y};
      case 4:
        return {x, bottom - y};
      case 5:
        return {y, x};
      case 6:
        return {y, bottom - x};
      case 7:
        return {right - y, bottom - x};
      case 8:
        return {right - y, x};
      default:
        return {x, y};
    }
  }
};

Bitmap upright(Bitmap stored, int orientation) {
  if (orientation <= 1 || orientation > 8) return stored;
  Bitmap result(liesOnItsSide(orientation) ? stored.size.turned() : stored.size);
  const Turn turn{orientation, stored.size};
  for (int y = 0; y < result.size.height; ++y) {
    std::uint8_t* to = result.row(y);
    for (int x = 0; x < result.size.width; ++x, to += 4) {
      const auto [fromX, fromY] = turn.from(x, y);
      std::copy_n(stored.row(fromY) + static_cast<std::size_t>(fromX) * 4, 4, to);
    }
  }
  return result;
}

// Where a target pixel's centre lies between two of the source.
struct Between {
  int first, second;
  float share;  // of the second
};

std::vector<Between> steps(int from, int to) {
  std::vector<Between> result;
  result.reserve(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    const double at = std::clamp((i + 0.5) * from / to - 0.5, 0.0, from - 1.0);
    const int first = static_cast<int>(at);
    result.push_back({first, std::min(first + 1, from - 1), static_cast<float>(at - first)});
  }
  return result;
}

// Larger, or of the same size, in either direction: each pixel between its neighbours.
Bitmap stretched(const Bitmap& bitmap, Extent wanted) {
  if (wanted == bitmap.size) return bitmap;
  Bitmap result(wanted);
  const auto across = steps(bitmap.size.width, wanted.width);
  const auto down = steps(bitmap.size.height, wanted.height);
  for (int y = 0; y < wanted.height; ++y) {
    const Between& line = down[static_cast<std::size_t>(y)];
    const std::uint8_t *above = bitmap.row(line.first), *below = bitmap.row(line.second);
    std::uint8_t* to = result.row(y);
    for (const Between& column : across) {
      const auto a = static_cast<std::size_t>(column.first) * 4;
      const auto b = static_cast<std::size_t>(column.second) * 4;
      for (std::size_t i = 0; i < 4; ++i) {
        const float top = std::lerp<float>(above[a + i], above[b + i], column.share);
        const float bottom = std::lerp<float>(below[a + i], below[b + i], column.share);
        *to++ = static_cast<std::uint8_t>(std::lerp(top, bottom, line.share) + 0.5f);
      }
    }
  }
  return result;
}

Extent atLeastOne(Extent e) { return {std::max(1, e.width), std::max(1, e.height)}; }

}  // namespace

void limitWork(std::int64_t bytes) {
  if (bytes > kMostWork)
    throw Unreadable("decoding it takes " + std::to_string(bytes >> 20) + " MiB");
}

Extent sizeOf(Bytes file) {
  const Header header = headerOf(formatOf(file), file);
  return liesOnItsSide(header.orientation) ? header.stored.turned() : header.stored;
}

Bitmap decode(Bytes file, Extent wanted) {
  const Format& format = formatOf(file);
  const Header header = headerOf(format, file);
  wanted = atLeastOne(liesOnItsSide(header.orientation) ? wanted.turned() : wanted);
  wanted = {std::min(wanted.width, header.stored.width),
            std::min(wanted.height, header.stored.height)};
  return upright(format.decode(file, wanted), header.orientation);
}

Bitmap scaled(const Bitmap& bitmap, Extent wanted) {
  wanted = atLeastOne(wanted);
  const Extent smaller{std::min(wanted.width, bitmap.size.width),
                       std::min(wanted.height, bitmap.size.height)};
  if (smaller == bitmap.size) return stretched(bitmap, wanted);
  Shrinker shrinker(bitmap.size, smaller, Shrinker::Colors::TimesAlpha);
  for (int y = 0; y < bitmap.size.height; ++y) shrinker.add(bitmap.row(y));
  return stretched(shrinker.take(), wanted);
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, std::string_view format, int quality) {
  if (format == "PNG") return encodePng(bitmap);
  if (format == "JPEG") return encodeJpeg(bitmap, std::clamp(quality, 1, 100));
  throw std::invalid_argument("no such picture format: " + std::string(format));
}

}  // namespace pictures
