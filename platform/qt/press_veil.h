// The shade over what a finger presses, where it isn't a button that shows the press
// itself. In a list it comes a little after the finger, so that a drag doesn't make the
// rows flicker. Owned by the QtScreen. Main thread.
#pragma once

#include <QTimer>

#include "platform/qt/drawing/painted_item.h"
#include "platform/qt/mirror.h"

namespace qt {

class PressVeil final : public PaintedItem {
  Q_OBJECT
 public:
  explicit PressVeil(QQuickItem* parent);
  void follow(const Mirror& mirror, const ui::View* pressed);

 private:
  ui::WeakRef<ui::View> pressed_;
  QTimer due_;
};

}  // namespace qt
