#include "platform/qt/items/qml_parts.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

#include "platform/base/log.h"

namespace qt {

QmlParts::QmlParts() = default;
QmlParts::~QmlParts() = default;

std::unique_ptr<QQuickItem> QmlParts::make(const QString& name) {
  if (!engine_) engine_ = std::make_unique<QQmlEngine>();
  auto*& component = components_[name];
  if (!component)
    component = new QQmlComponent(
        engine_.get(), QUrl(QStringLiteral("qrc:/platform_qt/controls/%1.qml").arg(name)),
        engine_.get());
  QObject* made = component->isError() ? nullptr : component->create();
  auto* item = qobject_cast<QQuickItem*>(made);
  if (!item) {
    delete made;
    platform::log("No " + name.toStdString() + ": " + component->errorString().toStdString());
    return nullptr;
  }
  QQmlEngine::setObjectOwnership(item, QQmlEngine::CppOwnership);
  return std::unique_ptr<QQuickItem>(item);
}

}  // namespace qt
