// infovarlo: the app itself. No arguments, no settings: its hosts are those of its
// deployment, its folders the user's.
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "app/kit/deployment.h"
#include "app/messaging/delivery.h"
#include "app/shell/branding.h"
#include "app/shell/register_app.h"
#include "platform/base/assets_folder.h"
#include "platform/base/end_signals.h"
#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "platform/push/push_line.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_screen.h"
#include "platform/ui/application.h"
#include "platform/url/download_folder.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/app/services.h"

namespace {

namespace fs = std::filesystem;

// One of the user's folders, by the desktop's convention.
fs::path userFolder(const char* variable, const char* underHome) {
  if (const char* chosen = std::getenv(variable); chosen && *chosen == '/')
    return fs::path(chosen) / "infovarlo";
  if (const char* home = std::getenv("HOME"); home && *home == '/')
    return fs::path(home) / underHome / "infovarlo";
  throw std::runtime_error("no folder for the app's data: HOME is not set");
}

std::string folder(const fs::path& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (error) throw std::runtime_error("cannot make " + path.string() + ": " + error.message());
  return path.string() + "/";
}

// An app without messages is better than none.
std::shared_ptr<push::PushLine> pushLine() {
  try {
    return varlo::makePushLine(varlo::deployment::pushBroker().str());
  } catch (const std::exception& e) {
    platform::log(std::string("No push messages will come: ") + e.what());
    return nullptr;
  }
}

int run() {
  if (!qt::QtProcess::displayAvailable())
    throw std::runtime_error("no display was found: start it from a desktop session");
  platform::SystemClock clock;
  const fs::path data = userFolder("XDG_DATA_HOME", ".local/share");
  // A folder of this run's own: another instance has its own, and what a killed one left
  // goes now.
  const std::string cache = folder(userFolder("XDG_CACHE_HOME", ".cache") / "tmp");
  platform::DownloadFolder::sweep(cache);
  platform::DownloadFolder own(cache);
  std::string error;
  const std::string temporary = own.path(error);
  if (temporary.empty())
    throw std::runtime_error("cannot make a folder in " + cache + ": " + error);
  platform::Platform platform(
      clock, platform::Folders{platform::assetsFolder(), folder(data / "Documents"),
                               folder(data / "Library"), temporary + "/"});
  platform::PlatformScope scope(platform);
  varlo::setBranding();
  varlo::registerApp();
  kes::lendServices();
  qt::QtScreen::Options options;
  options.asksWhere = true;
  qt::QtScreen screen(options);
  ui::Application application(screen, screen.textEngine());
  qt::QtLoop loop(platform, screen);
  const auto tidy = [&temporary] {
    std::error_code ignored;
    fs::remove_all(temporary, ignored);
  };
  const platform::EndSignals endSignals(
      [&] { platform.mainQueue().post([&loop] { loop.quit(); }); }, tidy);
  kes::KesAppDelegate delegate;
  varlo::PushDelivery delivery(pushLine());
  screen.show();
  delegate.didFinishLaunching();
  delivery.deliverTo(delegate);
  application.activate();
  const int status = loop.exec();
  application.terminate();
  platform.mainQueue().close();
  return endSignals.came() ? 128 + endSignals.came() : status;
}

}  // namespace

int main() {
  try {
    return run();
  } catch (const std::exception& e) {
    std::cerr << "infovarlo: " << e.what() << "\n";
    return 2;
  }
}
