// A simulated on-screen keyboard: shown over the lower part of the window while the view
// tree's focus wants one. Its keys type into whatever the toolkit's focus is in. Owned by
// the QtScreen. Main thread, points.
#pragma once

#include <QQuickItem>
#include <memory>

namespace qt {

class QmlParts;

class KeyboardStrip final : public QQuickItem {
  Q_OBJECT
 public:
  KeyboardStrip(QmlParts& parts, QQuickItem* root) : QQuickItem(root), parts_(parts) {}

  // Height 0: not shown. The keys are made when they are first needed.
  void show(double height);
  // Whether a pointer's event is the keyboard's: one that began on it.
  bool takes(const QEvent& event);

 private Q_SLOTS:
  void typed(const QString& text);
  void erased();
  void closed();

 private:
  void stroke(int key, const QString& text);

  QmlParts& parts_;
  std::unique_ptr<QQuickItem> keys_;
  bool down_ = false;
};

}  // namespace qt
