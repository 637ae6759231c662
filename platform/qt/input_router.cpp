#include "platform/qt/input_router.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointerEvent>
#include <QQuickItem>
#include <QTouchEvent>
#include <QWheelEvent>
#include <optional>

#include "platform/qt/items/scroll_item.h"
#include "platform/ui/controls/text_input.h"

namespace qt {

namespace {

std::optional<ui::Key> keyOf(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Tab:
      return event.modifiers() & Qt::ShiftModifier ? ui::Key::BackTab : ui::Key::Tab;
    case Qt::Key_Backtab:
      return ui::Key::BackTab;
    case Qt::Key_Up:
      return ui::Key::Up;
    case Qt::Key_Down:
      return ui::Key::Down;
    case Qt::Key_Left:
      return event.modifiers() & Qt::AltModifier ? ui::Key::Back : ui::Key::Left;
    case Qt::Key_Right:
      return ui::Key::Right;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return ui::Key::Enter;
    case Qt::Key_Space:
      return ui::Key::Space;
    case Qt::Key_Escape:
      return ui::Key::Escape;
    case Qt::Key_Back:
      return ui::Key::Back;
    case Qt::Key_PageUp:
      return ui::Key::PageUp;
    case Qt::Key_PageDown:
      return ui::Key::PageDown;
    case Qt::Key_Home:
      return ui::Key::Home;
    case Qt::Key_End:
      return ui::Key::End;
    case Qt::Key_F10:
    case Qt::Key_Menu:
      return ui::Key::Menu;
    default:
      return std::nullopt;
  }
}

// What leaves an editor or a page instead of being typed into it.
bool leaves(ui::Key key, bool editor) {
  if (key == ui::Key::Escape || key == ui::Key::Back || key == ui::Key::Menu) return true;
  return editor && (key == ui::Key::Tab || key == ui::Key::BackTab);
}

}  // namespace

bool InputRouter::handle(QEvent& event) {
  if (!ui::Application::current()) return false;
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
      return mouse(static_cast<QMouseEvent&>(event));
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      return touch(static_cast<QTouchEvent&>(event));
    case QEvent::Wheel:
      return wheel(static_cast<QWheelEvent&>(event));
    case QEvent::KeyPress:
      return key(static_cast<QKeyEvent&>(event));
    default:
      return false;
  }
}

InputRouter::Touched InputRouter::touchedAt(QPointF at) const {
  Touched touched;
  auto* app = ui::Application::current();
  ui::View* hit = nullptr;
  const auto windows = app->windows();
  for (auto it = windows.rbegin(); it != windows.rend() && !hit; ++it)
    if (!(*it)->hidden()) hit = (*it)->hitTest({at.x(), at.y()});
  for (auto* view = hit; view; view = view->parent()) {
    auto* item = mirror_.itemOf(*view);
    if (!item || !item->takesTouches()) continue;
    touched.any = true;
    if (!touched.item) touched.item = item;
    touched.ignored = touched.ignored || app->input().ignoresTaps(*view);
    touched.ownsTaps = touched.ownsTaps || item->ownsTaps();
    const auto* scroll = dynamic_cast<const ScrollItem*>(item);
    touched.acts = touched.acts || !scroll;
    touched.moving = touched.moving || (scroll && scroll->moving());
  }
  return touched;
}

bool InputRouter::pointer(QPointerEvent& event, ui::PointerPhase phase, int id, QPointF at) {
  auto& app = *ui::Application::current();
  if (phase == ui::PointerPhase::Began) {
    const Touched touched = touchedAt(at);
    down_ = true;
    finger_ = id;
    // Of a touch that was meant for what was there before, only a scroller may hear.
    toToolkit_ = touched.any && !(touched.ignored && touched.acts);
    ownsTaps_ = touched.ownsTaps;
    touched_ = touched.item;
    // A finger that stops a list that moves touches nothing in it.
    toTree_ = !touched.moving;
  }
  if (toToolkit_ && touched_) touched_->userActed();
  const bool swiped = app.input().swiping();
  if (ownsTaps_ && phase == ui::PointerPhase::Ended && !swiped) phase = ui::PointerPhase::Cancelled;
  if (toTree_) stage_.guarded([&] { app.pointer(phase, id, at.x(), at.y()); });
  if (toToolkit_ && !swiped && app.input().swiping()) {
    toToolkit_ = false;
    letGo(event);
    return true;
  }
  return !toToolkit_;
}

// The toolkit's items let go of the touch; none of them makes a tap of it.
void InputRouter::letGo(QPointerEvent& event) {
  for (const auto& point : event.points()) {
    event.setExclusiveGrabber(point, nullptr);
    event.clearPassiveGrabbers(point);
  }
}

bool InputRouter::mouse(QMouseEvent& event) {
  // Made by Qt from a touch that this has already seen.
  if (event.source() != Qt::MouseEventNotSynthesized) return false;
  const QPointF at = event.position();
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      if (event.button() == Qt::BackButton) {
        stage_.guarded([] { ui::Application::current()->key(ui::Key::Back); });
        return true;
      }
      if (event.button() != Qt::LeftButton) return !touchedAt(at).any;
      return pointer(event, ui::PointerPhase::Began, 0, at);
    case QEvent::MouseMove:
      if (!down_) return false;  // hovering
      return pointer(event, ui::PointerPhase::Moved, 0, at);
    default:
      if (event.button() != Qt::LeftButton) return false;
      if (!down_) return false;
      down_ = false;
      return pointer(event, ui::PointerPhase::Ended, 0, at);
  }
}

bool InputRouter::touch(QTouchEvent& event) {
  bool usedUp = down_ && !toToolkit_;
  if (event.type() == QEvent::TouchCancel) {
    if (!down_) return false;
    down_ = false;
    return pointer(event, ui::PointerPhase::Cancelled, finger_, {});
  }
  for (const auto& point : event.points()) {
    const int id = point.id() + 1;  // 0 is the mouse
    switch (point.state()) {
      case QEventPoint::Pressed:
        if (!down_) usedUp = pointer(event, ui::PointerPhase::Began, id, point.position());
        break;
      case QEventPoint::Updated:
        if (down_ && id == finger_)
          usedUp = pointer(event, ui::PointerPhase::Moved, id, point.position());
        break;
      case QEventPoint::Released:
        if (!down_ || id != finger_) break;
        down_ = false;
        usedUp = pointer(event, ui::PointerPhase::Ended, id, point.position());
        break;
      default:
        break;
    }
  }
  if (usedUp) event.accept();
  return usedUp;
}

bool InputRouter::wheel(QWheelEvent& event) {
  if (touchedAt(event.position()).any) return false;
  event.accept();
  return true;
}

bool InputRouter::key(QKeyEvent& event) {
  auto& app = *ui::Application::current();
  const auto key = keyOf(event);
  auto* focused = app.focus().view();
  auto* item = focused ? mirror_.itemOf(*focused) : nullptr;
  if (item && item->keyboardItem() && item->keyboardItem()->hasActiveFocus()) {
    const bool editor = dynamic_cast<ui::TextInput*>(focused) != nullptr;
    if (!key || !leaves(*key, editor)) {
      item->userActed();
      return false;
    }
  }
  if (!key) return false;
  bool used = false;
  stage_.guarded([&] { used = app.key(*key); });
  event.setAccepted(used);
  return true;
}

}  // namespace qt
