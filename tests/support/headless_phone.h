// HeadlessPhone: a phone without pixels for one test, on a platform of its own: virtual
// clock, fixed text metrics, one window of 320 x 568 points that is shown.
//
// The test's target links platform_headless itself. Main thread.
#pragma once

#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_pump.h"
#include "tests/support/test_platform.h"

namespace testing_support {

struct HeadlessPhone {
  explicit HeadlessPhone(platform::Ticks startAt = TestPlatform::kStart) : test(startAt) {}

  void tap(const ui::View& view) { tap(view.frameInWindow().center()); }
  // With all that it sets off; the clock stands still.
  void tap(ui::Point p) {
    app.pointer(ui::PointerPhase::Began, 1, p.x, p.y);
    app.pointer(ui::PointerPhase::Ended, 1, p.x, p.y);
    pump.drain();
  }

  TestPlatform test;
  headless::HeadlessScreen screen;
  headless::FixedTextEngine text;
  ui::Application app{screen, text};
  headless::HeadlessPump pump{test.platform(), test.clock(), screen, app};
};

}  // namespace testing_support
