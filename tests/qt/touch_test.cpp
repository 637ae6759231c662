// Fingers, the mouse and the wheel: who is touched, what scrolls, what is a tap.
#include <QQuickWindow>
#include <QTest>

#include "desk.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/controls.h"
#include "platform/ui/controls/pickers.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/pages/drawer_controller.h"

class Touching : public Desk {
 protected:
  // A list of tappable rows that notes the taps.
  ui::Ref<ui::ScrollView> list(ui::View& parent, const ui::Rect& frame, int rows = 100) {
    auto view = add<ui::ScrollView>(frame, &parent);
    view->setContentSize({frame.width, rows * 50.0});
    for (int i = 0; i < rows; ++i) {
      auto row = add<ui::View>({0, i * 50.0, frame.width, 50}, &view->content());
      addText("riga " + std::to_string(i), {10, 0, 200, 50}, row.get());
      row->setOnTap([this, i](ui::View&) { taps.push_back(i); });
    }
    return view;
  }
  std::vector<int> taps;
};

TEST_F(Touching, ATapReachesTheTopmostViewThatTakesIt) {
  auto scroll = list(page(), {0, 0, kWidth, kHeight});
  tap({50, 125});
  EXPECT_EQ(taps, (std::vector<int>{2}));
  scroll->setOffset({0, 1000});
  tap({50, 25});
  EXPECT_EQ(taps, (std::vector<int>{2, 20}));
  // What lies in front takes it, and keeps the list under it from scrolling.
  auto lid = add<ui::View>({0, 0, kWidth, kHeight});
  tap({50, 25});
  drag({100, 500}, {100, 100});
  EXPECT_EQ(taps.size(), 2U);
  EXPECT_EQ(scroll->offset().y, 1000);
  // A label in front lets it through.
  lid->removeFromParent();
  addText("davanti", {0, 0, kWidth, kHeight});
  tap({50, 25});
  EXPECT_EQ(taps.back(), 20);
  EXPECT_EQ(taps.size(), 3U);
}

TEST_F(Touching, ADragScrollsAndTapsNothing) {
  auto scroll = list(page(), {0, 0, kWidth, kHeight});
  int reports = 0;
  scroll->onScroll = [&](double, double) { ++reports; };
  rest();
  hand.down({100, 500});
  EXPECT_TRUE(scroll->content().children()[10]->pressed());
  for (int y = 495; y >= 300; y -= 5) {
    loop.pass(8);
    hand.move({100, static_cast<double>(y)});
  }
  EXPECT_FALSE(scroll->content().children()[10]->pressed());
  EXPECT_NEAR(scroll->offset().y, 200, 25) << "follows the finger";
  loop.pass(200);  // the finger rests: no flick
  hand.up({100, 300});
  rest();
  EXPECT_NEAR(scroll->offset().y, 200, 25);
  EXPECT_GT(reports, 5);
  EXPECT_TRUE(taps.empty());
  EXPECT_EQ(scroll->offset().y * kScale, std::round(scroll->offset().y * kScale));
}

TEST_F(Touching, APressIsSeenWithinATenthOfASecond) {
  auto scroll = list(page(), {0, 0, kWidth, 300});
  auto plain = add<ui::View>({0, 320, kWidth, 50});
  plain->setBackground(ui::kWhite);
  plain->setOnTap([](ui::View&) {});
  auto button = add<ui::Button>({20, 400, 40, 40});
  button->setImage(ui::Image::fromFile(redPicture(40, 40)));
  const auto press = [&](ui::Point at) {
    hand.down(at);
    loop.pass(100);
    const QColor seen = Desk::at(pictureNow(), at.x, at.y);
    hand.up({at.x, 660});
    return seen;
  };
  const QColor before = at(picture(), 200, 75);
  EXPECT_LT(press({200, 75}).lightness(), before.lightness() - 20) << "a row of a list";
  EXPECT_LT(press({200, 345}).lightness(), 235) << "what is no list";
  const QColor seen = press({40, 420});
  EXPECT_NEAR(seen.green(), 128, 10) << "a picture button lets the page through";
  EXPECT_EQ(at(picture(), 200, 75), before);
  button->setEnabled(false);
  EXPECT_GT(at(picture(), 40, 420).green(), 100) << "and when it takes no press";
}

