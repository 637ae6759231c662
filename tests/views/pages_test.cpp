#include "platform/ui/pages/bar_view.h"
#include "runtime/views/base/device.h"
#include "runtime/views/pages/bar_button_item.h"
#include "runtime/views/pages/side_menu.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "views_fixture.h"

namespace kes {
namespace {

std::string points(double v) { return std::to_string(static_cast<int>(v)); }

// An owner of two pages, "home" with all events and "plain" with none.
class PageOwner final : public EventNotes {
 public:
  static void describe(ClassBuilder<PageOwner>& c) {
    c.name("PageOwner");
    c.sub<&PageOwner::note<"home appears">>("home_appear");
    c.sub<&PageOwner::note<"home goes">>("home_disappear");
    c.sub<&PageOwner::note<"home", int, int>>("home_resize");
    c.sub<&PageOwner::note<"keyboard", int>>("home_keyboardstatechanged");
    c.sub<&PageOwner::note<"button", Value>>("home_barbuttonclick");
    c.sub<&PageOwner::note<"second appears">>("second_appear");
    c.sub<&PageOwner::note<"second goes">>("second_disappear");
  }
};

class PagesTest : public ViewsTest {
 protected:
  PagesTest() {
    ClassRegistry::instance().add<PageOwner>();
    owner = make<PageOwner>(0);
    home.Initialize(owner->bi(), "Home");
    second.Initialize(owner->bi(), "Second");
    nav.Initialize(owner->bi(), "nc");
    phone.window->setRootViewController(nav.native());
  }
  Trace happened() { return phone.heardBy(*owner); }
  void showHome() {
    nav.ShowPage2(home, false);
    happened();
  }
  std::vector<Value> stack() {
    std::vector<Value> pages;
    for (const auto& p : nav.native()->viewControllers()) pages.emplace_back(p);
    return pages;
  }

