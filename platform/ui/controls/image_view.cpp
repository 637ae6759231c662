#include "platform/ui/controls/image_view.h"

namespace ui {

void ImageView::setImage(Image image) {
  if (image == image_) return;
  image_ = std::move(image);
  markChanged(Change::Content);
}

void ImageView::setContentMode(ContentMode mode) {
  if (mode == mode_) return;
  mode_ = mode;
  markChanged(Change::Content);
}

Size ImageView::sizeThatFits(Size) const { return image_.naturalSize().value_or(Size{}); }

Role ImageView::defaultRole() const { return accessibleName().empty() ? Role::None : Role::Image; }

}  // namespace ui
