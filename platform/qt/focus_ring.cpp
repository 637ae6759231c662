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
  setLook({ui::kClear, {ui::style::kFocusRingWidth, ui::style::kFocusRing, radius}, {}});
}

}  // namespace qt
