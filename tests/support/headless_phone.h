// HeadlessPhone: a phone without pixels for one test, on a platform of its own: virtual
// clock, fixed text metrics, a screen of 320 x 568 points with a status bar of 20.
// WindowPhone: the same with a window of the test's, made key and shown.
//
// The test's target links platform_headless itself. Main thread.
#pragma once

#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_pump.h"
#include "tests/support/test_platform.h"

namespace testing_support {

struct HeadlessPhone {
  struct Options {
    platform::Ticks startAt = TestPlatform::kStart;
    ui::Size size{320, 568};
    double textScale = 1;
  };
  HeadlessPhone() : HeadlessPhone(Options()) {}
  explicit HeadlessPhone(const Options& options)
      : test(options.startAt), screen(options.size), text(options.textScale) {}

  // Where it has come to be.
  void tap(const ui::View& view) {
    pump.drain();
    tap(view.frameInWindow().center());
  }
  // With all that it sets off; the clock stands still.
  void tap(ui::Point p) {
    down(p);
    up(p);
    pump.drain();
  }
  // A finger that moves in ten steps of so many milliseconds, and rests before it leaves.
  void swipe(ui::Point from, ui::Point to, std::int64_t step = 16, std::int64_t rest = 0) {
    down(from);
    for (int i = 1; i <= 10; ++i) {
      pump.advance(step);
      move({from.x + (to.x - from.x) * i / 10, from.y + (to.y - from.y) * i / 10});
    }
    pump.advance(rest);
    up(to);
  }
  // One finger, step by step; nothing that it sets off in later turns is run.
  void down(ui::Point p) { app.pointer(ui::PointerPhase::Began, 1, p.x, p.y); }
  void move(ui::Point p) { app.pointer(ui::PointerPhase::Moved, 1, p.x, p.y); }
  void up(ui::Point p) { app.pointer(ui::PointerPhase::Ended, 1, p.x, p.y); }
  void turn(ui::Size size) {
    screen.setSize(size);
    app.screenChanged();
    pump.drain();
  }

  TestPlatform test;
  headless::HeadlessScreen screen;
  headless::FixedTextEngine text;
  ui::Application app{screen, text};
  headless::HeadlessPump pump{test.platform(), test.clock(), screen, app};
};

struct WindowPhone : HeadlessPhone {
  WindowPhone() : WindowPhone(Options()) {}
  explicit WindowPhone(const Options& options) : HeadlessPhone(options) {
    window->makeKey();
    window->show();
  }

  ui::Ref<ui::Window> window = ui::makeShared<ui::Window>(app.screenBounds());
};

}  // namespace testing_support