  Ref<PageOwner> owner;
  KesPage home, second;
  KesNavigationControllerWrapper nav;
};

TEST_F(PagesTest, TellsOfAppearingAndGoingEachTimeAndOfTheSizeOnce) {
  EXPECT_FALSE(home.Visible());
  nav.ShowPage2(home, false);
  // The event of appearing is queued, that of a new size comes after the layout pass.
  EXPECT_THAT(owner->trace, IsEmpty());
  EXPECT_THAT(happened(), ElementsAre("home appears", "home 320,504"));
  EXPECT_TRUE(home.Visible());

  nav.ShowPage2(second, false);
  EXPECT_THAT(owner->trace, ElementsAre("home goes"));  // in place
  EXPECT_THAT(happened(), ElementsAre("home goes", "second appears"));
  EXPECT_FALSE(home.Visible());
  nav.RemoveCurrentPage2(false);
  EXPECT_THAT(happened(), ElementsAre("second goes", "home appears"));
}

TEST_F(PagesTest, AStackNeverHoldsAPageTwice) {
  auto third = fresh<KesPage>(owner->bi(), "third");
  for (const auto& page : {home, second, third, second, home, home}) nav.ShowPage2(page, false);
  EXPECT_THAT(stack(), ElementsAre(home.object()));
  nav.RemoveCurrentPage2(false);
  EXPECT_THAT(stack(), ElementsAre(home.object())) << "the last page stays";
  nav.SetPagesStack(KesList::of({home, third}));
  nav.ShowPage(second);
  EXPECT_THAT(stack(), ElementsAre(home.object(), third.object(), second.object()));
  nav.ShowPage(home);
  EXPECT_THAT(stack(), ElementsAre(home.object()));
  EXPECT_EQ(static_cast<KesNavigationController&>(*nav.native()).supportedInterfaceOrientations(),
            30);
}

TEST_F(PagesTest, OnlyAPageWithoutABarLeavesRoomForTheStatusBar) {
  const struct {
    const char* what;
    bool bar;
    ui::Size screen;
    double top, height, center;
  } cases[] = {
      {"bar shown", true, {320, 568}, 0, 504, 252},
      {"no bar", false, {320, 568}, 20, 548, 294},
      {"no bar, turned", false, {568, 320}, 20, 300, 170},
      {"bar shown, turned", true, {568, 320}, 0, 256, 128},
  };
  nav.ShowPage2(home, false);
  for (const auto& c : cases) {
    nav.setNavigationBarVisible(c.bar);
    phone.turn(c.screen);
    const auto panel = home.RootPanel();
    EXPECT_EQ(panel.Top(), c.top) << c.what;
    EXPECT_EQ(panel.Height(), c.height) << c.what;
    EXPECT_EQ(panel.Width(), c.screen.width) << c.what;
    EXPECT_EQ(panel.view().center().y, c.center) << c.what;
  }
  // A narrow bar along the side of a turned phone takes its short side too.
  phone.screen.statusBar = 1000;
  nav.setNavigationBarVisible(false);
  phone.turn({20, 568});
  EXPECT_EQ(home.RootPanel().Top(), 20);
}

// A sub that shows its page and goes on in the same turn, or after Sleep(0), builds by the
// root panel's size.
TEST_F(PagesTest, APageHasItsSizeFromItsMakingAndWhatTheBarsLeaveOnceShown) {
  const auto sizeOf = [](const KesPage& page) {
    return points(page.RootPanel().Width()) + "," + points(page.RootPanel().Height());
  };
  showHome();
  for (const auto& [screen, made, shown] :
       {std::tuple{ui::Size{320, 568}, "320,548", "320,504"}, {{568, 320}, "568,300", "568,256"}}) {
    phone.turn(screen);
    happened();
    auto plain = fresh<KesPage>(owner->bi(), "Home"), slid = fresh<KesPage>(owner->bi(), "Home");
    EXPECT_EQ(plain.native()->view().bounds().size(), screen);
    EXPECT_EQ(sizeOf(plain), made) << "a page of its own leaves room for the status bar";
    nav.ShowPage2(plain, false);
    EXPECT_EQ(sizeOf(plain), shown);
    nav.ShowPage(slid);
    EXPECT_EQ(sizeOf(slid), shown) << "while it slides in";
    EXPECT_THAT(owner->trace, ElementsAre("home goes", "home goes")) << "no size told yet";
    EXPECT_THAT(happened(), testing::Contains("home " + std::string(shown)).Times(2))
        << "told once by each, of the size that it came to";
    showHome();
  }
}

TEST_F(PagesTest, SafeAreaIsEmptyBeforeVersionEleven) {
  nav.setNavigationBarVisible(false);
  showHome();
  home.RootPanel().setTop(0);  // under the status bar
  for (const auto& [version, top] : {std::pair{"10.3", 0.0f}, {"11.0", 20.0f}, {"12.1.4", 20.0f}}) {
    device::setSystemVersion(version);
    const KesRect area = home.SafeAreaInsets();
    EXPECT_EQ(area.Top, top) << version;
    EXPECT_EQ(area.Left + area.Right + area.Bottom, 0) << version;
  }
  device::setSystemVersion("11.0");
}

TEST_F(PagesTest, TitlePromptAndButtonsReachTheBar) {
  nav.ShowPage2(home, false);
  EXPECT_TRUE(home.TopRightButtons().IsInitialized());
  EXPECT_EQ(
      home.TopRightButtons().Size() + home.TopLeftButtons().Size() + home.ToolbarButtons().Size(),
      0);
  home.setTitle("Eventi");
  home.setPrompt("");
  EXPECT_EQ(home.native()->navigationItem().title(), "Eventi");
  EXPECT_TRUE(home.description() == "Page: Eventi");
  EXPECT_TRUE(home.object().description() == "Page (vc): Eventi");
  EXPECT_EQ(nav.native()->navigationBar().contents().prompt, "");

  KesBarButtonItemWrapper search, site;
  search.InitializeSystem(KesBarButtonItemWrapper::ITEM_SEARCH, "SEARCH_ATTI");
  site.InitializeText("Sito WEB", "WEB");
  int elsewhere = 0;
  site.native()->onPress = [&](ui::BarButtonItem&) { ++elsewhere; };
  home.setTopRightButtons(KesList::of({search, site}));
  home.setTopRightButtons(KesList::of({site, search}));
  EXPECT_TRUE(KesBarButtonItemWrapper::fromBoxed(home.TopRightButtons().Get(1)) == Value(search) ||
              home.TopRightButtons().Get(1).isEqual(search.object()));
  happened();
  search.native()->press();
  site.native()->press();
  EXPECT_THAT(owner->trace, IsEmpty()) << "presses are queued";
  EXPECT_THAT(happened(), ElementsAre("button SEARCH_ATTI"));
  EXPECT_EQ(elsewhere, 1) << "an item that does something already keeps doing it";
}

TEST_F(PagesTest, ListensToTheKeyboardOnlyWhileShownAndOnlyForAHandler) {
  phone.screen.keyboard = 216;
  showHome();
  auto field = fresh<KesTextFieldWrapper>(owner->bi());
  home.RootPanel().AddView(field, 0, 0, 100, 40);
  phone.pump.drain();
  field.RequestFocus();
  home.ResignFocus();
  EXPECT_FALSE(field.IsFocused());
  EXPECT_THAT(owner->trace, ElementsAre("keyboard 216", "keyboard 0"));
  owner->trace.clear();
  nav.ShowPage2(second, false);
  phone.app.focus().setKeyboard(216);
  EXPECT_THAT(happened(), ElementsAre("home goes", "second appears"));
}

TEST_F(PagesTest, ALayoutBringsItsPagePropertiesButLeavesTheBarAsItIs) {
  writeLayout("pagina", R"(
variant 320x480
backgroundColor: #102030
title: "Pagina"
prompt: "Avviso"
hideBackButton: yes
navigationBarVisible: no
topRight1:
  btype: -1
  text: "Cambia via"
  tag: "SETTING"
topRight2:
  btype: -3
toolbar0:
  btype: 9
  tag: "condividi"
toolbar3:
  btype: 16
  enabled: no
)");
  KesBarButtonItemWrapper former;
  former.InitializeText("Prima", 1);
  nav.ShowPage2(home, false);
  home.setTopRightButtons(KesList::of({former}));
  home.setTopLeftButtons(KesList::of({former}));
  home.RootPanel().LoadLayout("pagina", owner->bi());
  happened();
  EXPECT_TRUE(home.Title() == "Pagina");
  EXPECT_TRUE(home.Prompt() == "Avviso");
  EXPECT_TRUE(home.HideBackButton());
  EXPECT_TRUE(nav.NavigationBarVisible());
  EXPECT_EQ(home.native()->view().background().argb, 0xFF102030);
  EXPECT_EQ(home.TopLeftButtons().Size(), 1) << "the left side isn't the layout's";

  const auto& right = home.native()->navigationItem().rightItems();
  ASSERT_EQ(right.size(), 1u);
  EXPECT_EQ(right[0]->title(), "Cambia via");
  right[0]->press();
  EXPECT_THAT(happened(), ElementsAre("button SETTING"));
  const auto& below = home.native()->toolbarItems();
  ASSERT_EQ(below.size(), 3u);
  EXPECT_EQ(below[0]->systemNumber(), 9);
  EXPECT_TRUE(below[1]->flexibleSpace()) << "the two stand at the ends of the bar";
  EXPECT_EQ(below[2]->systemNumber(), 16);
  EXPECT_FALSE(below[2]->enabled());
}

TEST_F(PagesTest, TheDrawerIsReachedByNameAndByItsMasks) {
  auto left = fresh<KesPage>(owner->bi(), "lp");
  KesSideMenuController drawer;
  EXPECT_EQ(thrownBy([&] { drawer.OpenLeftMenu(); }),
            "Object was not initialized (MMDrawerController)");
  drawer.Initialize(left, nav, KesPage());
  EXPECT_EQ(drawer.native()->closeGestureMask, 68);
  EXPECT_EQ(drawer.native()->openGestureMask, 8);
  drawer.setOpenGesturesEnabled(false);
  EXPECT_EQ(drawer.native()->openGestureMask, 0);
  EXPECT_FALSE(drawer.OpenGesturesEnabled());

  KesNativeObject byName = KesNativeObject::fromBoxed(drawer);
  byName.SetField("shouldStretchDrawer", false);
  EXPECT_FALSE(drawer.native()->shouldStretchDrawer);
  EXPECT_THAT(thrownBy([&] { byName.SetField("niente", 1); }),
              HasSubstr("Method not found: niente"));

  KesBarButtonItemWrapper button = drawer.CreateBarButton("left");
  EXPECT_TRUE(button.Tag() == Value("left"));
  phone.window->setRootViewController(drawer.native());
  drawer.OpenLeftMenu();
  phone.pump.settle();
  EXPECT_EQ(drawer.native()->openSide(), ui::DrawerSide::Left);
  EXPECT_EQ(left.RootPanel().Top(), 20) << "a menu has no bar above it";
  drawer.CloseMenu();
  phone.pump.settle();
  EXPECT_EQ(drawer.native()->openSide(), ui::DrawerSide::None);
}

}  // namespace
}  // namespace kes