TEST_F(Touching, AFlickGoesOnAndAFingerStopsItWithoutATap) {
  auto scroll = list(page(), {0, 0, kWidth, kHeight}, 10000);
  rest();
  hand.drag({100, 500}, {100, 200}, 60);
  const double left = scroll->offset().y;
  ASSERT_TRUE(loop.until([&] { return scroll->offset().y > left + 100; }, 5000));
  hand.tap({100, 300});
  rest();
  EXPECT_TRUE(taps.empty());
  const double stopped = scroll->offset().y;
  loop.pass(100);
  EXPECT_EQ(scroll->offset().y, stopped);
  hand.tap({100, 300});
  EXPECT_EQ(taps.size(), 1U);
  // Flung against the end it bounces, and the view never hears of more than the end.
  double most = 0;
  scroll->onScroll = [&](double, double y) { most = std::max(most, y); };
  scroll->setOffset({0, scroll->maxOffset().y - 50});
  rest();
  hand.drag({100, 500}, {100, 100}, 60);
  rest();
  EXPECT_EQ(most, scroll->maxOffset().y);
  EXPECT_EQ(scroll->offset().y, scroll->maxOffset().y);
}

TEST_F(Touching, AFlickTurnsOnePageAndASlowDragTheNearest) {
  auto pages = add<ui::ScrollView>({0, 0, kWidth, 400});
  pages->setContentSize({kWidth * 3, 400});
  pages->setPaging(true);
  const struct {
    const char* what;
    double from, to;
    std::int64_t milliseconds;
    double page;
  } cases[] = {{"a short flick", 250, 150, 80, 1},
               {"another", 250, 150, 80, 2},
               {"beyond the last page", 250, 150, 80, 2},
               {"a flick back", 100, 200, 80, 1},
               {"a slow drag over a fifth", 250, 170, 1500, 1},
               {"over more than half", 90, 330, 1500, 0}};
  for (const auto& c : cases) {
    drag({c.from, 200}, {c.to, 200}, c.milliseconds);
    EXPECT_EQ(pages->offset().x, kWidth * c.page) << c.what;
  }
}

TEST_F(Touching, TheWheelScrollsWhatIsUnderIt) {
  auto upper = list(page(), {0, 0, kWidth, 300});
  auto lower = list(page(), {0, 300, kWidth, 300});
  wheel({100, 400}, 2);
  EXPECT_EQ(upper->offset().y, 0);
  EXPECT_GT(lower->offset().y, 20);
}

TEST_F(Touching, TheProgramCanScrollWhileNobodyTouches) {
  auto scroll = list(page(), {0, 0, kWidth, kHeight});
  rest();
  scroll->scrollTo({0, 1234}, 150);
  rest();
  EXPECT_EQ(scroll->offset().y, 1234);
  tap({100, 20});
  EXPECT_EQ(taps, (std::vector<int>{25}));
  // Less content pulls it back.
  scroll->setContentSize({kWidth, 800});
  rest();
  EXPECT_EQ(scroll->offset().y, 800 - kHeight);
}

TEST_F(Touching, ASwipeOverAListMovesTheDrawerNotTheList) {
  auto center = ui::makeShared<ui::ViewController>();
  auto menu = ui::makeShared<ui::ViewController>();
  auto drawer = ui::makeShared<ui::DrawerController>(center, menu, nullptr);
  window->setRootViewController(drawer);
  auto rows = list(menu->view(), {0, 0, 280, kHeight});
  auto behind = list(center->view(), {0, 0, kWidth, kHeight});
  drag({5, 300}, {250, 310});
  ASSERT_EQ(drawer->openSide(), ui::DrawerSide::Left);
  tap({50, 75});
  EXPECT_EQ(taps, (std::vector<int>{1}));
  drag({100, 500}, {100, 300});
  EXPECT_GT(rows->offset().y, 0);
  const double offset = rows->offset().y;
  // First sideways, then down: the drawer's, and the list keeps still.
  hand.down({250, 300});
  for (int i = 1; i <= 40; ++i) {
    loop.pass(4);
    hand.move({250.0 - 5 * i, 300.0 + (i > 10 ? 4 * (i - 10) : 0)});
  }
  hand.up({50, 420});
  rest();
  EXPECT_EQ(drawer->openSide(), ui::DrawerSide::None);
  EXPECT_EQ(rows->offset().y, offset);
  EXPECT_EQ(behind->offset().y, 0);
  EXPECT_EQ(taps.size(), 1U);
}

