// An image view: the image placed by its content mode, corners rounded as the view's. Of a
// large one what can be seen is painted, and more when it comes into sight.
#pragma once

#include "platform/qt/drawing/image_store.h"
#include "platform/qt/items/view_item.h"

namespace qt {

class ImageItem final : public ViewItem {
  Q_OBJECT
 public:
  using ViewItem::ViewItem;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  bool followsClip() const override;

 private:
  ImagePlace painted_;
};

}  // namespace qt
