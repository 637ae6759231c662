#include "platform/qt/items/label_item.h"

#include "platform/qt/drawing/label_text.h"

namespace qt {

void LabelItem::sync(ui::View& view, ui::Change changed) {
  const auto& label = static_cast<ui::Label&>(view);
  const ui::Size size = frameSize();
  const bool anew = !layout_ || size != laidOutFor_ || ui::has(changed, ui::Change::Content);
  if (anew) {
    layout_ = fittedText(label, size);
    laidOutFor_ = size;
    at_ = {0, snapped(textOrigin(*layout_, size).y)};
  }
  const TextStrips::Sight all{0, height()};
  const TextStrips::Sight seen{visibleArea().y, visibleArea().bottom()};
  if (auto strips = strips_.update(*layout_, at_, width(), followsClip() ? seen : all,
                                   scaleFactor(), anew || changed == ui::Change::All, pictures()))
    setPictures(std::move(*strips));
}

}  // namespace qt
