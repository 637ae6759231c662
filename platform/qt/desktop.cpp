#include "platform/qt/desktop.h"

#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFileInfo>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

#include "platform/ui/text_engine.h"

namespace qt {

namespace {

constexpr int kPatience = 250;  // milliseconds; the first frame waits for the answer

// The settings that desktops of every kind share with their applications.
QVariant desktopSetting(const QString& group, const QString& key) {
  if (!sessionBusThere()) return {};
  const auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return {};
  auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"),
                                             QStringLiteral("/org/freedesktop/portal/desktop"),
                                             QStringLiteral("org.freedesktop.portal.Settings"),
                                             QStringLiteral("Read"));
  call << group << key;
  call.setAutoStartService(false);
  const auto reply = bus.call(call, QDBus::Block, kPatience);
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
  QVariant value = reply.arguments().first();
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

// A display server of the older kind has the text's size in its resolution, which the
// toolkit scales everything by; unless it was told not to.
bool toldByResolution() {
  return QGuiApplication::platformName() == QLatin1String("xcb") &&
         qgetenv("QT_ENABLE_HIGHDPI_SCALING") != "0";
}

}  // namespace

bool sessionBusThere() {
  return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(QStringLiteral("/run/user/%1/bus").arg(getuid()));
}

double desktopTextScale() {
  if (toldByResolution()) return 1;
  bool known = false;
  const double scale = desktopSetting(QStringLiteral("org.gnome.desktop.interface"),
                                      QStringLiteral("text-scaling-factor"))
                           .toDouble(&known);
  if (!known || !(scale > 0) || !std::isfinite(scale)) return 1;
  return std::clamp(scale, ui::TextEngine::kSmallestScale, ui::TextEngine::kLargestScale);
}

}  // namespace qt
