#include "platform/qt/items/image_item.h"

namespace qt {

bool ImageItem::followsClip() const {
  return frameSize().width > kLargestPicture || frameSize().height > kLargestPicture;
}

void ImageItem::sync(ui::View& view, ui::Change) {
  const auto& shown = static_cast<ui::ImageView&>(view);
  ImagePlace place{shown.image(),
                   {0, 0, width(), height()},
                   shown.contentMode(),
                   shown.border().radius,
                   scaleFactor()};
  const bool same = place == painted_;
  painted_ = place;
  setPictures(
      stage().images.pictures(place, visibleArea(), same ? pictures() : std::vector<Picture>()));
}

}  // namespace qt
