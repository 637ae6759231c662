// From the start of the process to the first frame: the app on the Qt screen, or, with
// "empty", a window with nothing in it; with "home" to the home page's text, as the town's host
// that BENCH_TOWN names serves it, and with "web" to an empty web view in an empty window, which
// then stays until it is killed. The start is the instant that the environment variable BENCH_START
// names (nanoseconds of the monotonic clock). Prints one line: milliseconds, and whether the
// browser engine was in the process by then.
#include <time.h>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

#include "app/kit/deployment.h"
#include "app/shell/register_app.h"
#include "platform/base/assets_folder.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_screen.h"
#include "platform/ui/application.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/app/services.h"
#include "simulator/phone.h"

namespace {

bool browserEngineLoaded() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);)
    if (line.find("WebEngineCore") != std::string::npos) return true;
  return false;
}

void tellTime() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const char* start = std::getenv("BENCH_START");
  const double elapsed = static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec) -
                         (start ? std::atof(start) : 0);
  std::printf("%.2f %d\n", elapsed / 1e6, browserEngineLoaded() ? 1 : 0);
  std::fflush(stdout);
}

[[noreturn]] void firstFrame() {
  tellTime();
  std::_Exit(0);
}

int emptyWindow(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData("import QtQuick\nWindow { width: 375; height: 667; visible: true }", QUrl());
  std::unique_ptr<QObject> made(component.create());
  auto* window = qobject_cast<QQuickWindow*>(made.get());
  if (!window) return 1;
  QObject::connect(window, &QQuickWindow::frameSwapped, window, [] { firstFrame(); });
  return app.exec();
}

// The engine is asked for by its QML module, as the app does it.
int emptyWebView(int argc, char** argv) {
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
  QGuiApplication app(argc, argv);
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData(
      "import QtQuick\nimport QtWebEngine\n"
      "Window { id: w; width: 375; height: 667; visible: true; signal loaded()\n"
      "WebEngineView { anchors.fill: parent; Component.onCompleted: loadHtml('<p>.</p>')\n"
      "onLoadingChanged: (i) => { if (i.status == WebEngineView.LoadSucceededStatus) w.title = "
      "'loaded' } } }",
      QUrl());
  const std::unique_ptr<QObject> made(component.create());
  auto* window = qobject_cast<QQuickWindow*>(made.get());
  if (!window) return 1;
  bool told = false;
  QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] {
    if (window->title() == QStringLiteral("loaded") && !std::exchange(told, true)) tellTime();
  });
  QObject::connect(window, &QWindow::windowTitleChanged, window, [&] { window->update(); });
  return app.exec();
}

// Until the page has come from the host and is drawn.
int homePage() {
  sim::Options options;
  if (const char* town = std::getenv("BENCH_TOWN")) options.town = town;
  sim::Phone phone(options);
  phone.start();
  constexpr std::int64_t kPatience = 30000;
  if (!phone.side().settle([&] { return phone.busy(); }, kPatience)) return 1;
  tellTime();
  return 0;
}

int theApp() {
  platform::SystemClock clock;
  platform::Platform platform(
      clock, platform::Folders{platform::assetsFolder(), "/tmp/", "/tmp/", "/tmp"});
  platform::PlatformScope scope(platform);
  // A host that refuses at once: launching does not wait for the town.
  varlo::deployment::pointEveryServiceAt("http://127.0.0.1:9");
  varlo::registerApp();
  kes::lendServices();
  qt::QtScreen::Options options;
  options.process.offscreen = true;
  qt::QtScreen screen(options);
  screen.onFirstFrame = [] { firstFrame(); };
  ui::Application application(screen, screen.textEngine());
  qt::QtLoop loop(platform, screen);
  kes::KesAppDelegate delegate;
  screen.show();
  delegate.didFinishLaunching();
  application.activate();
  return loop.exec();
}

}  // namespace

int main(int argc, char** argv) {
  const std::string kind = argc > 1 ? argv[1] : "app";
  if (kind == "empty") return emptyWindow(argc, argv);
  if (kind == "web") return emptyWebView(argc, argv);
  return kind == "home" ? homePage() : theApp();
}
