#include "platform/qt/notifier.h"

#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileInfo>

#include "platform/ui/values/branding.h"

namespace qt {

namespace {

// Without an address the library would start a bus of its own.
bool busThere() {
  return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(QStringLiteral("/run/user/%1/bus").arg(getuid()));
}

}  // namespace

bool notifyDesktop(const ui::Notification& n) {
  if (!busThere()) return false;
  const auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                             QStringLiteral("/org/freedesktop/Notifications"),
                                             QStringLiteral("org.freedesktop.Notifications"),
                                             QStringLiteral("Notify"));
  QVariantMap hints;
  hints[n.sound ? QStringLiteral("sound-name") : QStringLiteral("suppress-sound")] =
      n.sound ? QVariant(QStringLiteral("message-new-instant")) : QVariant(true);
  call << QString::fromStdString(ui::words().application) << 0U << QString()
       << QString::fromStdString(n.title) << QString::fromStdString(n.body).toHtmlEscaped()
       << QStringList() << hints << -1;
  return bus.send(call);
}

}  // namespace qt
