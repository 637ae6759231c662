#include "platform/qt/phone_window.h"

namespace qt {

bool PhoneWindow::event(QEvent* e) { return (filter && filter(*e)) || QQuickWindow::event(e); }

void RootItem::updatePolish() {
  if (makeFrame) makeFrame();
}

void RootItem::focusInEvent(QFocusEvent* e) {
  QQuickItem::focusInEvent(e);
  const bool forward = e->reason() == Qt::TabFocusReason;
  if ((forward || e->reason() == Qt::BacktabFocusReason) && focusReturned) focusReturned(forward);
}

}  // namespace qt
