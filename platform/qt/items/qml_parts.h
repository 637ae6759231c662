// The toolkit's own controls, made from the QML parts that the program carries. The QML
// engine starts with the first part that is asked for. Owned by the QtScreen; what
// make() returns belongs to the caller. Main thread.
#pragma once

#include <QHash>
#include <QString>
#include <memory>

class QQmlComponent;
class QQmlEngine;
class QQuickItem;

namespace qt {

class QmlParts {
 public:
  QmlParts();
  ~QmlParts();
  // An item of "controls/<name>.qml" with no parent; null, and a line in the log, when
  // its modules aren't installed.
  std::unique_ptr<QQuickItem> make(const QString& name);

 private:
  std::unique_ptr<QQmlEngine> engine_;
  QHash<QString, QQmlComponent*> components_;  // owned by the engine
};

}  // namespace qt
