#include "platform/qt/items/image_item.h"

#include "platform/qt/drawing/image_store.h"

namespace qt {

void ImageItem::sync(ui::View& view, ui::Change) {
  const auto& shown = static_cast<ui::ImageView&>(view);
  std::vector<Picture> pictures;
  stage().images.addPictures(pictures, shown.image(), {0, 0, width(), height()},
                             shown.contentMode(), shown.border().radius, scaleFactor());
  setPictures(std::move(pictures));
}

}  // namespace qt