TEST_F(Touching, ControlsOfTheToolkitTellTheirViewsOnce) {
  std::vector<std::string> told;
  auto toggle = add<ui::Switch>({20, 20, 60, 31});
  toggle->onChange = [&](bool on) { told.push_back(on ? "on" : "off"); };
  auto slider = add<ui::Slider>({20, 80, 300, 40});
  slider->onChange = [&](double v) { told.push_back(v > 0.4 && v < 0.6 ? "half" : "else"); };
  slider->continuous = false;
  auto stepper = add<ui::Stepper>({20, 140, 100, 32});
  stepper->onChange = [&](double v) { told.push_back("step " + std::to_string(int(v))); };
  auto segments = add<ui::SegmentedControl>({20, 200, 300, 32});
  segments->setItems({"a", "b", "c"});
  segments->onChange = [&](int i) { told.push_back("segment " + std::to_string(i)); };
  tap({50, 35});
  EXPECT_TRUE(toggle->on());
  tap({50, 35});
  tap({170, 100});
  for (double x : {95, 95, 45}) {
    tap({x, 156});
  }
  tap({170, 216});
  EXPECT_EQ(told, (std::vector<std::string>{"on", "off", "half", "step 1", "step 2", "step 1",
                                            "segment 1"}));
  toggle->setEnabled(false);
  tap({50, 35});
  EXPECT_FALSE(toggle->on());
  // What the program sets is shown, and not reported.
  const QImage off = picture();
  toggle->setEnabled(true);
  toggle->setOn(true);
  segments->setSelected(2);
  loop.pass(300);
  EXPECT_NE(picture("controls"), off);
  EXPECT_EQ(told.size(), 7U);
}

TEST_F(Touching, WheelsOfAPickerTurn) {
  auto picker = add<ui::PickerView>({20, 20, 300, 180});
  picker->setItems(0, {"lunedì", "martedì", "mercoledì", "giovedì", "venerdì"});
  picker->setSelected(0, 1);
  std::vector<int> told;
  picker->onChange = [&](int, int row) { told.push_back(row); };
  auto date = add<ui::DatePicker>({20, 220, 320, 180});
  date->setMode(ui::DatePicker::Mode::Date);
  date->setTicks(1510734600000);  // 2017-11-15
  std::vector<platform::Ticks> dates;
  date->onChange = [&](platform::Ticks t) { dates.push_back(t); };
  picture("pickers");
  tap({170, 110 + 36});
  EXPECT_EQ(told, (std::vector<int>{2}));
  EXPECT_EQ(picker->selected(0), 2);
  tap({60, 310 + 36});
  EXPECT_EQ(dates, (std::vector<platform::Ticks>{1510734600000 + 86400000}));
}

TEST_F(Touching, ATouchScreenDoesWhatTheMouseDoes) {
  auto scroll = list(page(), {0, 0, kWidth, kHeight});
  rest();
  auto* device = QTest::createTouchDevice();
  QTest::touchEvent(&screen.window(), device).press(3, {100, 125});
  QTest::touchEvent(&screen.window(), device).release(3, {100, 125});
  rest();
  EXPECT_EQ(taps, (std::vector<int>{2}));
  QTest::touchEvent(&screen.window(), device).press(3, {100, 500});
  for (int i = 1; i <= 30; ++i) {
    loop.pass(4);
    QTest::touchEvent(&screen.window(), device).move(3, {100, 500 - 8 * i});
  }
  QTest::touchEvent(&screen.window(), device).release(3, {100, 260});
  rest();
  EXPECT_GT(scroll->offset().y, 150);
  EXPECT_EQ(taps.size(), 1U);
}
