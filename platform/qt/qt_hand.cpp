#include "platform/qt/qt_hand.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWheelEvent>
#include <cmath>

#include "platform/ui/application.h"

namespace qt {

namespace {

constexpr std::int64_t kStep = 8;

quint64 timestamp() {
  static const QElapsedTimer clock = [] {
    QElapsedTimer t;
    t.start();
    return t;
  }();
  return static_cast<quint64>(clock.elapsed()) + 1;
}

void send(QQuickWindow& window, QEvent::Type type, ui::Point at, bool pressed) {
  const QPointF local(at.x, at.y);
  const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, local, local, window.mapToGlobal(local), button,
                    pressed ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier,
                    QPointingDevice::primaryPointingDevice());
  event.setTimestamp(timestamp());
  QCoreApplication::sendEvent(&window, &event);
}

int codeOf(ui::Key key) {
  switch (key) {
    case ui::Key::Tab:
      return Qt::Key_Tab;
    case ui::Key::BackTab:
      return Qt::Key_Backtab;
    case ui::Key::Up:
      return Qt::Key_Up;
    case ui::Key::Down:
      return Qt::Key_Down;
    case ui::Key::Left:
      return Qt::Key_Left;
    case ui::Key::Right:
      return Qt::Key_Right;
    case ui::Key::Enter:
      return Qt::Key_Return;
    case ui::Key::Space:
      return Qt::Key_Space;
    case ui::Key::Escape:
      return Qt::Key_Escape;
    case ui::Key::Back:
      return Qt::Key_Back;
    case ui::Key::PageUp:
      return Qt::Key_PageUp;
    case ui::Key::PageDown:
      return Qt::Key_PageDown;
    case ui::Key::Home:
      return Qt::Key_Home;
    case ui::Key::End:
      return Qt::Key_End;
    case ui::Key::Menu:
      return Qt::Key_F10;
  }
  return 0;
}

void stroke(QQuickWindow& window, int code, const QString& text) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, code, Qt::NoModifier, text);
    event.setTimestamp(timestamp());
    QCoreApplication::sendEvent(&window, &event);
  }
}

}  // namespace

void QtHand::down(ui::Point at) { send(screen_.window(), QEvent::MouseButtonPress, at, true); }
void QtHand::move(ui::Point at) { send(screen_.window(), QEvent::MouseMove, at, true); }
void QtHand::up(ui::Point at) { send(screen_.window(), QEvent::MouseButtonRelease, at, false); }

void QtHand::tap(ui::Point at) {
  down(at);
  up(at);
}

void QtHand::drag(ui::Point from, ui::Point to, std::int64_t milliseconds) {
  QElapsedTimer time;
  time.start();
  down(from);
  for (double part = 0; part < 1;) {
    loop_.pass(kStep);
    part = std::min(1.0, static_cast<double>(time.elapsed()) / static_cast<double>(milliseconds));
    move({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part});
  }
  up(to);
}

void QtHand::wheel(ui::Point at, double notches) {
  const QPointF local(at.x, at.y);
  QWheelEvent event(local, screen_.window().mapToGlobal(local), {},
                    QPoint(0, static_cast<int>(std::lround(-notches * 120))), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  event.setTimestamp(timestamp());
  QCoreApplication::sendEvent(&screen_.window(), &event);
}

void QtHand::press(ui::Key key) { stroke(screen_.window(), codeOf(key), {}); }

void QtHand::type(const std::string& text) {
  // An editor that can't be seen has no item to type into.
  auto* app = ui::Application::current();
  auto* item = screen_.window().activeFocusItem();
  if (app && app->focus().view() && (!item || !item->property("cursorPosition").isValid())) {
    app->input().text(text);
    return;
  }
  for (const QChar c : QString::fromStdString(text))
    stroke(screen_.window(), c == u'\n' ? static_cast<int>(Qt::Key_Return) : 0, c);
}

}  // namespace qt
