// KesBitmap: a wrapper over a picture, kept as the bytes of its file; and EncodedImage, the
// picture. No pixel is decoded here: what shows pictures does that.
//
// Copies share the picture, which never changes; any thread. Throws KesException "Error
// loading image." for bytes that are no PNG, JPEG, GIF, WebP or BMP file, the file
// service's texts for a file that cannot be read, and "Cannot write image as %@" for a
// format that it is not in and that no encoder was lent for.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "runtime/data/files/input_stream.h"
#include "runtime/data/files/output_stream.h"

namespace kes {

class EncodedImage final : public Object {
 public:
  using Bytes = std::vector<std::uint8_t>;

  // Drawn anew, in `share` of the pixels that were asked for, on each side.
  struct Drawn {
    Bytes bytes;
    double share = 1;
  };

  // scale: pixels for one point, 2 for a file made for double density.
  explicit EncodedImage(Bytes bytes, double scale = 1);
  std::string_view className() const override { return "UIImage"; }

  const std::shared_ptr<const Bytes>& bytes() const { return bytes_; }
  double scale() const { return scale_; }
  // "PNG", "JPEG", "GIF", "WEBP" or "BMP", by the file's first bytes.
  std::string_view format() const { return format_; }

 private:
  std::shared_ptr<const Bytes> bytes_;
  double scale_;
  std::string_view format_;
};

class KesBitmap final : public TypedWrapper<KesBitmap, EncodedImage> {
 public:
  static constexpr std::string_view kPlatformClass = "UIImage";
  std::string_view className() const override { return "KesBitmap"; }
  static KesBitmap over(EncodedImage::Bytes bytes);

  // Where the screen has more than one pixel for a point, "name@2x.png" is taken for
  // "name.png" if it is there.
  void Initialize(std::string_view dir, std::string_view file);
  // Reads the stream to its end.
  void InitializeFromStream(KesInputStream stream);
  // "PNG" or "JPEG"; an image of that format is written as it is. Quality is 0 to 100.
  void WriteToStream(KesOutputStream stream, std::int32_t quality, std::string_view format) const;

  // The picture drawn anew in that many points; with `keepRatio` as large as fits into them.
  // Throws "Cannot resize image" where nobody can draw it.
  KesBitmap Resize(double width, double height, bool keepRatio) const;

  // What lies above this folder lends these at the start of the process: the pixels for
  // one point of the main screen, and ways to write an image in another format and to draw
  // it in another size, in pixels.
  static inline std::function<double()> screenScale;
  static inline std::function<std::optional<EncodedImage::Bytes>(
      const EncodedImage& image, std::string_view format, std::int32_t quality)>
      encoder;
  static inline std::function<std::optional<EncodedImage::Drawn>(
      const EncodedImage& image, double width, double height, bool keepRatio)>
      resizer;
};

}  // namespace kes
