// A label: its text, painted by the layout that measured it, sharp at any pixel ratio.
// A text taller than the screen is painted in strips, those that can be seen.
#pragma once

#include "platform/qt/drawing/text_strips.h"
#include "platform/qt/items/view_item.h"

namespace qt {

class LabelItem final : public ViewItem {
  Q_OBJECT
 public:
  using ViewItem::ViewItem;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  bool followsClip() const override { return height() > kTall; }

 private:
  static constexpr double kTall = 1000;

  std::unique_ptr<TextLayout> layout_;
  ui::Size laidOutFor_;
  ui::Point at_;
  TextStrips strips_;
};

}  // namespace qt
