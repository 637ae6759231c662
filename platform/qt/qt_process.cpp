#include "platform/qt/qt_process.h"

#include <netdb.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSaveFile>
#include <array>
#include <cstring>
#include <stdexcept>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "platform/ui/values/branding.h"

// Outside of any namespace, as the resource compiler declares it.
static void loadParts() {
  Q_INIT_RESOURCE(platform_qt_parts);
  Q_INIT_RESOURCE(platform_qt_map);
  Q_INIT_RESOURCE(platform_qt_icons);
}

namespace qt {

namespace {

// The toolkit keeps pointers to both: the name by which the desktop tells windows apart.
int g_argc = 1;
std::string g_name;
char* g_argv[] = {nullptr, nullptr};

void setDefault(const char* name, const QByteArray& value) {
  if (!qEnvironmentVariableIsSet(name)) qputenv(name, value);
}

bool answers(int family, const sockaddr* address, socklen_t length) {
  const int s = socket(family, SOCK_STREAM, 0);
  if (s < 0) return false;
  const bool connected = connect(s, address, length) == 0;
  close(s);
  return connected;
}

bool unixSocketAnswers(const std::string& path, bool abstract) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t at = abstract ? 1 : 0;
  if (path.size() + at >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path + at, path.data(), path.size());
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + at + path.size());
  return answers(AF_UNIX, reinterpret_cast<const sockaddr*>(&address), length);
}

// "host:number.screen"; no host is this machine.
bool xServerAnswers(std::string display) {
  const auto colon = display.rfind(':');
  if (colon == std::string::npos) return false;
  const std::string host = display.substr(0, colon);
  const std::string number = display.substr(colon + 1, display.find('.', colon) - colon - 1);
  if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos) return false;
  if (host.empty() || host == "unix") {
    const std::string path = "/tmp/.X11-unix/X" + number;
    return unixSocketAnswers(path, false) || unixSocketAnswers(path, true);
  }
  addrinfo* found = nullptr;
  addrinfo wish{};
  wish.ai_socktype = SOCK_STREAM;
  const std::string port = std::to_string(6000 + std::stol(number));
  if (getaddrinfo(host.c_str(), port.c_str(), &wish, &found) != 0) return false;
  bool any = false;
  for (auto* a = found; a && !any; a = a->ai_next)
    any = answers(a->ai_family, a->ai_addr, a->ai_addrlen);
  freeaddrinfo(found);
  return any;
}

bool waylandAnswers() {
  const QByteArray name = qgetenv("WAYLAND_DISPLAY");
  if (name.isEmpty()) return false;
  const QByteArray path = name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name;
  return unixSocketAnswers(path.toStdString(), false);
}

// Where there is none, the toolkit's own software renderer takes a tenth of the time of a
// graphics library that imitates one.
bool graphicsCardThere() {
  return !QDir(QStringLiteral("/dev/dri"))
              .entryList({QStringLiteral("renderD*")}, QDir::System)
              .isEmpty() ||
         QFile::exists(QStringLiteral("/dev/nvidiactl"));
}

// What the libraries say of themselves at each start, and nobody can act on.
bool isChatter(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg) return true;
  static constexpr std::array kKnown{
      "XDG_RUNTIME_DIR not set", "You should not use it as a QML type",
      "Cannot create platform OpenGL context", "No suitable graphics backend found",
      "This plugin does not support propagateSizeHints"};
  for (const char* known : kKnown)
    if (text.contains(QLatin1String(known))) return true;
  return context.category && std::strcmp(context.category, "qt.webenginecontext") == 0;
}

// The house's choice of fonts, for this process and the browser engine's.
bool chooseFonts() {
  if (qEnvironmentVariableIsSet("FONTCONFIG_FILE")) return false;
  QFile ours(QStringLiteral(":/platform_qt/fonts.conf"));
  const QString path = QDir(QString::fromStdString(platform::current().folders().temporary))
                           .filePath(QStringLiteral("fonts.conf"));
  QSaveFile file(path);
  if (!ours.open(QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly)) return false;
  file.write(ours.readAll());
  return file.commit() && qputenv("FONTCONFIG_FILE", path.toUtf8());
}

void toLog(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (!isChatter(type, context, text)) platform::log("Qt: " + text.toStdString());
}

}  // namespace

bool QtProcess::displayAvailable() {
  const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
  const bool server = chosen.isEmpty() || chosen.startsWith("xcb") || chosen.startsWith("wayland");
  return !server || xServerAnswers(qgetenv("DISPLAY").toStdString()) || waylandAnswers();
}

bool QtProcess::running() { return QCoreApplication::instance() != nullptr; }

QtProcess::QtProcess(const Options& options) {
  if (options.offscreen) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (!displayAvailable()) throw std::runtime_error("no display: start it in a graphical session");
  // Memory and software have no use for a GPU; looking for one costs more than a frame.
  if (qgetenv("QT_QPA_PLATFORM").startsWith("offscreen") || !graphicsCardThere())
    setDefault("QT_QUICK_BACKEND", "software");
  const bool software = qgetenv("QT_QUICK_BACKEND") == "software";
  if (software) setDefault("QT_XCB_GL_INTEGRATION", "none");
  if (options.scale > 0) {
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
  }
  // The toolkit would make itself a folder, and leave it.
  if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
    const QString runtime = QDir(QString::fromStdString(platform::current().folders().temporary))
                                .filePath(QStringLiteral("runtime"));
    using Owner = QFileDevice;
    if (QDir().mkpath(runtime) &&
        QFile::setPermissions(runtime, Owner::ReadOwner | Owner::WriteOwner | Owner::ExeOwner))
      qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
  }
  // What is in a page, for whoever has it read: the engine asks once, at its start.
  setDefault("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
  // The browser engine refuses to run as root with its sandbox on.
  if (geteuid() == 0) setDefault("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");

  qInstallMessageHandler(toLog);
  loadParts();
  choseFonts_ = chooseFonts();
  // What the browser engine needs of an application that loads it later.
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
  if (!software) QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
  g_name = ui::words().application;
  g_argv[0] = g_name.data();
  application_ = std::make_unique<QGuiApplication>(g_argc, g_argv);
  // The toolkit keeps its own caches in a folder of this name, the app's.
  QGuiApplication::setApplicationName(QString::fromStdString(ui::words().application).toLower());
  QGuiApplication::setApplicationDisplayName(QString::fromStdString(ui::words().application));
  QGuiApplication::setDesktopFileName(QString::fromStdString(ui::words().program));
  QGuiApplication::setQuitOnLastWindowClosed(false);
  for (const char* icons : {"FontAwesome.otf", "MaterialIcons-Regular.ttf"})
    QFontDatabase::addApplicationFont(QStringLiteral(":/platform_qt/icons/") +
                                      QLatin1String(icons));
}

QtProcess::~QtProcess() {
  application_.reset();
  if (choseFonts_) qunsetenv("FONTCONFIG_FILE");
  qInstallMessageHandler(nullptr);
}

}  // namespace qt
