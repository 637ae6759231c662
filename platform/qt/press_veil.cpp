#include "platform/qt/press_veil.h"

#include "platform/qt/focus_ring.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/values/style.h"

namespace qt {

namespace {

constexpr int kDelay = 60;  // milliseconds; a press is to be seen within 100

bool inScroller(const ui::View& view) {
  for (const auto* v = view.parent(); v; v = v->parent())
    if (dynamic_cast<const ui::ScrollView*>(v)) return true;
  return false;
}

}  // namespace

PressVeil::PressVeil(QQuickItem* parent) : PaintedItem(parent) {
  setZ(1);
  setVisible(false);
  due_.setSingleShot(true);
  due_.setInterval(kDelay);
  connect(&due_, &QTimer::timeout, this, [this] {
    const auto pressed = pressed_.lock();
    setVisible(pressed && pressed->pressed());
  });
}

void PressVeil::follow(const Mirror& mirror, const ui::View* pressed) {
  auto* item =
      pressed && pressed->pressed() && !pressed->holdsPress() ? mirror.itemOf(*pressed) : nullptr;
  if (!item) {
    pressed_ = {};
    due_.stop();
    setVisible(false);
    return;
  }
  const QRectF frame = shownPart(*item, *parentItem());
  setPosition(frame.topLeft());
  setSize(frame.size());
  setLook({ui::style::kPressed, {0, ui::kClear, item->look().border.radius}, {}});
  if (pressed_.refersTo(pressed)) return;
  pressed_ = ui::WeakRef<ui::View>(const_cast<ui::View*>(pressed));
  setVisible(!inScroller(*pressed));
  if (!isVisible()) due_.start();
}

}  // namespace qt
