#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_pump.h"
#include "platform/headless/headless_screen.h"
#include "simulator/side.h"

namespace sim {

namespace {

class HeadlessSide final : public Side {
 public:
  HeadlessSide(platform::Platform& platform, platform::VirtualClock& clock, const Options& options)
      : text_(options.textSize > 0 ? options.textSize / 100 : 1),
        screen_({options.width, options.height}, options.scale),
        app_(screen_, text_),
        pump_(platform, clock, screen_, app_) {
    screen_.keyboard = options.keyboardHeight();

    screen_.position = options.at;
  }

  ui::Application& application() override { return app_; }
  bool settle(const std::function<bool()>& isBusy, std::int64_t timeout) override {
    return pump_.settle(isBusy, timeout);
  }
  void pass(std::int64_t milliseconds) override { pump_.advance(milliseconds); }

  void tap(ui::Point at) override {
    app_.pointer(ui::PointerPhase::Began, 0, at.x, at.y);
    app_.pointer(ui::PointerPhase::Ended, 0, at.x, at.y);
    pump_.drain();
  }
  void drag(ui::Point from, ui::Point to) override {
    constexpr int kSteps = 8;
    constexpr std::int64_t kStepMilliseconds = 16;
    app_.pointer(ui::PointerPhase::Began, 0, from.x, from.y);
    for (int i = 1; i <= kSteps; ++i) {
      pump_.advance(kStepMilliseconds);
      app_.pointer(ui::PointerPhase::Moved, 0, from.x + (to.x - from.x) * i / kSteps,
                   from.y + (to.y - from.y) * i / kSteps);
    }
    app_.pointer(ui::PointerPhase::Ended, 0, to.x, to.y);
    pump_.drain();
  }
  void press(ui::Key key) override {
    app_.key(key);
    pump_.drain();
  }
  void type(const std::string& text) override {
    app_.input().text(text);
    pump_.drain();
  }
  bool shot(const std::string&) override { return false; }
  // Nobody can see it: there is nothing to wait for.
  int run() override { return 0; }
  void quit() override {}

 private:
  headless::FixedTextEngine text_;
  headless::HeadlessScreen screen_;
  ui::Application app_;
  headless::HeadlessPump pump_;
};

}  // namespace

std::unique_ptr<Side> makeHeadlessSide(platform::Platform& platform, platform::VirtualClock& clock,
                                       const Options& options) {
  return std::make_unique<HeadlessSide>(platform, clock, options);
}

}  // namespace sim
