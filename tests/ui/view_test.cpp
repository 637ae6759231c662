#include <set>

#include "phone.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/image_view.h"
#include "platform/ui/controls/scroll_view.h"

namespace ui {
namespace {

using testing::ElementsAre;

TEST(View, ChildrenMoveBetweenParentsAndOrders) {
  auto a = makeShared<View>(), b = makeShared<View>();
  auto one = place(*a, {}, "1"), two = place(*a, {}, "2"), three = place(*a, {}, "3");
  const auto names = [](const View& v) {
    std::string all;
    for (const auto& c : v.children()) all += c->name();
    return all;
  };
  one->bringToFront();
  EXPECT_EQ(names(*a), "231");
  one->sendToBack();
  EXPECT_EQ(names(*a), "123");
  a->insertSubview(three, 0);
  EXPECT_EQ(names(*a), "312");
  b->addSubview(two);
  EXPECT_EQ(names(*a) + "/" + names(*b), "31/2");
  EXPECT_EQ(two->parent(), b.get());
  two->addSubview(b);
  EXPECT_EQ(b->parent(), nullptr) << "a view was put inside its own descendant";
  const Ref<View> kept = three;
  a = nullptr;
  EXPECT_EQ(kept->parent(), nullptr) << "a child that outlives its parent still points at it";
}

using ViewOnPage = PageTest;

TEST_F(ViewOnPage, HitTestRespectsWhatTakesTouches) {
  auto back = place(page, {0, 0, 200, 200}, "back");
  auto front = place(page, {50, 50, 100, 100}, "front");
  auto inner = place(*front, {10, 10, 20, 20}, "inner");
  auto beyond = place(*front, {120, 0, 20, 20}, "beyond");
  auto image = place<ImageView>(page, {0, 300, 50, 50}, "image");
  auto scroll = place<ScrollView>(page, {200, 200, 100, 100}, "scroll");
  scroll->setContentSize({100, 400});
  place(scroll->content(), {0, 150, 100, 50}, "row");
  scroll->setOffset({0, 120});
  const struct {
    const char* says;
    std::function<void()> change;
    Point at;
    const char* hit;
  } cases[] = {
      {"topmost", {}, {65, 65}, "inner"},
      {"beside the inner one", {}, {90, 90}, "front"},
      {"right edge is outside", {}, {150, 90}, "back"},
      {"outside the parent's bounds", {}, {175, 55}, "back"},
      {"an image takes none", {}, {10, 310}, ""},
      {"scrolled row", {}, {210, 235}, "row"},
      {"above the scrolled row", {}, {210, 225}, ""},
      {"below the scroll view", {}, {210, 301}, ""},
      {"touches off with all inside", [&] { front->setUserInteraction(false); }, {65, 65}, "back"},
      {"nearly transparent",
       [&] {
         front->setUserInteraction(true);
         front->setAlpha(0.005);
       },
       {65, 65},
       "back"},
      {"hidden",
       [&] {
         front->setAlpha(1);
         inner->setHidden(true);
       },
       {65, 65},
       "front"},
      {"disabled still takes the touch", [&] { front->setEnabled(false); }, {65, 65}, "front"},
  };
  for (const auto& c : cases) {
    if (c.change) c.change();
    View* hit = phone.window->hitTest(c.at);
    ASSERT_NE(hit, nullptr) << c.says;
    EXPECT_EQ(hit->name(), c.hit) << c.says;
  }
}

class Recorder : public View {
 public:
  std::vector<std::string>* log = nullptr;
  std::function<void()> during;

