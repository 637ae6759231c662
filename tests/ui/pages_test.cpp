#include "phone.h"
#include "platform/ui/controls/controls.h"
#include "platform/ui/pages/bar_view.h"
#include "platform/ui/pages/drawer_controller.h"
#include "platform/ui/pages/navigation_controller.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/reading/finder.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {
namespace {

using testing::ElementsAre;

class Page : public ViewController {
 public:
  Page(std::string name, std::vector<std::string>& log) : name_(std::move(name)), log_(log) {
    setTitle(name_);
  }

 protected:
  void viewWillAppear(bool) override { log_.push_back("+" + name_); }
  void viewWillDisappear(bool) override { log_.push_back("-" + name_); }

 private:
  std::string name_;
  std::vector<std::string>& log_;
};

struct PagesTest : testing::Test {
  std::vector<std::string> log;
  Phone phone;
  Ref<Page> a = makeShared<Page>("a", log), b = makeShared<Page>("b", log),
            c = makeShared<Page>("c", log);
  Ref<NavigationController> nav = makeShared<NavigationController>();

  std::string stack() {
    std::string all;
    for (const auto& p : nav->viewControllers()) all += p->title();
    return all;
  }
  void show(const Ref<Page>& page) {
    nav->push(page, false);
    phone.window->setRootViewController(nav);
    phone.pump.settle();
  }
};

TEST_F(PagesTest, PagesAreToldWhenTheyComeAndGo) {
  nav->push(a, true);
  EXPECT_TRUE(log.empty()) << "not before the stack is on a visible window";
  phone.window->show(false);
  phone.window->setRootViewController(nav);
  EXPECT_TRUE(log.empty());
  phone.window->show();
  nav->push(b, true);
  nav->push(b, true);
  EXPECT_EQ(stack(), "ab") << "a page stands on the stack once";
  nav->push(c, false);
  nav->popTo(*a, true);
  EXPECT_EQ(nav->pop(true), nullptr) << "the last page stays";
  nav->setViewControllers({b, c});
  nav->popToRoot(false);
  EXPECT_THAT(log, ElementsAre("+a", "-a", "+b", "-b", "+c", "-c", "+a", "-a", "+c", "-c", "+b"));
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(b->navigationController(), nav.get());
}

TEST_F(PagesTest, APageFillsWhatTheBarsLeave) {
  EXPECT_EQ(b->view().bounds().size(), phone.app.screenBounds().size()) << "before it is shown";
  show(a);
  EXPECT_EQ(a->view().frameInWindow(), (Rect{0, 64, 320, 504}));
  nav->setToolbarHidden(false);
  a->navigationItem().setPrompt("Avviso");
  phone.pump.drain();
  EXPECT_EQ(a->view().frameInWindow(), (Rect{0, 94, 320, 568 - 94 - 44}));
  a->navigationItem().setPrompt("");
  nav->setNavigationBarHidden(true);
  nav->setToolbarHidden(true);
  phone.pump.drain();
  EXPECT_EQ(a->view().frameInWindow(), (Rect{0, 0, 320, 568}));
  EXPECT_EQ(a->view().safeAreaInsets().top, 20);
  phone.turn({568, 320});
  EXPECT_EQ(a->view().bounds().size(), (Size{568, 320}));
}

TEST_F(PagesTest, ABarSlidesAwayAndBackOnlyWhereThatIsAskedFor) {
  show(a);
  const auto barTop = [&](View& bar) { return bar.presented().frame().y; };
  auto& bar = nav->navigationBar();
  nav->setNavigationBarHidden(true, true);
  nav->setToolbarHidden(false, true);
  EXPECT_FALSE(reachable(bar)) << "it is on its way out";
  phone.pump.drain();
  EXPECT_EQ(a->view().bounds().height, 568 - 44) << "the page has its size from the start";
  phone.pump.advance(style::kBarTransition / 2);
  EXPECT_FALSE(bar.hidden());
  EXPECT_LT(barTop(bar), 0);
  EXPECT_GT(barTop(bar), -64);
  EXPECT_GT(barTop(nav->toolbar()), 568 - 44);
  phone.pump.settle();
  EXPECT_TRUE(bar.hidden());
  EXPECT_EQ(barTop(nav->toolbar()), 568 - 44);
  EXPECT_EQ(a->view().frameInWindow(), (Rect{0, 0, 320, 568 - 44}));
  // Back before it has quite gone, then at once.
  nav->setNavigationBarHidden(false, true);
  phone.pump.advance(50);
  nav->setNavigationBarHidden(true, true);
  phone.pump.advance(50);
  nav->setNavigationBarHidden(false, true);
  phone.pump.settle();
  EXPECT_FALSE(bar.hidden());
  EXPECT_EQ(barTop(bar), 0);
  EXPECT_EQ(a->view().frameInWindow(), (Rect{0, 64, 320, 568 - 64 - 44}));
  nav->setNavigationBarHidden(true, false);
  EXPECT_TRUE(bar.hidden());
  nav->setNavigationBarHidden(false, false);
  phone.pump.drain();
  EXPECT_EQ(barTop(bar), 0);
}

TEST_F(PagesTest, ATitleTooLongForALineTakesTwoSmallerOnes) {
  show(a);
  auto& title = nav->navigationBar().titleLabel();
  for (const auto& [text, lines] :
       {std::pair{"Uffici", 1}, {"Farmacia Madonna della Neve - Pieve Lunga", 2}, {"Scuole", 1}}) {
    a->setTitle(text);
    phone.pump.drain();
    EXPECT_EQ(title.maxLines(), lines) << text;
    EXPECT_EQ(title.font().size(), lines == 1 ? 17 : 14) << text;
    EXPECT_LE(title.sizeThatFits(title.bounds().size()).height, title.bounds().height) << text;
  }
}

TEST_F(PagesTest, TheSlideLeavesOnlyTheTopPageBehind) {
  show(a);
  const auto onScreen = [&](Page& p) { return p.view().window() != nullptr; };
  nav->push(b, true);
  EXPECT_TRUE(onScreen(*a)) << "slides out beside the new one";
  EXPECT_EQ(b->view().presented().frame().x, 320);
  EXPECT_FALSE(reachable(a->view()));
  phone.pump.settle();
  EXPECT_FALSE(onScreen(*a));
  EXPECT_EQ(b->view().frameInWindow().x, 0);
  // Back, and forward again before the slide is over.
  nav->pop(true);
  phone.pump.advance(100);
  nav->push(b, true);
  phone.pump.advance(50);
  nav->push(c, true);
  phone.pump.settle();
  EXPECT_TRUE(!onScreen(*a) && !onScreen(*b) && onScreen(*c));
  nav->popToRoot(true);
  phone.pump.settle();
  EXPECT_TRUE(onScreen(*a) && !onScreen(*c));
  EXPECT_EQ(a->view().frameInWindow(), (Rect{0, 64, 320, 504}));
  EXPECT_TRUE(reachable(a->view()));
}

TEST_F(PagesTest, BarItemsAreButtonsWithNames) {
  nav->push(a, false);
  show(b);
  std::vector<std::string> pressed;
  const auto item = [&](Ref<BarButtonItem> i) {
    i->onPress = [&](BarButtonItem& self) { pressed.push_back(self.accessibleName()); };
    return i;
  };
  auto search = item(BarButtonItem::system(12)), web = item(BarButtonItem::text("WEB"));
  b->navigationItem().setRightItems({search, web});
  phone.pump.drain();
  const auto tapNamed = [&](const char* name) {
    auto view = find(*phone.window, name);
    if (!view) return pressed.push_back(std::string("no ") + name);
    EXPECT_GE(view->bounds().width, 44) << name;
    EXPECT_GE(view->bounds().height, 44) << name;
    const auto p = tapPoint(*view);
    phone.tap(p);
    phone.pump.settle();
  };
  tapNamed("Search");
  search->setEnabled(false);
  EXPECT_FALSE(nav->navigationBar().viewFor(*search)->enabled());
  phone.pump.drain();
  tapNamed("Search");
  tapNamed("WEB");
  EXPECT_GT(nav->navigationBar().viewFor(*search)->frame().x,
            nav->navigationBar().viewFor(*web)->frame().x)
      << "the first stands outermost";
  tapNamed("Back");
  EXPECT_EQ(stack(), "a");
  a->navigationItem().setLeftItems({item(BarButtonItem::drawer())});
  phone.pump.drain();
  tapNamed("Menu");
  tapNamed("Back");
  EXPECT_THAT(pressed, ElementsAre("Search", "WEB", "Menu", "no Back"));
}

TEST_F(PagesTest, FlexibleSpacesPushToolbarItemsApart) {
  auto one = BarButtonItem::text("Uno"), two = BarButtonItem::text("Due");
  a->setToolbarItems({one, BarButtonItem::system(BarButtonItem::kFlexibleSpace), two});
  nav->setToolbarHidden(false);
  show(a);
  EXPECT_EQ(nav->toolbar().viewFor(*one)->frame().x, style::kBarMargin);
  EXPECT_EQ(nav->toolbar().viewFor(*two)->frame().right(), 320 - style::kBarMargin);
}

TEST_F(PagesTest, APageMayPopItselfAsItAppears) {
  class Hasty : public ViewController {
   protected:
    void viewWillAppear(bool) override {
      if (auto* nav = navigationController()) nav->pop(false);
    }
  };
  show(a);
  nav->push(makeShared<Hasty>(), true);
  phone.pump.settle();
  EXPECT_EQ(stack(), "a");
  EXPECT_TRUE(a->appeared());
  EXPECT_NE(a->view().window(), nullptr);
}

struct DrawerTest : PagesTest {
  Ref<Page> menu = makeShared<Page>("menu", log);
  Ref<DrawerController> drawer;

