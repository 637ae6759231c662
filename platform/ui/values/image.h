// A picture to be shown: a file's path or the bytes of an encoded image (PNG, JPEG, GIF,
// WebP, BMP). Sizes are those of the decoder that every screen draws with. A small value,
// whose copies share the bytes; any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/values/geometry.h"

namespace ui {

class Image {
 public:
  using Bytes = std::vector<std::uint8_t>;

  Image() = default;
  // scale: pixels for one point, 2 for a file made for double density.
  static Image fromFile(std::string path, double scale = 1);
  static Image fromBytes(Bytes bytes, double scale = 1);
  static Image fromShared(std::shared_ptr<const Bytes> bytes, double scale = 1);

  bool empty() const { return !data_; }
  const std::string& path() const;             // empty for bytes
  std::shared_ptr<const Bytes> bytes() const;  // null for a file
  // The encoded picture, read now where it is a file; empty if that can't be read.
  std::shared_ptr<const Bytes> contents() const;
  double scale() const;
  // The upright picture's size in pixels and in points; none, and a line in the log, for
  // one that can't be read.
  std::optional<Size> pixels() const;
  std::optional<Size> naturalSize() const;
  // Same picture: images made by one call and copied are equal, and so are equal paths.
  bool operator==(const Image& other) const;
  // Of the bytes; equal for equal ones, whoever made the image. 0 for a file.
  std::size_t fingerprint() const;

 private:
  struct Data;
  std::shared_ptr<Data> data_;
};

// How a picture is to be written anew.
struct ImageRendition {
  std::string_view format = "PNG";  // or "JPEG"
  int quality = 100;                // of a JPEG, 0 to 100
  std::optional<Size> pixels;       // drawn in that size; without one, in its own
  bool keepRatio = false;           // as large as fits into it
};

struct RenderedImage {
  Image::Bytes bytes;
  // Sides of more than some 24 million pixels come out smaller: by this factor.
  double share = 1;
};

// None for a picture that can't be read or a format that can't be written.
std::optional<RenderedImage> render(const Image& image, const ImageRendition& wanted);

}  // namespace ui
