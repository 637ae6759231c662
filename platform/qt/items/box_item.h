// A view that is a box and nothing else. Where the round corners of one around it cut into
// it, it is painted as a picture without them.
#pragma once

#include "platform/qt/items/view_item.h"

namespace qt {

class BoxItem final : public ViewItem {
  Q_OBJECT
 public:
  using ViewItem::ViewItem;

 protected:
  BoxLook cut(const BoxLook& look) override;

 private:
  // What the picture was painted for.
  std::optional<RoundedClip> clip_;
  BoxLook painted_;
  ui::Size size_;
  double scale_ = 0;
};

}  // namespace qt
