// Decodes images once and keeps the recent ones; makes the pictures that show an image
// in a box. Owned by the QtScreen. Main thread, points.
#pragma once

#include <QCache>
#include <QImage>
#include <vector>

#include "platform/qt/drawing/painted_item.h"
#include "platform/ui/controls/image_view.h"

namespace qt {

class ImageStore {
 public:
  // Adds what shows the image in the box: nothing for an image that can't be read.
  void addPictures(std::vector<Picture>& out, const ui::Image& image, const ui::Rect& box,
                   ui::ContentMode mode, double radius, double scale);
  std::optional<ui::Image::Bytes> render(const ui::Image& image, const ui::ImageRendition& wanted);

 private:
  struct Decoded {
    QImage pixels;
    std::shared_ptr<const ui::Image::Bytes> source;  // its address is the key: it stays
  };
  QImage decoded(const ui::Image& image);

  QCache<QString, Decoded> decoded_{64 << 20};  // bytes
};

// Where an image of the given size goes in a box; may be larger than the box.
ui::Rect placed(ui::Size image, const ui::Rect& box, ui::ContentMode mode);

}  // namespace qt
