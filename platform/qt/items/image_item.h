// An image view: the image placed by its content mode, corners rounded as the view's.
#pragma once

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/image_view.h"

namespace qt {

class ImageItem final : public ViewItem {
  Q_OBJECT
 public:
  using ViewItem::ViewItem;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
};

}  // namespace qt
