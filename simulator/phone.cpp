#include "simulator/phone.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "app/kit/deployment.h"
#include "app/messaging/delivery.h"
#include "app/shell/branding.h"
#include "app/shell/register_app.h"
#include "platform/base/assets_folder.h"
#include "platform/base/log.h"
#include "platform/push/local_line.h"
#include "runtime/net/httputils2service.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/app/services.h"
#include "townhost/fault_script.h"

#ifdef HOUSE_QT
#include "simulator/qt_side.h"
#endif

namespace sim {

namespace fs = std::filesystem;

constexpr std::size_t kLogLines = 10000;  // that a script can ask for

// The data folder of a run.
struct Phone::Data {
  fs::path root;
  bool temporary = false;

  explicit Data(const std::string& wanted) {
    std::error_code error;
    if (wanted.empty()) {
      std::string pattern = (fs::temp_directory_path(error) / "varlo-XXXXXX").string();
      if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a folder for the phone's data: " + pattern);
      root = pattern;
      temporary = true;
    } else {
      root = fs::absolute(wanted, error);
    }
    for (const char* folder : {"Documents", "Library", "tmp"}) {
      fs::create_directories(root / folder, error);
      if (error)
        throw std::runtime_error("cannot make " + (root / folder).string() + ": " +
                                 error.message());
    }
  }
  ~Data() {
    std::error_code ignored;
    if (temporary) fs::remove_all(root, ignored);
  }
};

namespace {

// The headless phone's time moves when the script says so.
std::unique_ptr<platform::Clock> clockFor(const Options& options) {
  if (options.screen == Options::Screen::Headless)
    return std::make_unique<platform::VirtualClock>(
        options.now.value_or(platform::SystemClock().now()));
  return options.now ? std::make_unique<platform::SystemClock>(*options.now)
                     : std::make_unique<platform::SystemClock>();
}

std::unique_ptr<Side> sideFor(platform::Platform& platform, platform::Clock& clock,
                              const Options& options) {
  if (auto* steered = dynamic_cast<platform::VirtualClock*>(&clock))
    return makeHeadlessSide(platform, *steered, options);
#ifdef HOUSE_QT
  return makeQtSide(platform, options);
#else
  throw std::runtime_error("this build has no Qt screen: use --screen headless");
#endif
}

}  // namespace

Phone::Phone(const Options& options) : broker_(options.push) {
  platform::setLogSink([this](std::string_view line) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
    std::lock_guard lock(logMutex_);
    if (log_.size() == kLogLines) log_.pop_front();
    log_.emplace_back(line);
  });
  varlo::setBranding();
  clock_ = clockFor(options);
  data_ = std::make_unique<Data>(options.data);
  const auto folder = [&](const char* name) { return (data_->root / name).string() + "/"; };
  platform_ = std::make_unique<platform::Platform>(
      *clock_, platform::Folders{platform::assetsFolder(), folder("Documents"), folder("Library"),
                                 (data_->root / "tmp").string()});
  scope_ = std::make_unique<platform::PlatformScope>(*platform_);
  signals_ = std::make_unique<platform::EndSignals>(
      [this] {
        if (ending_) return;
        platform_->mainQueue().post([this] {
          if (side_) side_->quit();
        });
      },
      [root = data_->root, temporary = data_->temporary] {
        std::error_code ignored;
        if (temporary) fs::remove_all(root, ignored);
      });

  if (options.town.empty()) {
    town::TownHost::Options host;
    host.now = [clock = clock_.get()] { return clock->now(); };
    host_ = std::make_unique<town::TownHost>(std::move(host));
    town_ = host_->url();
  } else {
    town_ = options.town;
  }

  side_ = sideFor(*platform_, *clock_, options);
}

// The app first, while the queue still hears it; then the queue, so that nothing of the app
// runs on a screen that is gone; the host last, which the app's jobs were waiting for.
Phone::~Phone() {
  ending_ = true;
  delivery_.reset();
  delegate_.reset();
  if (platform_) platform_->mainQueue().close();
  side_.reset();
  if (host_) host_->stop();
  platform::setLogSink({});
}

void Phone::start() {
  varlo::registerApp();
  kes::lendServices();
  varlo::deployment::pointEveryServiceAt(kes::Text(town_));
  delegate_ = std::make_unique<kes::KesAppDelegate>();
  std::shared_ptr<push::PushLine> line = varlo::makePushLine(broker_);
  if (!line) line = localLine_ = std::make_shared<push::LocalLine>(platform_->mainQueue());
  delivery_ = std::make_unique<varlo::PushDelivery>(line);
  delegate_->didFinishLaunching();
  delivery_->deliverTo(*delegate_);
  application().activate();
}

ui::Window& Phone::window() {
  auto* window = application().keyWindow();
  if (!window) throw std::runtime_error("the app shows no window");
  return *window;
}

bool Phone::busy() const {
  return kes::kes_httputils2service::instance().jobsInFlight() > 0 ||
         side_->application().hud().progressShown();
}

std::string Phone::whatIsGoingOn() const {
  std::string text =
      std::to_string(kes::kes_httputils2service::instance().jobsInFlight()) + " jobs in flight";
  if (side_->application().hud().progressShown())
    text += ", overlay \"" + side_->application().hud().progressText() + "\"";
  if (!side_->application().idle()) text += ", something is animated";
  return text;
}

bool Phone::logged(const std::string& text) const {
  std::lock_guard lock(logMutex_);
  return std::any_of(log_.begin(), log_.end(),
                     [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

std::string Phone::setFaults(const std::string& json) {
  if (!host_) return "faults need the embedded host";
  if (json == "none") {
    host_->faults().clear();
    return {};
  }
  try {
    town::applyFaultScript(host_->faults(), json);
    return {};
  } catch (const std::exception& e) {
    return e.what();
  }
}

std::string Phone::push(const std::string& json) {
  if (!localLine_) return "messages come from the broker: send it there";
  localLine_->receive(json);
  return {};
}

}  // namespace sim
