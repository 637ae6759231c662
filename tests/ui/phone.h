// A headless phone for one test: virtual clock, fixed text, a window of 320 x 568 with
// a 20-point status bar.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/base/platform.h"
#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_pump.h"
#include "platform/ui/application.h"
#include "platform/ui/controls/label.h"

namespace ui {

struct Phone {
  explicit Phone(double textScale = 1) : text(textScale) {
    window->makeKey();
    window->show();
  }

  // A page whose view fills the window, with no bars.
  Ref<ViewController> plainPage() {
    auto page = makeShared<ViewController>();
    window->setRootViewController(page);
    pump.drain();
    return page;
  }
  void tapAt(Point p) {
    app.pointer(PointerPhase::Began, 1, p.x, p.y);
    app.pointer(PointerPhase::Ended, 1, p.x, p.y);
  }
  // A finger that moves in ten steps of 16 ms.
  void swipe(Point from, Point to) {
    app.pointer(PointerPhase::Began, 1, from.x, from.y);
    for (int i = 1; i <= 10; ++i) {
      pump.advance(16);
      app.pointer(PointerPhase::Moved, 1, from.x + (to.x - from.x) * i / 10,
                  from.y + (to.y - from.y) * i / 10);
    }
    app.pointer(PointerPhase::Ended, 1, to.x, to.y);
  }

  platform::VirtualClock clock;
  platform::Platform platform{clock, {}};
  platform::PlatformScope scope{platform};
  headless::HeadlessScreen screen;
  headless::FixedTextEngine text;
  Application app{screen, text};
  headless::HeadlessPump pump{platform, clock, screen, app};
  Ref<Window> window = makeShared<Window>(app.screenBounds());
};

template <class T = View>
Ref<T> place(View& parent, const Rect& frame, std::string name = {}) {
  auto view = makeShared<T>();
  view->setFrame(frame);
  if (!name.empty()) view->setName(std::move(name));
  parent.addSubview(view);
  return view;
}

inline Ref<Label> placeText(View& parent, const Rect& frame, std::string text) {
  auto label = place<Label>(parent, frame);
  label->setText(std::move(text));
  return label;
}

}  // namespace ui