 protected:
  void layoutSubviews() override {
    if (log) log->push_back(name() + " " + std::to_string(static_cast<int>(bounds().width)));
    if (during) during();
  }
};

using Layout = PageTest;

TEST_F(Layout, VisitsOnlyWhatChangedParentsFirst) {
  std::vector<std::string> log;
  auto outer = place<Recorder>(page, {0, 0, 100, 100}, "outer");
  auto inner = place<Recorder>(*outer, {0, 0, 50, 50}, "inner");
  auto other = place<Recorder>(page, {0, 0, 10, 10}, "other");
  for (auto& v : {outer, inner, other}) v->log = &log;
  phone.pump.drain();
  EXPECT_THAT(log, ElementsAre("outer 100", "inner 50", "other 10"));
  log.clear();
  inner->setCenter({40, 40});
  inner->setBounds({0, 0, 50, 50});
  phone.pump.drain();
  EXPECT_THAT(log, ElementsAre()) << "a move, or a size that is the same, is no resize";
  outer->during = [&] { inner->setBounds({0, 0, outer->bounds().width / 2, 50}); };
  outer->setBounds({0, 0, 200, 100});
  phone.pump.drain();
  EXPECT_THAT(log, ElementsAre("outer 200", "inner 100"));
  log.clear();
  inner->during = [&] { other->setBounds({0, 0, inner->bounds().width, 10}); };
  outer->setBounds({0, 0, 300, 100});
  phone.pump.drain();
  EXPECT_THAT(log, ElementsAre("outer 300", "inner 150", "other 150"))
      << "what a layout resizes elsewhere is laid out in the same pass";
}

TEST_F(Layout, EndsThoughAViewNeverComesToRestOrRemovesItself) {
  auto restless = place<Recorder>(page, {0, 0, 1, 1});
  restless->during = [&] { restless->setBounds({0, 0, restless->bounds().width + 1, 1}); };
  auto leaver = place<Recorder>(page, {0, 0, 1, 1});
  auto* view = leaver.get();
  leaver->during = [view] { view->removeFromParent(); };
  leaver = nullptr;
  phone.app.layoutIfNeeded();
  EXPECT_GT(restless->bounds().width, 1);
  EXPECT_EQ(page.children().size(), 1u);
}

TEST(Screen, AsksForOneFrameHoweverMuchChanges) {
  struct Counting final : Screen {
    Rect bounds() const override { return {0, 0, 100, 100}; }
    double scale() const override { return 1; }
    void treeChanged() override { ++asked; }
    void requestTick(std::int64_t) override {}
    bool openUrl(const std::string&) override { return true; }
    void notify(const Notification&) override {}
    int asked = 0;
  };
  platform::VirtualClock clock;
  platform::Platform platform(clock, {});
  platform::PlatformScope scope(platform);
  Counting screen;
  headless::FixedTextEngine text;
  Application app(screen, text);
  auto window = makeShared<Window>(app.screenBounds());
  window->show();
  auto label = placeText(*window, {0, 0, 50, 20}, "a");
  label->setText("b");
  EXPECT_EQ(screen.asked, 1);
  app.frame();
  EXPECT_EQ(screen.asked, 1) << "what the frame itself changes needs no other";
  label->takeChanges();
  label->setText("b");
  EXPECT_EQ(screen.asked, 1);
  label->setText("c");
  label->setHidden(true);
  EXPECT_EQ(screen.asked, 2);
  EXPECT_EQ(label->takeChanges(), Change::Content | Change::Appearance);
  EXPECT_EQ(label->takeChanges(), Change::None);
}

struct LongList : PageTest {
  LongList() {
    scroll = place<ScrollView>(page, {0, 68, 320, 500});
    for (int i = 0; i < 10000; ++i) {
      auto outer = place(scroll->content(), {0, i * 52.0, 320, 50});
      auto inner = place(*outer, {0, 0, 320, 50});
      placeText(*inner, {10, 0, 300, 50}, "riga " + std::to_string(i));
    }
    scroll->setContentSize({320, 10000 * 52.0});
    phone.pump.drain();
  }
  std::vector<std::string> visibleRows() {
    std::vector<std::string> rows;
    visited = 0;
    phone.window->visitVisible([&](const Visible& v) {
      ++visited;
      if (const auto text = v.view.displayText(); !text.empty()) rows.push_back(text);
      return true;
    });
    return rows;
  }
  Ref<ScrollView> scroll;
  int visited = 0;
};

TEST_F(LongList, SeesOnlyTheRowsOnTheScreen) {
  const struct {
    const char* says;
    double offset;
    std::string first, last;
    std::size_t rows;
  } cases[] = {
      {"at the top", 0, "riga 0", "riga 9", 10},
      {"one row's bottom still shows", 49, "riga 0", "riga 10", 11},
      {"in a gap", 50, "riga 1", "riga 10", 10},
      {"far down", 260000, "riga 5000", "riga 5009", 10},
      {"at the end", 1e9, "riga 9990", "riga 9999", 10},
  };
  for (const auto& c : cases) {
    scroll->setOffset({0, c.offset});
    const auto rows = visibleRows();
    ASSERT_EQ(rows.size(), c.rows) << c.says;
    EXPECT_EQ(rows.front(), c.first) << c.says;
    EXPECT_EQ(rows.back(), c.last) << c.says;
    EXPECT_LT(visited, 50) << c.says;
  }
}

TEST_F(LongList, KeepsUpWithRowsThatMove) {
  visibleRows();
  auto& rows = scroll->content().children();
  // As a list does for an insertion in the middle: the new one is last of the children.
  for (int i = 3; i < 10000; ++i) {
    const Ref<View> row = rows[static_cast<std::size_t>(i)];
    row->setCenter(row->center() + Point{0, 52});
  }
  auto added = place(scroll->content(), {0, 3 * 52.0, 320, 50});
  placeText(*added, {0, 0, 320, 50}, "nuova");
  const auto seen = visibleRows();
  EXPECT_THAT(seen, testing::IsSupersetOf({"riga 2", "nuova", "riga 3", "riga 8"}));
  EXPECT_EQ(seen.size(), 10u);
  EXPECT_EQ(seen.back(), "nuova") << "back to front is the order of the children";
  rows[5000]->setFrame({0, 0, 320, 50});
  EXPECT_EQ(visibleRows().size(), 11u);
  const Ref<View> first = rows[0];
  first->removeFromParent();
  EXPECT_EQ(visibleRows().size(), 10u);
  // A row that slides in from far below is seen on its way.
  phone.app.animator().center(*rows[8000], {160, 25}, {1000, Timing::Linear});
  phone.app.animator().center(*rows[0], {160, 200000}, {1000, Timing::Linear});
  EXPECT_THAT(visibleRows(), testing::Contains("riga 1"))
      << "a row that leaves the screen is where it is seen, not where it goes";
  phone.pump.settle();
  const auto after = visibleRows();
  EXPECT_THAT(after, testing::Contains("riga 8001"));
  EXPECT_THAT(after, testing::Not(testing::Contains("riga 1")));
}

using VisibleWalk = PageTest;

TEST_F(VisibleWalk, TellsClipOpacityAndFrame) {
  auto box = place(page, {100, 100, 100, 100}, "box");
  box->setClipsToBounds(true);
  box->setAlpha(0.5);
  auto half = place(*box, {50, 50, 100, 100}, "half");
  half->setAlpha(0.5);
  place(*box, {200, 0, 10, 10}, "clipped away");
  auto open = place(page, {400, 0, 10, 10}, "off");
  place(*open, {-390, 300, 10, 10}, "sticks out");
  auto ghost = place(page, {0, 0, 10, 10}, "ghost");
  ghost->setAlpha(0);
  std::vector<std::string> names;
  phone.window->visitVisible([&](const Visible& v) {
    names.push_back(v.view.name());
    if (v.view.name() == "half") {
      EXPECT_EQ(v.frame, (Rect{150, 150, 100, 100}));
      EXPECT_EQ(v.clip, (Rect{100, 100, 100, 100}));
      EXPECT_DOUBLE_EQ(v.opacity, 0.25);
      EXPECT_EQ(v.depth, 3);
    }
    return true;
  });
  EXPECT_THAT(names, ElementsAre("", "", "box", "half", "sticks out", ""));
}

}  // namespace
}  // namespace ui
