#include "platform/qt/notifier.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <utility>

#include "platform/qt/desktop.h"
#include "platform/ui/values/branding.h"

namespace qt {

namespace {

constexpr auto kService = "org.freedesktop.Notifications";
constexpr auto kPath = "/org/freedesktop/Notifications";

}  // namespace

// The signals go to everybody on the bus: whose notification it was tells its number.
bool Notifier::connectToBus() {
  if (!sessionBusThere()) return false;
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  if (!std::exchange(listening_, true)) {
    bus.connect(kService, kPath, kService, QStringLiteral("ActionInvoked"), this,
                SLOT(actionInvoked(uint, QString)));
    bus.connect(kService, kPath, kService, QStringLiteral("NotificationClosed"), this,
                SLOT(closed(uint, uint)));
  }
  return true;
}

bool Notifier::show(const ui::Notification& n) {
  if (!connectToBus()) return false;
  const auto& words = ui::words();
  const auto text = [](const std::string& t) { return QString::fromStdString(t); };
  QVariantMap hints;
  hints[QStringLiteral("desktop-entry")] = text(words.program);
  hints[n.sound ? QStringLiteral("sound-name") : QStringLiteral("suppress-sound")] =
      n.sound ? QVariant(QStringLiteral("message-new-instant")) : QVariant(true);
  // "default" is what a click on the notification itself does.
  const QStringList actions{QStringLiteral("default"), text(words.open)};
  auto call = QDBusMessage::createMethodCall(kService, kPath, kService, QStringLiteral("Notify"));
  call << text(words.application) << 0U << text(words.program)
       << text(n.title.empty() ? words.application : n.title) << text(n.body).toHtmlEscaped()
       << actions << hints << -1;
  auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    const QDBusPendingReply<uint> id = *answer;
    if (id.isValid()) shown_.insert(id.value());
    answer->deleteLater();
  });
  return true;
}

void Notifier::actionInvoked(uint id, const QString&) {
  if (shown_.contains(id) && onActivated) onActivated();
}

void Notifier::closed(uint id, uint) { shown_.remove(id); }

}  // namespace qt
