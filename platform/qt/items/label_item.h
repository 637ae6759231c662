// A label: its text, painted by the layout that measured it, sharp at any pixel ratio.
// A text taller than the screen is painted in strips, those that can be seen.
#pragma once

#include "platform/qt/drawing/text_layout.h"
#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/label.h"

namespace qt {

// A layout that fits the label's rules into a size: shrunk, cut, wrapped.
std::unique_ptr<TextLayout> fittedText(const ui::Label& label, ui::Size size);
// Paints a part (whole pixels) of a text whose first line begins at `at`.
Picture textPicture(const TextLayout& layout, ui::Point at, const QRectF& part, double scale);

class LabelItem final : public ViewItem {
  Q_OBJECT
 public:
  using ViewItem::ViewItem;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  bool followsClip() const override { return height() > kTall; }

 private:
  static constexpr double kTall = 1000, kStrip = 512;
  void paintStrips(bool all);

  std::unique_ptr<TextLayout> layout_;
  ui::Size laidOutFor_;
  ui::Point at_;
  int firstStrip_ = 0, lastStrip_ = -1;
};

}  // namespace qt
