#include "simulator/qt_side.h"

#include <stdexcept>

#include "platform/qt/qt_hand.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_screen.h"

namespace sim {

namespace {

qt::QtScreen::Options screenOptions(const Options& options) {
  if (!qt::QtProcess::displayAvailable())
    throw std::runtime_error(
        "no display was found: start it where DISPLAY or WAYLAND_DISPLAY is set, or use "
        "--screen headless, or QT_QPA_PLATFORM=offscreen for pictures");
  qt::QtScreen::Options o;
  o.size = {options.width, options.height};
  o.process.scale = options.scale;
  o.keyboard = options.keyboardHeight();
  o.textScale = options.textSize / 100;
  o.position = options.at;
  // A script or a tour opens nothing on the desktop of whoever plays it.
  if (!options.script.empty() || !options.tour.empty())
    o.opener = [](const std::string&) { return true; };
  return o;
}

class QtSide final : public Side {
 public:
  QtSide(platform::Platform& platform, const Options& options)
      : screen_(screenOptions(options)),
        app_(screen_, screen_.textEngine()),
        loop_(platform, screen_),
        hand_(screen_, loop_) {
    screen_.show();
  }

  ui::Application& application() override { return app_; }
  bool settle(const std::function<bool()>& isBusy, std::int64_t timeout) override {
    return loop_.settle(isBusy, timeout);
  }
  void pass(std::int64_t milliseconds) override { loop_.pass(milliseconds); }
  void tap(ui::Point at) override { hand_.tap(at); }
  void drag(ui::Point from, ui::Point to) override { hand_.drag(from, to); }
  void press(ui::Key key) override { hand_.press(key); }
  void type(const std::string& text) override { hand_.type(text); }
  bool shot(const std::string& path) override { return loop_.grab(path); }
  int run() override { return loop_.exec(); }
  void quit() override { loop_.quit(); }

 private:
  qt::QtScreen screen_;
  ui::Application app_;
  qt::QtLoop loop_;
  qt::QtHand hand_;
};

}  // namespace

std::unique_ptr<Side> makeQtSide(platform::Platform& platform, const Options& options) {
  return std::make_unique<QtSide>(platform, options);
}

}  // namespace sim
