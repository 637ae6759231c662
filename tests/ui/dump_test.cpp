#include "platform/ui/reading/dump.h"

#include "phone.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/controls.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/controls/web_view.h"
#include "platform/ui/overlays/dialog.h"
#include "platform/ui/pages/navigation_controller.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/reading/finder.h"

namespace ui {
namespace {

using testing::ElementsAre;

// A page with a list of three rows, two of them with the same text.
struct DumpTest : testing::Test {
  Phone phone;
  Ref<ViewController> page = makeShared<ViewController>();
  Ref<NavigationController> nav = makeShared<NavigationController>();
  Ref<ScrollView> list;
  std::vector<std::string> tapped;

  void SetUp() override {
    page->setTitle("InfoVarlo");
    page->navigationItem().setLeftItems({BarButtonItem::drawer()});
    nav->push(page, false);
    phone.window->setRootViewController(nav);
    phone.pump.drain();
    list = place<ScrollView>(page->view(), {0, 0, 320, 100}, "clv");
    const char* texts[] = {"\uF1EA Comune di Varlo", "\uF0E0 Newsletter\n\"Varlo\"",
                           "\uE878 Comune di Varlo"};
    for (int i = 0; i < 3; ++i) {
      auto outer = place(list->content(), {0, i * 62.0, 320, 60});
      outer->setOnTap([this, i](View&) { tapped.push_back(std::to_string(i)); });
      auto inner = place(*outer, {0, 0, 320, 60});
      placeText(*inner, {10, 5.5, 300, 49.25}, texts[i]);
    }
    list->setContentSize({320, 184});
    auto button = place<Button>(page->view(), {10, 110, 100, 44}, "btn");
    button->setTitle("Avanti");
    button->setEnabled(false);
    auto field = place<TextField>(page->view(), {10, 160, 300, 44}, "et");
    field->setHint("Via");
    field->setText("Roma");
    place<Switch>(page->view(), {10, 210, 51, 31})->setOn(true);
    auto hidden = placeText(page->view(), {0, 300, 10, 10}, "mai");
    hidden->setHidden(true);
    phone.pump.settle();
  }
};

// Icons are written as <F015> below, so that they can be read here.
std::string readable(std::string text) {
  const std::pair<const char*, const char*> icons[] = {
      {"\uF1EA", "<F1EA>"}, {"\uF0E0", "<F0E0>"}, {"\uE5D2", "<E5D2>"}};
  for (const auto& [icon, name] : icons)
    if (const auto at = text.find(icon); at != std::string::npos) text.replace(at, 3, name);
  return text;
}

constexpr const char* kPage = R"(UIWindow 0,0 320x568
  UIView 0,0 320x568
    UIView 0,64 320x504
      UIView 0,64 320x504
        UIScrollView #clv 0,64 320x100
          UIView 0,64 320x184
            UIView 0,64 320x60 name="Comune di Varlo"
              UIView 0,64 320x60
                UILabel 10,69.5 300x49.25 "<F1EA> Comune di Varlo" name="Comune di Varlo"
            UIView 0,126 320x60 name="Newsletter\n\"Varlo\""
              UIView 0,126 320x60
                UILabel 10,131.5 300x49.25 "<F0E0> Newsletter\n\"Varlo\"" name="Newsletter\n\"Varlo\""
        UIButton #btn 10,174 100x44 "Avanti" [disabled]
        UITextField #et 10,224 300x44 "Roma" name="Via"
        UISwitch 10,274 51x31 [on]
    UINavigationBar 0,0 320x64
      UILabel 54,20 212x44 "InfoVarlo"
      UIButton 8,20 46x44 "<E5D2>" name="Menu"
)";

TEST_F(DumpTest, IsTheTextThatPeopleCompare) {
  EXPECT_EQ(readable(dump(*phone.window)), kPage);
  phone.app.focus().set(find(*phone.window, "#et").get());
  phone.app.hud().toast("Ciao", 1500);
  phone.app.hud().showProgress("Attendere");
  phone.app.messageBox("Msg", "Fatto", {"OK"}, {});
  phone.pump.settle();
  const auto text = readable(dump(*phone.window));
  EXPECT_EQ(text.substr(0, std::string_view(kPage).size()), kPage)
      << "the dialog takes the focus from the page and adds its part after it";
  EXPECT_EQ(text.substr(std::string_view(kPage).size()), R"(overlay "Attendere"
  UIView 0,64 320x504
    UIView 107,268.5 106x95
      UIActivityIndicatorView 141.5,284.5 37x37
      UILabel 123,329.5 74x18 "Attendere"
toast "Ciao"
  UIView 0,0 320x568
    UIView 129,433.4 62x42
      UILabel 145,445.4 30x18 "Ciao"
dialog "Msg"
  UIView 0,0 320x568
    UIView 0,0 320x568
    UIView 20,214 280x140 name="Msg"
      UILabel 36,230 248x22 "Msg"
      UILabel 36,264 248x18 "Fatto"
      UIButton 36,294 248x44 "OK" [focused]
)");
}

TEST_F(DumpTest, FinderFindsAsAPersonWould) {
  const struct {
    const char* text;
    int nth;
    const char* row;  // the row that a tap on it reaches, or why none
  } cases[] = {
      {"Comune di Varlo", 1, "0"},
      {"Comune di Varlo", 2, "2"},
      {"Comune di Varlo", 3, "not found"},
      {"Newsletter", 1, "1"},
      {"comune", 1, "not found"},
      {"mai", 1, "not found"},
      {"", 1, "not found"},
      {"#nessuno", 1, "not found"},
  };
  for (const auto& c : cases) {
    tapped.clear();
    auto view = find(*phone.window, c.text, c.nth);
    if (view) {
      scrollIntoView(*view);
      phone.tap(tapPoint(*view));
    } else {
      tapped.push_back("not found");
    }
    EXPECT_THAT(tapped, ElementsAre(c.row)) << c.text << " " << c.nth;
  }
  EXPECT_EQ(list->offset().y, 62 + 5.5) << "moved no further than the text needs";
  EXPECT_EQ(find(*phone.window, "#btn")->displayText(), "Avanti");
  EXPECT_EQ(find(*phone.window, "Menu")->className(), "UIButton") << "by its spoken name";
}

TEST_F(DumpTest, AssistiveTechnologyHearsRowsFieldsAndControls) {
  std::vector<std::string> heard;
  for (const auto& e : accessibilityTree(*phone.window))
    heard.push_back(std::string(roleName(e.role)) + ": " + e.name +
                    (e.value.empty() ? "" : " = " + e.value) + (e.enabled ? "" : " (off)"));
  EXPECT_THAT(heard,
              ElementsAre("button: Menu", "heading: InfoVarlo", "button: Comune di Varlo",
                          "button: Newsletter\n\"Varlo\"", "button: Comune di Varlo",
                          "button: Avanti (off)", "text field: Via = Roma", "switch:  = on"));
}

TEST_F(DumpTest, APageOfHtmlReadsItsTextAndReportsItsEnd) {
  auto web = place<WebView>(page->view(), {0, 260, 320, 200}, "web");
  std::vector<std::string> log;
  web->onPageFinished = [&](bool ok, const std::string& url) {
    log.push_back((ok ? "yes " : "no ") + url);
  };
  web->onOverrideUrl = [&](const std::string& url) {
    log.push_back("asked " + url);
    return true;
  };
  web->loadHtml("<h1>Varlo</h1><p>Benvenuti</p>", "file:///assets/");
  phone.pump.settle();
  EXPECT_TRUE(find(*phone.window, "Benvenuti"));
  web->loadUrl("https://example.it/");
  phone.pump.settle();
  const auto old = web->request().serial;
  web->loadHtml("nuova");
  web->finished(old, true, "late");
  EXPECT_THAT(log, ElementsAre("yes file:///assets/", "asked https://example.it/"))
      << "a replaced page's end is not reported";
}

}  // namespace
}  // namespace ui
