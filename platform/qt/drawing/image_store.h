// Decodes images once and keeps the recent ones; paints the part of an image view that can
// be seen. Owned by the QtScreen. Main thread, points.
//
// An image is decoded no larger than it is needed, and never with more than some 24
// million pixels; equal bytes are one image, however many views show them. Smaller sizes
// are kept beside it, each half of the one before, so that painting is always from one
// that is less than twice as large.
#pragma once

#include <QCache>
#include <QImage>
#include <optional>
#include <vector>

#include "platform/qt/drawing/painted_item.h"
#include "platform/qt/drawing/rounded_clip.h"
#include "platform/ui/controls/image_view.h"

namespace qt {

// What a box shows of an image.
struct ImagePlace {
  ui::Image image;
  ui::Rect box;
  ui::ContentMode mode = ui::ContentMode::Fill;
  double radius = 0;  // of the box's corners
  double scale = 1;   // pixels a point
  bool operator==(const ImagePlace&) const = default;
};

class ImageStore {
 public:
  // The pictures that show the part of the place in `seen`, and a little more: nothing for
  // an image that can't be read. Those of `former`, made for the same place, are used again.
  std::vector<Picture> pictures(const ImagePlace& place, const ui::Rect& seen,
                                const std::vector<Picture>& former = {});
  // How often an image was decoded.
  int decoded() const { return decodedCount_; }

 private:
  struct Decoded {
    std::shared_ptr<const ui::Image::Bytes> source;
    QSize natural;
    std::vector<QImage> levels;  // from the largest on
  };
  Decoded* decoded(const ui::Image& image, QSize wanted);
  static const QImage& level(Decoded& from, QSize wanted);

  QCache<QString, Decoded> kept_{64 << 20};  // bytes
  int decodedCount_ = 0;
};

// A box larger than this on a side is painted in tiles, as they come into sight.
inline constexpr double kLargestPicture = 1024;

// Where an image of the given size goes in a box; may be larger than the box.
ui::Rect placed(ui::Size image, const ui::Rect& box, ui::ContentMode mode);

}  // namespace qt
