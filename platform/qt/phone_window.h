// The window, and the item at the root of what it shows. Events pass a filter before
// Qt Quick gets them; the root makes a frame when the window is about to draw. Owned by
// the QtScreen. Main thread.
#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <functional>

namespace qt {

class PhoneWindow final : public QQuickWindow {
  Q_OBJECT
 public:
  // Answers whether the event is used up.
  std::function<bool(QEvent&)> filter;

 protected:
  bool event(QEvent* e) override;
};

class RootItem final : public QQuickItem {
  Q_OBJECT
 public:
  using QQuickItem::QQuickItem;
  std::function<void()> makeFrame;
  // The keyboard focus left an item of its own (a web page) at one of its ends.
  std::function<void(bool forward)> focusReturned;

 protected:
  void updatePolish() override;
  void focusInEvent(QFocusEvent* e) override;
};

}  // namespace qt
