// Notifications on a session bus of the test's own, with a service of the test's own.
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QProcess>
#include <QQuickWindow>
#include <QStringList>

#include "desk.h"
#include "platform/ui/values/branding.h"

namespace {

constexpr auto kService = "org.freedesktop.Notifications";
constexpr auto kPath = "/org/freedesktop/Notifications";

}  // namespace

// Plays the desktop's notification service.
class Notifications : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public:
  QStringList shown;
  uint last = 40;

 public Q_SLOTS:
  uint Notify(const QString& who, uint, const QString& icon, const QString& title,
              const QString& body, const QStringList& actions, const QVariantMap&, int) {
    shown << who + "|" + icon + "|" + title + "|" + body + "|" + actions.join(',');
    return ++last;
  }

 Q_SIGNALS:
  void ActionInvoked(uint id, const QString& action);
  void NotificationClosed(uint id, uint reason);
};

class Notify : public Desk {
 protected:
  Notify() {
    bus_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    EXPECT_TRUE(bus_.waitForReadyRead()) << "dbus-daemon does not start";
    const QByteArray address = bus_.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    auto desktop = QDBusConnection::connectToBus(QString::fromUtf8(address), "desktop");
    EXPECT_TRUE(desktop.registerObject(
        kPath, &service_, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    EXPECT_TRUE(desktop.registerService(kService));
  }
  ~Notify() override {
    QDBusConnection::disconnectFromBus("desktop");
    bus_.kill();
    bus_.waitForFinished();
  }
  bool until(const std::function<bool()>& condition) { return loop.until(condition, 5000); }

  QProcess bus_;
  Notifications service_;
};

TEST_F(Notify, AreShownAsTextAndAClickBringsTheWindowBack) {
  app.notify({{}, "Domani <b>chiuso</b>", true});
  ASSERT_TRUE(until([&] { return !service_.shown.isEmpty(); }));
  const auto words = ui::words();
  EXPECT_EQ(service_.shown.front().toStdString(),
            words.application + "|" + words.program + "|" + words.application +
                "|Domani &lt;b&gt;chiuso&lt;/b&gt;|default," + words.open);

  app.activate();
  screen.window().setWindowStates(Qt::WindowMinimized);
  const auto minimised = [&] {
    return (screen.window().windowStates() & Qt::WindowMinimized) != 0;
  };
  ASSERT_TRUE(until(minimised));
  // Somebody else's, on the same bus; then ours.
  Q_EMIT service_.ActionInvoked(service_.last + 1, "default");
  app.notify({"Titolo", "altro", true});
  ASSERT_TRUE(until([&] { return service_.shown.size() == 2; }));
  EXPECT_TRUE(minimised());
  loop.pass(50);
  Q_EMIT service_.ActionInvoked(41, "default");
  EXPECT_TRUE(until([&] { return !minimised(); }));
}

#include "notify_test.moc"
