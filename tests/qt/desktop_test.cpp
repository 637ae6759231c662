// What the program asks of the desktop, on a session bus of the tests' own with services of
// their own: notifications, the size of texts.
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QProcess>
#include <QQuickWindow>
#include <QStringList>
#include <QThread>
#include <limits>

#include "desk.h"
#include "platform/ui/values/branding.h"

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

// Plays the desktop's settings.
class Settings : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  QVariant textSize;

 public Q_SLOTS:
  QDBusVariant Read(const QString& group, const QString& key) {
    const bool known = group == "org.gnome.desktop.interface" && key == "text-scaling-factor";
    return QDBusVariant(QVariant::fromValue(QDBusVariant(known ? textSize : QVariant(0))));
  }
};

class Desktop : public Desk {
 protected:
  static void SetUpTestSuite() {
    bus_ = std::make_unique<QProcess>();
    bus_->start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    ASSERT_TRUE(bus_->waitForReadyRead()) << "dbus-daemon does not start";
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus_->readLine().trimmed());
  }
  static void TearDownTestSuite() {
    bus_->kill();
    bus_->waitForFinished();
    bus_.reset();
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
  }
  ~Desktop() override { QDBusConnection::disconnectFromBus("desktop"); }

  static void offer(QObject& service, const QString& name, const QString& path,
                    QDBusConnection::RegisterOptions what = QDBusConnection::ExportAllSlots) {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    auto desktop = QDBusConnection::connectToBus(address, "desktop");
    EXPECT_TRUE(desktop.registerObject(path, &service, what));
    EXPECT_TRUE(desktop.registerService(name));
  }
  bool until(const std::function<bool()>& condition) { return loop.until(condition, 5000); }

  inline static std::unique_ptr<QProcess> bus_;
};

TEST_F(Desktop, NotificationsAreTextAndAClickBringsTheWindowBack) {
  Notifications service;
  offer(service, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
  app.notify({{}, "Domani <b>chiuso</b>", true});
  ASSERT_TRUE(until([&] { return !service.shown.isEmpty(); }));
  const auto words = ui::words();
  EXPECT_EQ(service.shown.front().toStdString(),
            words.application + "|" + words.program + "|" + words.application +
                "|Domani &lt;b&gt;chiuso&lt;/b&gt;|default," + words.open);

  app.activate();
  screen.window().setWindowStates(Qt::WindowMinimized);
  const auto minimised = [&] {
    return (screen.window().windowStates() & Qt::WindowMinimized) != 0;
  };
  ASSERT_TRUE(until(minimised));
  // Somebody else's, on the same bus; then ours.
  Q_EMIT service.ActionInvoked(service.last + 1, "default");
  app.notify({"Titolo", "altro", true});
  ASSERT_TRUE(until([&] { return service.shown.size() == 2; }));
  EXPECT_TRUE(minimised());
  loop.pass(50);
  Q_EMIT service.ActionInvoked(41, "default");
  EXPECT_TRUE(until([&] { return !minimised(); }));
}

TEST_F(Desktop, TheSizeOfTextsIsTheDesktopsWithinLimits) {
  EXPECT_EQ(screen.textEngine().scale(), 1) << "nobody answers";
  // Who asks waits for the answer: it has to come from elsewhere.
  QThread thread;
  Settings settings;
  offer(settings, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop");
  settings.moveToThread(&thread);
  thread.start();
  const std::pair<QVariant, double> cases[] = {{1.5, 1.5},
                                               {2, 2},
                                               {9.0, 2},
                                               {0.1, 0.8},
                                               {0.0, 1},
                                               {-1.5, 1},
                                               {"x", 1},
                                               {true, 1},
                                               {std::numeric_limits<double>::quiet_NaN(), 1},
                                               {std::numeric_limits<double>::infinity(), 1}};
  for (const auto& [said, size] : cases) {
    settings.textSize = said;
    qt::QtScreen other(qt::QtScreen::Options{});
    EXPECT_EQ(other.textEngine().scale(), size) << said.toString().toStdString();
  }
  settings.textSize = 1.5;
  qt::QtScreen::Options options;
  options.textScale = 1.2;
  EXPECT_EQ(qt::QtScreen(options).textEngine().scale(), 1.2)
      << "what the program was told goes first";
  thread.quit();
  thread.wait();
}

#include "desktop_test.moc"
