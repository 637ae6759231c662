#include "phone.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/controls.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/controls/table_view.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/reading/accessibility.h"

namespace ui {
namespace {

using testing::ElementsAre;

struct InputTest : PageTest {
  std::vector<std::string> log;

  template <class T = View>
  Ref<T> tappable(View& parent, const Rect& frame, std::string name) {
    auto view = place<T>(parent, frame, name);
    view->setOnTap([this, name](View&) { log.push_back("tap " + name); });
    return view;
  }
};

TEST_F(InputTest, ATapGoesToTheNearestViewThatWantsIt) {
  auto row = tappable(page, {0, 0, 320, 50}, "row");
  auto inner = place(*row, {0, 0, 320, 50});
  placeText(*inner, {0, 0, 100, 50}, "testo");
  auto button = tappable<Button>(*inner, {270, 0, 50, 50}, "button");
  phone.tap({10, 10});
  phone.tap({280, 10});
  button->setEnabled(false);
  phone.down({280, 10});
  EXPECT_FALSE(button->pressed());
  phone.up({280, 10});
  phone.tap({10, 300});
  EXPECT_THAT(log, ElementsAre("tap row", "tap button"))
      << "a disabled button keeps its tap from the row";
}

TEST_F(InputTest, MovingTooFarOrHoldingIsNoTap) {
  auto view = tappable(page, {0, 0, 320, 100}, "view");
  view->setOnLongPress([&](View&) { log.push_back("long"); });
  const auto press = [&](double moved, std::int64_t held) {
    phone.down({50, 50});
    EXPECT_TRUE(view->pressed());
    phone.move({50 + moved, 50});
    phone.pump.advance(held);
    phone.up({50 + moved, 50});
    EXPECT_FALSE(view->pressed());
    log.push_back("|");
  };
  press(9, 499);   // a tap
  press(10, 0);    // moved
  press(0, 500);   // held: once, at its time, and no tap after it
  press(0, 3000);  // held long: still once
  press(15, 900);  // moved, then held
  EXPECT_THAT(log, ElementsAre("tap view", "|", "|", "long", "|", "long", "|", "|"));
}

TEST_F(InputTest, AButtonKeepsItsPressWhileTheFingerIsNear) {
  auto button = tappable<Button>(page, {100, 100, 100, 44}, "button");
  const struct {
    const char* says;
    std::vector<Point> way;
    bool pressedAtEnd;
  } cases[] = {
      {"slides inside", {{150, 111}, {180, 130}}, true},
      {"slides out a little", {{210, 120}}, true},
      {"far away", {{150, 300}}, false},
      {"away and back", {{150, 300}, {150, 130}}, true},
  };
  for (const auto& c : cases) {
    log.clear();
    phone.down({150, 122});
    for (const Point p : c.way) phone.move(p);
    EXPECT_EQ(button->pressed(), c.pressedAtEnd) << c.says;
    phone.up(c.way.back());
    EXPECT_EQ(log.size(), c.pressedAtEnd ? 1U : 0U) << c.says;
    EXPECT_FALSE(button->pressed()) << c.says;
  }
  // In a list that moves the drag is the list's.
  log.clear();
  auto list = place<ScrollView>(page, {0, 200, 320, 200});
  list->setContentSize({320, 1000});
  auto inside = tappable<Button>(list->content(), {0, 0, 320, 190}, "inside");
  phone.down({150, 350});
  phone.move({150, 330});
  EXPECT_FALSE(inside->pressed());
  phone.up({150, 330});
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(list->offset().y, 20);
}

TEST_F(InputTest, OnlyOneFingerAtATimeAndCancelEndsIt) {
  auto view = tappable(page, {0, 0, 320, 100}, "view");
  view->setOnTouch([&](TouchAction a, double x, double) {
    log.push_back(std::to_string(static_cast<int>(a)) + "@" + std::to_string(static_cast<int>(x)));
  });
  phone.down({5, 5});
  EXPECT_FALSE(phone.app.pointer(PointerPhase::Began, 2, 50, 5));
  phone.app.pointer(PointerPhase::Moved, 2, 60, 5);
  phone.move({8, 5});
  phone.app.cancelPointer();
  EXPECT_FALSE(view->pressed());
  phone.up({8, 5});
  EXPECT_THAT(log, ElementsAre("0@5", "2@8", "1@8"));
}

TEST_F(InputTest, HooksMayEndTheirViewsAndTheGesture) {
  // A view removed and released by its own tap, by a touch, and while pressed.
  auto self = place(page, {0, 0, 100, 50});
  self->setOnTap([&](View& v) {
    v.removeFromParent();
    self = nullptr;
    log.push_back("gone");
  });
  phone.tap({5, 5});
  auto touched = tappable(page, {0, 0, 100, 50}, "touched");
  touched->setOnTouch([&](TouchAction, double, double) {
    page.removeAllSubviews();
    touched = nullptr;
  });
  phone.tap({5, 5});
  auto pressed = tappable(page, {0, 0, 100, 50}, "pressed");
  phone.down({5, 5});
  pressed->removeFromParent();
  pressed = nullptr;
  phone.up({5, 5});
  auto canceller = tappable(page, {0, 0, 100, 50}, "canceller");
  canceller->setOnTouch([&](TouchAction, double, double) { phone.app.cancelPointer(); });
  phone.tap({5, 5});
  EXPECT_THAT(log, ElementsAre("gone"));
}

TEST_F(InputTest, DragsScrollTheViewThatCanMoveThatWay) {
  auto outer = place<ScrollView>(page, {0, 0, 320, 500});
  outer->setContentSize({320, 1500});
  auto inner = place<ScrollView>(outer->content(), {0, 0, 320, 200});
  inner->setContentSize({960, 200});
  inner->setPaging(true);
  auto row = tappable(inner->content(), {0, 0, 960, 200}, "row");
  std::vector<double> offsets;
  outer->onScroll = [&](double, double y) { offsets.push_back(y); };

  phone.swipe({100, 150}, {100, 50});
  EXPECT_EQ(outer->offset(), (Point{0, 100}));
  EXPECT_EQ(offsets.back(), 100);
  EXPECT_EQ(std::adjacent_find(offsets.begin(), offsets.end()), offsets.end())
      << "raised only when it changes";
  phone.swipe({100, 400}, {100, 900});
  EXPECT_EQ(outer->offset(), (Point{0, 0})) << "not beyond the top";
  phone.swipe({300, 50}, {80, 50});
  phone.pump.settle();
  EXPECT_EQ(inner->offset(), (Point{320, 0})) << "rests at a page";
  EXPECT_TRUE(log.empty()) << "a drag tapped";
  outer->setContentSize({320, 510});
  outer->setOffset({0, 999});
  EXPECT_EQ(outer->offset().y, 10);
  outer->setContentSize({320, 400});
  phone.pump.drain();
  EXPECT_EQ(outer->offset().y, 0) << "less content pulls the offset back";
}

TEST_F(InputTest, FocusGoesInReadingOrderAndRound) {
  // Added against the reading order; two columns, the right one slightly lower.
  tappable(page, {0, 300, 100, 40}, "last");
  tappable<Button>(page, {200, 105, 100, 40}, "right")->setTitle("destra");
  tappable<Button>(page, {0, 100, 100, 40}, "left")->setTitle("sinistra");
  place<TextField>(page, {0, 20, 300, 40}, "field");
  tappable(page, {0, 350, 100, 40}, "disabled")->setEnabled(false);
  tappable(page, {0, 400, 100, 40}, "hidden")->setHidden(true);
  placeText(page, {0, 450, 100, 40}, "solo testo");
  std::vector<std::string> visited;
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(phone.app.key(Key::Tab));
    visited.push_back(phone.app.focus().view()->name());
  }
  EXPECT_THAT(visited, ElementsAre("field", "left", "right", "last", "field"));
  EXPECT_TRUE(phone.app.focus().byKeyboard());
  phone.app.key(Key::BackTab);
  EXPECT_EQ(phone.app.focus().view()->name(), "last");
  phone.app.key(Key::Up);
  EXPECT_TRUE(phone.app.key(Key::Enter));
  EXPECT_THAT(log, ElementsAre("tap right"));
  phone.tap({5, 310});
  EXPECT_FALSE(phone.app.focus().byKeyboard()) << "the ring goes when a finger comes";
  const Ref<View> kept(phone.app.focus().view());
  kept->removeFromParent();
  EXPECT_EQ(phone.app.focus().view(), nullptr);
  EXPECT_FALSE(kept->isFocused());
}

TEST_F(InputTest, AFlickTurnsOnePageAndASlowDragTheNearest) {
  auto pages = place<ScrollView>(page, {0, 0, 320, 320});
  pages->setPaging(true);
  const struct {
    const char* what;
    double from, to;  // across or down, in points
    std::int64_t step;
    double page;
  } cases[] = {
      {"a slow drag over a third", 200, 90, 100, 0},
      {"over more than half", 260, 60, 100, 1},
      {"a short flick", 200, 120, 10, 2},
      {"beyond the last page", 200, 120, 10, 2},
      {"a flick back", 120, 200, 10, 1},
      {"a long one is one page too", 20, 310, 10, 0},
      {"before the first page", 20, 310, 10, 0},
  };
  for (const bool across : {true, false}) {
    pages->setContentSize(across ? Size{320 * 3, 320} : Size{320, 320 * 3});
    pages->setOffset({});
    phone.pump.drain();
    const auto along = [&](double at) { return across ? Point{at, 200} : Point{200, at}; };
    for (const auto& c : cases) {
      phone.swipe(along(c.from), along(c.to), c.step);
      phone.pump.settle();
      EXPECT_EQ(pages->offset(), across ? Point(320 * c.page, 0) : Point(0, 320 * c.page))
          << c.what << across;
    }
  }
}

TEST_F(InputTest, KeysScrollAndBringTheFocusIntoView) {
  auto list = place<TableView>(page, {0, 0, 320, 200});
  std::vector<AttributedText> rows;
  for (int i = 0; i < 20; ++i) rows.emplace_back("via " + std::to_string(i));
  list->setRows(rows);
  list->onSelect = [&](int row) { log.push_back("row " + std::to_string(row)); };
  phone.pump.drain();
  EXPECT_TRUE(phone.app.key(Key::PageDown));
  EXPECT_EQ(list->offset().y, 200 - style::kTapSize);
  phone.app.key(Key::End);
  EXPECT_EQ(list->offset().y, 20 * 44 - 200);
  phone.app.key(Key::Home);
  for (int i = 0; i < 6; ++i) phone.app.key(Key::Down);
  EXPECT_EQ(list->offset().y, 6 * 44 - 200);
  phone.app.key(Key::Enter);
  EXPECT_THAT(log, ElementsAre("row 5"));
  EXPECT_EQ(list->selectedRow(), 5);
  list->setSelectedRow(-1);
  EXPECT_EQ(log.size(), 1u) << "the program's choice is not the user's";
  // With the focus elsewhere it is the largest list that moves.
  tappable<Button>(page, {0, 500, 100, 44}, "outside")->requestFocus();
  auto small = place<ScrollView>(page, {0, 400, 320, 60});
  small->setContentSize({320, 600});
  phone.app.key(Key::End);
  EXPECT_EQ(list->offset().y, 20 * 44 - 200);
  EXPECT_EQ(small->offset().y, 0);
}

TEST_F(InputTest, TextInputHearsTheUserAndNotTheProgram) {
  phone.screen.keyboard = 216;
  const auto observer = phone.app.focus().addKeyboardObserver([&](bool shown, double height) {
    log.push_back((shown ? "keyboard " : "no keyboard ") +
                  std::to_string(static_cast<int>(height)));
  });
  auto field = place<TextField>(page, {0, 0, 320, 40});
  field->onTextChanged = [&](const std::string& a, const std::string& b) {
    log.push_back(a + ">" + b);
  };
  field->onBeginEdit = [&] { log.push_back("begin"); };
  field->onEndEdit = [&] { log.push_back("end"); };
  field->setText("a");
  EXPECT_FALSE(phone.app.input().text("x")) << "nothing has the focus";
  phone.tap({5, 5});
  EXPECT_TRUE(phone.app.input().text("b"));
  EXPECT_FALSE(phone.app.key(Key::Space)) << "the editor's own key";
  EXPECT_TRUE(phone.app.key(Key::Enter));
  std::uint64_t second = 0;
  const auto first = phone.app.focus().addKeyboardObserver([&](bool, double) {
    phone.app.focus().removeKeyboardObserver(second);
    log.push_back("first");
  });
  second = phone.app.focus().addKeyboardObserver([&](bool, double) { log.push_back("second"); });
  phone.app.focus().removeKeyboardObserver(observer);
  field->requestFocus();
  phone.app.focus().removeKeyboardObserver(first);
  field->setEnabled(false);
  field->userEdited("zzz");
  EXPECT_EQ(field->text(), "ab");
  EXPECT_THAT(
      log, ElementsAre("keyboard 216", "begin", "a>ab", "end", "no keyboard 0", "first", "begin"));
}

TEST_F(InputTest, ControlsChangeByTapAndKeyWithinTheirRange) {
  const auto hear = [&](auto what) { log.push_back(std::to_string(static_cast<int>(what))); };
  auto toggle = place<Switch>(page, {0, 0, 50, 44});
  toggle->onChange = hear;
  auto stepper = place<Stepper>(page, {0, 50, 100, 44});
  stepper->setRange(0, 2);
  stepper->onChange = hear;
  auto choice = place<SegmentedControl>(page, {0, 100, 300, 44});
  choice->setItems({"a", "b", "c"});
  choice->onChange = hear;
  phone.tap({10, 10});
  for (int i = 0; i < 3; ++i) phone.tap({90, 60});
  phone.tap({10, 60});
  phone.tap({150, 110});
  phone.tap({150, 110});
  choice->requestFocus();
  phone.app.key(Key::Right);
  phone.app.key(Key::Right);
  EXPECT_THAT(log, ElementsAre("1", "1", "2", "1", "1", "2"));
  choice->setItems({"x"});
  EXPECT_EQ(choice->selected(), -1);
  stepper->setRange(5, 9);
  EXPECT_EQ(stepper->value(), 5);
}

}  // namespace
}  // namespace ui
