#include "platform/qt/keyboard_strip.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointerEvent>
#include <QQuickWindow>

#include "platform/qt/items/qml_parts.h"
#include "platform/ui/application.h"

namespace qt {

void KeyboardStrip::show(double height) {
  setVisible(height > 0);
  if (height <= 0 || !window()) return;
  setZ(2);
  setSize({static_cast<double>(window()->width()), height});
  setPosition({0, window()->height() - height});
  if (!keys_) {
    keys_ = parts_.make(QStringLiteral("Keyboard"));
    if (!keys_) return;
    keys_->setParentItem(this);
    connect(keys_.get(), SIGNAL(typed(QString)), this, SLOT(typed(QString)));
    connect(keys_.get(), SIGNAL(erased()), this, SLOT(erased()));
    connect(keys_.get(), SIGNAL(closed()), this, SLOT(closed()));
  }
  keys_->setSize(size());
}

bool KeyboardStrip::takes(const QEvent& event) {
  const bool begins = event.type() == QEvent::MouseButtonPress ||
                      event.type() == QEvent::MouseButtonDblClick ||
                      event.type() == QEvent::TouchBegin;
  const bool ends = event.type() == QEvent::MouseButtonRelease ||
                    event.type() == QEvent::TouchEnd || event.type() == QEvent::TouchCancel;
  const bool moves = event.type() == QEvent::MouseMove || event.type() == QEvent::TouchUpdate;
  if (begins) {
    const auto& pointer = static_cast<const QPointerEvent&>(event);
    down_ = isVisible() && pointer.pointCount() > 0 &&
            const_cast<QPointerEvent&>(pointer).point(0).position().y() >= y();
  }
  const bool mine = down_ && (begins || moves || ends);
  if (ends) down_ = false;
  return mine;
}

void KeyboardStrip::stroke(int key, const QString& text) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(window(), &event);
  }
}

void KeyboardStrip::typed(const QString& text) {
  stroke(text == QLatin1String("\n") ? static_cast<int>(Qt::Key_Return) : 0, text);
}

void KeyboardStrip::erased() { stroke(Qt::Key_Backspace, {}); }

void KeyboardStrip::closed() {
  if (auto* app = ui::Application::current()) app->focus().set(nullptr);
}

}  // namespace qt
