#include "platform/qt/focus_ring.h"

#include <algorithm>

#include "platform/ui/values/style.h"

namespace qt {

QRectF shownPart(const QQuickItem& item, const QQuickItem& root) {
  QRectF frame = item.mapRectToItem(&root, QRectF(0, 0, item.width(), item.height()));
  for (auto* above = item.parentItem(); above && above != &root; above = above->parentItem())
    if (above->clip())
      frame &= above->mapRectToItem(&root, QRectF(0, 0, above->width(), above->height()));
  return frame;
}

FocusRing::FocusRing(QQuickItem* parent) : PaintedItem(parent) {
  setZ(1);
  setVisible(false);
}

void FocusRing::follow(const Mirror& mirror, const ui::View* focused) {
  auto* item = focused ? mirror.itemOf(*focused) : nullptr;
  setVisible(item != nullptr);
  if (!item) return;
  // Inside its view's edges, where nothing cuts it off.
  const QRectF frame = shownPart(*item, *parentItem());
  setPosition(frame.topLeft());
  setSize(frame.size());
  const double radius = std::max(4.0, item->look().border.radius);
  constexpr double kWidth = ui::style::kFocusRingWidth, kInner = 1.5;
  setLook({ui::kClear, {kWidth, ui::style::kFocusRing, radius}, {}});
  inner_.setPosition({kWidth, kWidth});
  inner_.setSize(
      {std::max(0.0, frame.width() - 2 * kWidth), std::max(0.0, frame.height() - 2 * kWidth)});
  inner_.setLook({ui::kClear, {kInner, ui::kWhite, std::max(1.0, radius - kWidth)}, {}});
}

}  // namespace qt
