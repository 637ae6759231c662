// The ring around the view that the keyboard is at, on top of everything. Owned by the
// QtScreen. Main thread.
#pragma once

#include "platform/qt/drawing/painted_item.h"
#include "platform/qt/mirror.h"

namespace qt {

// What can be seen of an item inside the items that clip it, in the root's points.
QRectF shownPart(const QQuickItem& item, const QQuickItem& root);

class FocusRing final : public PaintedItem {
  Q_OBJECT
 public:
  explicit FocusRing(QQuickItem* parent);
  // Follows the focused view; hidden where none is seen or the keyboard isn't in use.
  void follow(const Mirror& mirror, const ui::View* focused);

 private:
  PaintedItem inner_{this};  // a white line, for what is on a dark bar
};

}  // namespace qt
