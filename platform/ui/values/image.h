// A picture to be shown: a file's path or the bytes of an encoded image (PNG, JPEG,
// GIF). It is decoded by the screen, not here. A small value; any thread.
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

  bool empty() const { return !data_; }
  const std::string& path() const;             // empty for bytes
  std::shared_ptr<const Bytes> bytes() const;  // null for a file
  double scale() const;
  // The size in points as the image's own header says; none when it cannot be read.
  std::optional<Size> naturalSize() const;
  // Same picture: images made by one call and copied are equal, and so are equal paths.
  bool operator==(const Image& other) const;

 private:
  struct Data;
  std::shared_ptr<const Data> data_;
};

// How a picture is to be written anew.
struct ImageRendition {
  std::string_view format = "PNG";  // or "JPEG"
  int quality = 100;                // of a JPEG, 0 to 100
  std::optional<Size> pixels;       // drawn in that size; without one, in its own
  bool keepRatio = false;           // as large as fits into it
};

}  // namespace ui
