// The main queue in the toolkit's event loop, and the process around it.
#include <QQuickWindow>
#include <stdexcept>
#include <thread>

#include "desk.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/pages/navigation_controller.h"

using Loop = Desk;

TEST_F(Loop, RunsTasksInOrderFromAnyThreadAndWhenTheyAreDue) {
  std::vector<std::string> order;
  auto& queue = platform.mainQueue();
  const auto start = clock.monotonic();
  std::int64_t late = 0;
  queue.postAfter(60, [&] {
    late = clock.monotonic() - start;
    order.push_back("delayed");
  });
  queue.post([&] {
    order.push_back("first");
    queue.post([&] { order.push_back("posted by first"); });
  });
  queue.post([&] { order.push_back("second"); });
  bool met = false;
  std::thread other([&] { met = queue.postAndWait([&] { order.push_back("from a thread"); }); });
  rest();
  other.join();
  EXPECT_TRUE(met);
  EXPECT_GE(late, 60);
  ASSERT_EQ(order.size(), 5U);
  EXPECT_EQ(order.back(), "delayed");
  std::erase(order, "from a thread");  // whenever it came
  EXPECT_EQ(order, (std::vector<std::string>{"first", "second", "posted by first", "delayed"}));
}

TEST_F(Loop, AFloodOfTasksLeavesRoomForFramesAndFingers) {
  auto button = add<ui::Button>({0, 0, 100, 50});
  bool tapped = false;
  button->setOnTap([&](ui::View&) { tapped = true; });
  rest();
  bool stop = false;
  std::function<void()> again = [&] {
    if (!stop) platform.mainQueue().post(again);
  };
  platform.mainQueue().post(again);
  const std::size_t before = screen.shownViews();
  addText("uno", {0, 100, 100, 50});
  EXPECT_TRUE(loop.until([&] { return screen.shownViews() == before + 1; }, 5000));
  hand.tap({50, 25});
  EXPECT_TRUE(tapped);
  stop = true;
  EXPECT_TRUE(settle());
}

TEST_F(Loop, WhatAHookThrowsGoesToTheFaultHandler) {
  std::vector<std::string> faults;
  platform.mainQueue().setFaultHandler([&](std::exception_ptr fault) {
    try {
      std::rethrow_exception(fault);
    } catch (const std::exception& e) {
      faults.push_back(e.what());
    }
  });
  auto button = add<ui::Button>({0, 0, 100, 50});
  button->setOnTap([](ui::View&) { throw std::runtime_error("al tocco"); });
  auto field = add<ui::TextField>({0, 100, 100, 40});
  field->onTextChanged = [](auto&, auto&) { throw std::runtime_error("scrivendo"); };
  tap({50, 25});
  field->requestFocus();
  type("x");
  app.animator().value(
      *button, 0, 1, [](double) {}, {20}, [](bool) { throw std::runtime_error("alla fine"); });
  rest();
  EXPECT_EQ(faults, (std::vector<std::string>{"al tocco", "scrivendo", "alla fine"}));
}

TEST_F(Loop, SettlesOnlyWhenNothingIsUnderWay) {
  rest();
  int asks = 0;
  EXPECT_TRUE(loop.settle([&] { return ++asks < 3; }, 5000));
  EXPECT_GE(asks, 3);
  EXPECT_FALSE(loop.settle([] { return true; }, 50));
  auto view = add<ui::View>({0, 0, 10, 10});
  bool done = false;
  app.animator().alpha(*view, 0, {150}, [&](bool) { done = true; });
  EXPECT_TRUE(settle());
  EXPECT_TRUE(done);
  int ticks = 0;
  app.timers().start(40, [&] { ++ticks; });
  EXPECT_TRUE(loop.until([&] { return ticks == 1; }, 3000));
}

TEST_F(Loop, TheWindowsSizeIsTheScreens) {
  EXPECT_EQ(screen.scale(), 2);
  EXPECT_EQ(screen.bounds(), (ui::Rect{0, 0, kWidth, kHeight}));
  screen.window().resize(667, 375);
  ASSERT_TRUE(loop.until([&] { return page().bounds().width == 667; }, 3000));
  EXPECT_EQ(app.screenBounds(), (ui::Rect{0, 0, 667, 375}));
  EXPECT_EQ(picture().size(), QSize(1334, 750));
}

// Without waiting for a frame, which the screen draws when it likes.
TEST_F(Loop, APageHasItsSizeAsSoonAsItIsShown) {
  auto nav = ui::makeShared<ui::NavigationController>();
  window->setRootViewController(nav);
  for (const auto& [width, height] : {std::pair{375, 667}, {667, 375}}) {
    screen.window().resize(width, height);
    ASSERT_TRUE(loop.until([&, w = width] { return nav->view().bounds().width == w; }, 3000));
    auto page = ui::makeShared<ui::ViewController>();
    EXPECT_EQ(page->view().bounds().size(), app.screenBounds().size());
    nav->push(page, true);
    const ui::Size shown = page->view().bounds().size();
    EXPECT_EQ(shown.width, width);
    EXPECT_LT(shown.height, height);
    rest();
    EXPECT_EQ(page->view().bounds().size(), shown) << "nothing is left for the frame to mend";
  }
}

TEST_F(Loop, AddressesGoToTheDesktopThroughOneDoor) {
  EXPECT_TRUE(app.openUrl("tel:+390123"));
  EXPECT_FALSE(app.openUrl("file:///etc/passwd"));
  EXPECT_EQ(opened, (std::vector<std::string>{"tel:+390123"}));
}
