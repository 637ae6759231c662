// A push button: background picture or colour, image and title side by side, darkened
// while pressed, pale while disabled.
#pragma once

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/button.h"

namespace qt {

class ButtonItem final : public ViewItem {
  Q_OBJECT
 public:
  using ViewItem::ViewItem;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  BoxLook lookOf(const ui::View& view, ui::Color background) const override;
};

}  // namespace qt