  void SetUp() override {
    nav->push(a, false);
    drawer = makeShared<DrawerController>(nav, menu, nullptr);
    phone.window->setRootViewController(drawer);
    auto row = place(menu->view(), {0, 100, 280, 50}, "row");
    row->setOnTap([this](View&) { log.push_back("row"); });
    placeText(*row, {0, 0, 280, 50}, "Farmacia");
    place(a->view(), {0, 0, 320, 50}, "under")->setOnTap([this](View&) { log.push_back("under"); });
    phone.pump.settle();
    log.clear();
  }
  bool open() const { return drawer->openSide() == DrawerSide::Left; }
  void put(bool open) {
    if (open) drawer->openDrawer(DrawerSide::Left, false);
    if (!open) drawer->closeDrawer(false);
    phone.pump.settle();
  }
};

TEST_F(DrawerTest, OpensAndClosesInEachWay) {
  const auto close = drawer_gesture::kPanCenter | drawer_gesture::kPanDrawer;
  const auto swiped = [&](Point from, Point to) { return [=, this] { phone.swipe(from, to); }; };
  const auto tapped = [&](Point at) { return [=, this] { phone.tap(at); }; };
  const struct {
    const char* says;
    bool startOpen;
    int openMask, closeMask;
    std::function<void()> act;
    bool endOpen;
  } cases[] = {
      {"by call", false, 0, close, [&] { drawer->openDrawer(DrawerSide::Left, true); }, true},
      {"swipe from the edge", false, 8, close, swiped({5, 300}, {250, 300}), true},
      {"a short swipe that rests falls back", false, 8, close,
       [&] {
         phone.down({5, 300});
         phone.pump.advance(16);
         phone.move({60, 300});
         phone.pump.advance(500);
         phone.up({60, 300});
       },
       false},
      {"a quick flick is enough", false, 8, close, swiped({5, 300}, {100, 300}), true},
      {"no gesture by the mask", false, 0, close, swiped({5, 300}, {250, 300}), false},
      {"swipe from the middle", false, 8, close, swiped({100, 300}, {300, 300}), false},
      {"by call", true, 8, close, [&] { drawer->closeDrawer(true); }, false},
      {"tap beside it", true, 8, close, tapped({300, 80}), false},
      {"swipe on it", true, 8, close, swiped({200, 300}, {20, 300}), false},
      {"swipe beside it", true, 8, close, swiped({310, 300}, {120, 300}), false},
      {"no closing by the mask", true, 8, 0, swiped({200, 300}, {20, 300}), true},
      {"swipe to the wrong side", true, 8, close, swiped({20, 300}, {200, 300}), true},
      {"Escape", true, 8, close, [&] { phone.app.key(Key::Escape); }, false},
      {"Back", true, 8, close, [&] { phone.app.key(Key::Back); }, false},
      {"a finger that is cancelled half-way", true, 8, close,
       [&] {
         phone.down({200, 300});
         phone.move({150, 300});
         phone.app.cancelPointer();
       },
       true},
  };
  for (const auto& c : cases) {
    put(c.startOpen);
    drawer->openGestureMask = c.openMask;
    drawer->closeGestureMask = c.closeMask;
    log.clear();
    c.act();
    phone.pump.settle();
    const auto turns = std::count(log.begin(), log.end(), c.endOpen ? "+menu" : "-menu");
    EXPECT_LE(turns, 1) << c.says << ": told twice";
    EXPECT_EQ(open(), c.endOpen) << c.says;
    EXPECT_EQ(menu->appeared(), c.endOpen) << c.says;
    EXPECT_EQ(menu->view().hidden(), !c.endOpen) << c.says;
    EXPECT_EQ(menu->view().frameInWindow().x, c.endOpen ? 0 : -280) << c.says;
  }
}

TEST_F(DrawerTest, APullBeyondItsWidthStretchesItOnlyIfItMay) {
  for (const bool stretches : {false, true}) {
    drawer->shouldStretchDrawer = stretches;
    for (const bool startOpen : {false, true}) {
      SCOPED_TRACE(testing::Message() << "stretches " << stretches << " open " << startOpen);
      put(startOpen);
      const double from = startOpen ? 100 : 5;
      phone.down({from, 300});
      phone.move({from + 50, 300});
      phone.move({from + 310, 300});
      const Rect pulled = menu->view().frameInWindow();
      EXPECT_EQ(pulled.x, 0);
      EXPECT_EQ(pulled.width > 280, stretches) << pulled.width;
      EXPECT_LE(pulled.width, 320);
      phone.up({from + 310, 300});
      phone.pump.settle();
      EXPECT_TRUE(open());
      EXPECT_EQ(menu->view().frameInWindow(), (Rect{0, 0, 280, 568}));
    }
  }
}

TEST_F(DrawerTest, AnOpenDrawerKeepsThePageBehindOutOfReach) {
  drawer->openDrawer(DrawerSide::Left, true);
  EXPECT_FALSE(reachable(a->view())) << "from the start of the slide";
  phone.pump.settle();
  phone.tap({50, 120});
  EXPECT_THAT(log, ElementsAre("+menu", "row"));
  phone.tap({310, 90});  // would be "under"
  phone.pump.settle();
  EXPECT_THAT(log, ElementsAre("+menu", "row", "-menu"));
  EXPECT_TRUE(reachable(a->view()));
  phone.tap({50, 70});
  EXPECT_EQ(log.back(), "under");
}

TEST_F(DrawerTest, BackTakesOneStepAtATime) {
  nav->push(b, false);
  drawer->openDrawer(DrawerSide::Left, false);
  EXPECT_TRUE(phone.app.key(Key::Back));
  EXPECT_FALSE(open());
  EXPECT_EQ(stack(), "ab");
  EXPECT_TRUE(phone.app.key(Key::Back));
  EXPECT_EQ(stack(), "a");
  phone.pump.settle();
  EXPECT_FALSE(phone.app.key(Key::Back)) << "nothing left to step back from";
}

// A tap on a list that opens a page, and what comes of a second one.
TEST_F(DrawerTest, TapsAreForThePageTheyWereAimedAt) {
  // The telephone row of the page that comes lies where the row was that was tapped.
  place(b->view(), {0, 0, 320, 50}, "phone")->setOnTap([this](View&) { log.push_back("dial"); });
  auto rows = place<ScrollView>(b->view(), {0, 100, 320, 300});
  rows->setContentSize({320, 900});
  place(a->view(), {0, 0, 320, 50}, "opens")->setOnTap([this](View&) { nav->push(b, true); });
  const Point at{160, 90}, back{20, 40};
  phone.pump.drain();
  log.clear();
  for (const int later : {0, 100, 200, 290}) {  // 590 ms in all
    phone.tap(at);
    phone.pump.advance(later);
  }
  EXPECT_EQ(stack(), "ab");
  phone.swipe({160, 400}, {160, 300});
  EXPECT_GT(rows->offset().y, 0) << "a drag is no tap";
  phone.pump.settle();
  EXPECT_THAT(log, testing::Not(testing::Contains("dial")));
  phone.tap(at);
  EXPECT_EQ(log.back(), "dial") << "later it is meant";
  // Two quick taps on the back button, or two keys, go back once.
  nav->push(makeShared<Page>("c", log), false);
  phone.pump.drain();
  for (const int later : {0, 150, 200}) {
    phone.tap(back);
    phone.pump.advance(later);
  }
  EXPECT_EQ(stack(), "ab");
  phone.pump.settle();
  nav->push(makeShared<Page>("d", log), false);
  EXPECT_TRUE(phone.app.key(Key::Back));
  EXPECT_TRUE(phone.app.key(Key::Escape));
  EXPECT_EQ(stack(), "ab");
}

TEST_F(DrawerTest, ASecondTapOnTheMenuChoosesNothingOnItsWayOut) {
  put(true);
  log.clear();
  find(*phone.window, "#row")->setOnTap([this](View&) {
    log.push_back("row");
    drawer->closeDrawer(true);
  });
  phone.tap({20, 120});
  phone.pump.advance(16);
  phone.tap({20, 120});
  EXPECT_THAT(log, testing::Not(testing::Contains("under")));
  EXPECT_EQ(std::count(log.begin(), log.end(), "row"), 1);
}

TEST_F(DrawerTest, OnAPushedPageTheEdgeSwipeGoesBack) {
  const struct {
    const char* says;
    Point from, to;
    std::int64_t rest;  // milliseconds before the finger leaves
    const char* left;
  } cases[] = {
      {"all the way", {5, 300}, {250, 310}, 0, "a"},
      {"slowly, beyond the middle", {5, 300}, {200, 300}, 300, "a"},
      {"slowly, not to the middle", {5, 300}, {120, 300}, 300, "ab"},
      {"a flick", {5, 300}, {90, 300}, 0, "a"},
      {"there and back again", {5, 300}, {6, 300}, 0, "ab"},
      {"not from the edge", {60, 300}, {300, 300}, 0, "ab"},
      {"downwards", {5, 100}, {60, 400}, 0, "ab"},
  };
  for (const auto& c : cases) {
    if (!nav->contains(*b)) nav->push(b, false);
    phone.pump.settle();
    phone.swipe(c.from, c.to, 16, c.rest);
    EXPECT_FALSE(open()) << c.says << ": the menu opened over a page that is not its own";
    phone.pump.settle();
    EXPECT_EQ(stack(), c.left) << c.says;
    const Ref<ViewController> top(nav->topViewController());
    const auto& shown = top->view().parent()->children();
    ASSERT_EQ(shown.size(), 1U) << c.says << ": the other page stays about";
    EXPECT_EQ(top->view().frame().origin(), Point()) << c.says;
    EXPECT_FALSE(top->view().accessibilityHidden()) << c.says;
    EXPECT_EQ(static_cast<Page&>(*top).appeared(), true) << c.says;
  }
  // A page that may not be left this way stays, and so does one that a program replaces.
  nav->setViewControllers({a, b}, false);
  b->navigationItem().setHidesBackButton(true);
  phone.swipe({5, 300}, {250, 300});
  phone.pump.settle();
  EXPECT_EQ(stack(), "ab");
  b->navigationItem().setHidesBackButton(false);
  phone.down({5, 300});
  phone.move({100, 300});
  nav->pop(false);
  phone.move({200, 300});
  phone.up({300, 300});
  phone.pump.settle();
  EXPECT_EQ(stack(), "a");
  EXPECT_EQ(a->view().frame().origin(), Point());
}

TEST_F(DrawerTest, AnOverlayCoversTheContentAndNothingElse) {
  nav->push(b, false);
  b->navigationItem().setLeftItems({});
  auto web = BarButtonItem::text("WEB");
  web->onPress = [this](BarButtonItem&) { log.push_back("WEB"); };
  b->navigationItem().setRightItems({web});
  place(b->view(), {0, 0, 320, 50}, "content")->setOnTap([this](View&) { log.push_back("tap"); });
  phone.pump.settle();
  phone.app.hud().showProgress("Caricamento...");
  phone.pump.settle();
  log.clear();
  phone.tap({160, 90});
  EXPECT_THAT(log, ElementsAre()) << "the content is covered";
  phone.tap(tapPoint(*find(*phone.window, "WEB")));
  EXPECT_THAT(log, ElementsAre("WEB"));
  phone.app.key(Key::Tab);
  phone.app.key(Key::Tab);
  ASSERT_TRUE(phone.app.focus().view());
  EXPECT_TRUE(phone.app.focus().view()->isDescendantOf(nav->navigationBar()));
  // Over the menu it does not lie.
  EXPECT_TRUE(phone.app.key(Key::Menu));
  phone.pump.settle();
  phone.tap({20, 120});
  EXPECT_EQ(log.back(), "row");
  EXPECT_TRUE(phone.app.key(Key::Escape));
  EXPECT_FALSE(open());
  phone.pump.settle();
  EXPECT_TRUE(phone.app.key(Key::Back));
  EXPECT_EQ(stack(), "a");
  phone.pump.settle();
  EXPECT_TRUE(phone.app.hud().progressShown()) << "it is bound to no page";
  phone.tap({160, 90});
  EXPECT_EQ(log.back(), "+a");
  phone.app.hud().hideProgress();
  phone.tap({160, 90});
  EXPECT_EQ(log.back(), "under");
}

TEST_F(DrawerTest, TheFocusIsSomewhereAfterEveryStep) {
  auto opener = BarButtonItem::drawer();
  opener->onPress = [this](BarButtonItem&) { drawer->openDrawer(DrawerSide::Left, true); };
  a->navigationItem().setLeftItems({opener});
  auto second = place(menu->view(), {0, 200, 280, 50}, "second");
  second->setOnTap([](View&) {});
  second->setAccessibleName("Mappe");
  phone.pump.settle();
  const auto focused = [&] {
    const auto* view = phone.app.focus().view();
    return view ? view->accessibleName() : "nothing";
  };
  for (const bool keys : {true, false}) {
    const auto openMenu = [&] {
      if (keys)
        phone.app.key(Key::Menu);
      else
        phone.tap({20, 40});
      phone.pump.settle();
    };
    phone.app.focus().set(find(*phone.window, "Menu").get(), keys);
    openMenu();
    EXPECT_EQ(focused(), "Farmacia") << "no row is current: the first";
    EXPECT_EQ(phone.app.focus().byKeyboard(), keys);
    if (keys)
      phone.app.key(Key::Escape);
    else
      phone.tap({310, 300});
    phone.pump.settle();
    EXPECT_EQ(focused(), "Menu") << "closed by the user: back to where it was";
    second->setCurrent(true);
    openMenu();
    EXPECT_EQ(focused(), "Mappe");
    second->setCurrent(false);
    drawer->closeDrawer(true);
    EXPECT_EQ(focused(), "a") << "closed by a choice: the page's title";
    phone.pump.settle();
    nav->push(b, true);
    EXPECT_EQ(focused(), "b");
    phone.pump.settle();
    phone.app.key(Key::Back);
    EXPECT_EQ(focused(), "a");
    phone.pump.settle();
  }
  EXPECT_TRUE(phone.app.focus().byKeyboard());
  // From a title, which takes no keys, Tab goes on to what follows it.
  phone.app.key(Key::Tab);
  EXPECT_EQ(phone.app.focus().view()->name(), "under");
}

TEST(Branding, ThePlatformSpeaksTheProgramsWordsInItsColour) {
  struct Restore {
    Words words = ui::words();
    Looks looks = ui::looks();
    ~Restore() { setBranding(words, looks); }
  } const restore;
  Words words;
  words.off = "non attivo";
  words.barButtons[0] = "Fine";
  words.barButtons[12] = "Cerca";
  setBranding(words, {Color{0xFF1F5F7A}, kWhite});
  Phone phone;
  auto nav = makeShared<NavigationController>();
  EXPECT_EQ(nav->navigationBar().background(), Color{0xFF1F5F7A});
  EXPECT_EQ(BarButtonItem::system(0)->title(), "Fine") << "no icon: its name is shown";
  EXPECT_EQ(BarButtonItem::system(12)->accessibleName(), "Cerca");
  EXPECT_EQ(BarButtonItem::system(99)->accessibleName(), "");
  EXPECT_EQ(Switch().accessibleValue(), "non attivo");
}

TEST_F(DrawerTest, TurningThePhoneMidSlideEndsInPlace) {
  drawer->openDrawer(DrawerSide::Left, false);
  drawer->closeDrawer(true);
  phone.pump.advance(50);
  phone.turn({568, 320});
  phone.pump.settle();
  EXPECT_TRUE(menu->view().hidden());
  drawer->openDrawer(DrawerSide::Left, true);
  phone.pump.settle();
  EXPECT_EQ(menu->view().frameInWindow(), (Rect{0, 0, 280, 320}));
}

}  // namespace
}  // namespace ui
