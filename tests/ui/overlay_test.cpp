#include "phone.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/overlays/dialog.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/reading/finder.h"
#include "platform/ui/values/style.h"

namespace ui {
namespace {

using testing::ElementsAre;

struct OverlayTest : PageTest {
  std::vector<int> results;
  int taps = 0;
  static constexpr Point beside{2, 560};  // any dialog

  OverlayTest() {
    auto back = place(page, {0, 0, 320, 568}, "page");
    back->setOnTap([this](View&) { ++taps; });
  }
  Ref<Dialog> dialog(bool cancelable) {
    auto d = makeShared<Dialog>();
    d->title = "Ricerca per oggetto";
    d->cancelable = cancelable;
    d->cancelResult = -3;
    d->addButton("Cerca", -1);
    d->addButton("Annulla", -3);
    d->content = makeShared<View>();
    d->content->setFrame({0, 0, 260, 60});
    d->onResult = [this](int r) { results.push_back(r); };
    return d;
  }
  void show(Dialog& d) {
    d.present();
    phone.pump.settle();
  }
  void tap(const char* text) {
    auto view = find(*phone.window, text);
    ASSERT_TRUE(view) << text;
    phone.tap(tapPoint(*view));
  }
};

TEST_F(OverlayTest, ADialogIsDismissedOnceWithItsResult) {
  const struct {
    const char* says;
    bool cancelable;
    std::function<void(Dialog&)> act;
    std::vector<int> heard;
  } cases[] = {
      {"a button", false, [&](Dialog&) { tap("Cerca"); }, {-1}},
      {"a tap beside it", true, [&](Dialog&) { phone.tap(beside); }, {-3}},
      {"a tap beside a firm one", false, [&](Dialog&) { phone.tap(beside); }, {}},
      {"a tap on the card", true, [&](Dialog& d) { phone.tap(d.view()->center()); }, {}},
      {"Escape", true, [&](Dialog&) { phone.app.key(Key::Escape); }, {-3}},
      {"Escape on a firm one", false, [&](Dialog&) { phone.app.key(Key::Back); }, {}},
      {"dismissed twice",
       false,
       [](Dialog& d) {
         d.dismiss(7);
         d.dismiss(8);
       },
       {7}},
      {"Enter on the first button", false, [&](Dialog&) { phone.app.key(Key::Enter); }, {-1}},
      {"Enter on the second button",
       false,
       [&](Dialog&) {
         phone.app.key(Key::Tab);
         phone.app.key(Key::Enter);
       },
       {-3}},
  };
  for (const auto& c : cases) {
    results.clear();
    auto d = dialog(c.cancelable);
    show(*d);
    c.act(*d);
    phone.pump.settle();
    EXPECT_EQ(results, c.heard) << c.says;
    EXPECT_EQ(d->shown(), c.heard.empty()) << c.says;
    d->dismiss(0);
    EXPECT_EQ(d->content->parent(), nullptr) << "the caller's panel goes back to the caller";
    d->present();
    EXPECT_FALSE(d->shown()) << "each is shown once";
  }
  EXPECT_EQ(taps, 0) << "the page behind was tapped";
}

TEST_F(OverlayTest, ALongMessageScrollsAndLeavesTheButtonInReach) {
  std::string week;
  for (int i = 0; i < 60; ++i) week += "08:30 - 12:30 riga " + std::to_string(i) + "\n";
  phone.app.messageBox("Orari", week, {"Chiudi"}, [this](int i) { results.push_back(i); });
  phone.pump.settle();
  const Rect card = phone.app.dialogs().at(0)->view()->frameInWindow();
  EXPECT_GE(card.y, 20);
  EXPECT_LE(card.bottom(), 568);
  auto text = find(*phone.window, "riga 59");
  ASSERT_TRUE(text);
  phone.app.focus().set(nullptr);
  EXPECT_TRUE(phone.app.key(Key::End));
  EXPECT_LE(text->frameInWindow().bottom(), card.bottom());
  phone.swipe({160, 250}, {160, 330});
  EXPECT_GT(text->frameInWindow().bottom(), card.bottom());
  tap("Chiudi");
  EXPECT_THAT(results, ElementsAre(0));
}

TEST_F(OverlayTest, OnEveryScreenTheButtonsAreInReachAndReadable) {
  const std::string text = "Il servizio riprende domani alle 8:30 presso la sede di via Roma. ";
  std::string much;
  for (int i = 0; i < 20; ++i) much += text;
  const struct {
    const char* says;
    std::string title, message;
    std::vector<std::string> buttons;
    double content;
    bool sideBySide;
  } cases[] = {
      {"a short question", "Msg", "Procedere?", {"Sì", "No"}, 0, true},
      {"much to read", "Avviso", much, {"Chiudi"}, 0, true},
      {"long answers",
       "Avviso",
       text,
       {"Ricordamelo domani mattina", "Non mostrare più"},
       0,
       false},
      {"a panel", "Ricerca per oggetto", "", {"Cerca", "Annulla"}, 200, true},
      {"panel and text",
       much,
       much,
       {"Cerca", "Un'altra ricerca per oggetto", "Annulla"},
       300,
       false},
      {"a long title alone", much, "", {"OK"}, 0, true},
  };
  for (const Size size : {Size{320, 568}, {568, 320}, {320, 480}, {768, 1024}}) {
    phone.turn(size);
    for (const auto& c : cases) {
      auto d = makeShared<Dialog>();
      d->title = c.title;
      d->message = c.message;
      d->circle = c.content > 0;
      for (std::size_t i = 0; i < c.buttons.size(); ++i)
        d->addButton(c.buttons[i], static_cast<int>(i));
      d->cancelResult = 1;
      if (c.content > 0) {
        d->content = makeShared<View>();
        d->content->setFrame({0, 0, 260, c.content});
      }
      show(*d);
      const auto where =
          std::string(c.says) + " on " + std::to_string(static_cast<int>(size.width));
      const Rect card = d->view()->frameInWindow();
      EXPECT_GE(card.y, 20) << where;
      EXPECT_LE(card.bottom(), size.height) << where;
      EXPECT_LE(card.right(), size.width) << where;
      Rect former;
      for (std::size_t i = 0; i < c.buttons.size(); ++i) {
        const auto& button = static_cast<Button&>(*d->buttonView(i));
        const Rect at = button.frameInWindow();
        EXPECT_EQ(at.height, style::kTapSize) << where;
        EXPECT_LE(at.bottom(), card.bottom()) << where;
        EXPECT_GE(at.width + 12, button.sizeThatFits({}).width) << where << ": the title is cut";
        EXPECT_FALSE(at.intersects(former)) << where;
        if (i > 0 && (c.sideBySide || size.width < 500)) {
          EXPECT_EQ(at.y == former.y, c.sideBySide) << where;
        }
        former = at;
      }
      if (c.buttons.size() > 1) {
        EXPECT_TRUE(d->buttonView(1)->background().transparent()) << where << ": the quieter one";
      }
      // All that doesn't fit can be scrolled to.
      phone.app.focus().set(nullptr);
      phone.app.key(Key::End);
      if (d->content) {
        EXPECT_GE(d->buttonView(0)->frameInWindow().y, d->content->frameInWindow().bottom())
            << where;
      }
      d->dismiss(0);
      EXPECT_TRUE(!d->content || !d->content->parent()) << where;
      phone.pump.settle();
    }
  }
}

TEST_F(OverlayTest, ADialogMakesWayForTheKeyboardAndTurnsWithThePhone) {
  phone.screen.keyboard = 216;
  auto d = dialog(true);
  place<TextField>(*d->content, {0, 0, 260, 40});
  show(*d);
  EXPECT_LE(d->view()->frameInWindow().bottom(), 568 - 216);
  phone.app.focus().set(nullptr);
  phone.pump.settle();
  EXPECT_GT(d->view()->frameInWindow().bottom(), 568 - 216);
  for (const Size size : {Size{568, 320}, {320, 568}}) {
    phone.turn(size);
    phone.pump.settle();
    EXPECT_LE(d->view()->frameInWindow().bottom(), size.height);
    EXPECT_NEAR(d->view()->frameInWindow().center().x, size.width / 2, 1);
  }
}

TEST_F(OverlayTest, AResultMayOpenTheNextDialog) {
  auto first = dialog(true);
  first->onResult = [&](int) {
    first = nullptr;
    phone.app.messageBox("Msg", "Nuova versione rilasciata!", {"OK"},
                         [&](int i) { results.push_back(100 + i); });
  };
  show(*first);
  tap("Cerca");
  phone.pump.settle();
  ASSERT_EQ(phone.app.dialogs().size(), 1u);
  tap("OK");
  EXPECT_THAT(results, ElementsAre(100));
  EXPECT_TRUE(phone.app.dialogs().empty());
}

TEST_F(OverlayTest, ProgressIsOneAndModalUntilHidden) {
  phone.app.hud().hideProgress();
  phone.app.hud().showProgress("Caricamento...");
  phone.app.hud().showProgress("Quasi fatto");
  phone.pump.settle();
  EXPECT_TRUE(find(*phone.window, "Quasi fatto"));
  EXPECT_FALSE(find(*phone.window, "Caricamento..."));
  phone.tap({50, 50});
  EXPECT_FALSE(phone.app.key(Key::Escape)) << "nowhere to go back to";
  EXPECT_EQ(taps, 0);
  EXPECT_FALSE(find(*phone.window, "#page"));
  phone.app.hud().hideProgress();
  phone.tap({50, 50});
  EXPECT_EQ(taps, 1) << "free at once, while it fades";
  phone.pump.settle();
  EXPECT_TRUE(phone.window->overlay().children().empty());
  EXPECT_THAT(phone.screen.announcements,
              ElementsAre("Caricamento...", "Quasi fatto", "Loading done"));
}

TEST_F(OverlayTest, WhatOnlyInformsClosesByAnyWayOut) {
  const auto box = [&](std::vector<std::string> buttons) {
    results.clear();
    phone.app.messageBox("Orari", "8-12", std::move(buttons),
                         [this](int i) { results.push_back(i); });
    phone.pump.settle();
  };
  const struct {
    const char* says;
    std::vector<std::string> buttons;
    std::function<void()> act;
    std::vector<int> heard;
  } cases[] = {
      {"Enter presses the only button", {"Chiudi"}, [&] { phone.app.key(Key::Enter); }, {0}},
      {"…also with the focus elsewhere",
       {"Chiudi"},
       [&] {
         phone.app.focus().set(nullptr);
         phone.app.key(Key::Enter);
       },
       {0}},
      {"Escape is no answer", {"Chiudi"}, [&] { phone.app.key(Key::Escape); }, {-1}},
      {"Back", {"Chiudi"}, [&] { phone.app.key(Key::Back); }, {-1}},
      {"a tap beside it", {"Chiudi"}, [&] { phone.tap(beside); }, {-1}},
      {"a question waits", {"Sì", "No"}, [&] { phone.app.key(Key::Escape); }, {}},
  };
  for (const auto& c : cases) {
    box(c.buttons);
    c.act();
    EXPECT_EQ(results, c.heard) << c.says;
    if (!phone.app.dialogs().empty()) phone.app.dialogs().back()->dismiss(9);
    phone.pump.settle();
  }
  EXPECT_EQ(taps, 0);
}

TEST_F(OverlayTest, ADialogThatComesUnderAFingerIsNotAnsweredByIt) {
  auto d = dialog(true);
  d->present();
  phone.pump.advance(100);
  phone.tap(beside);
  tap("Cerca");
  EXPECT_TRUE(results.empty()) << "the second tap of two closed it unread";
  phone.pump.settle();
  tap("Cerca");
  phone.tap({50, 50});
  EXPECT_EQ(taps, 0) << "the second tap on its button went through to the page";
  phone.pump.settle();
  phone.tap({50, 50});
  EXPECT_EQ(taps, 1);
}

TEST_F(OverlayTest, TheFocusGoesToADialogAndBackToWhereItWas) {
  auto field = place<TextField>(page, {0, 100, 320, 40}, "behind");
  auto button = place<Button>(page, {0, 200, 320, 40}, "button");
  phone.app.focus().set(button.get(), true);
  auto d = dialog(true);
  d->present();
  EXPECT_EQ(phone.app.focus().view(), d->buttonView(0));
  phone.app.key(Key::Escape);
  EXPECT_EQ(phone.app.focus().view(), button.get());
  EXPECT_TRUE(phone.app.focus().byKeyboard()) << "keys are in use: the place is shown";
  auto search = dialog(true);
  auto inside = place<TextField>(*search->content, {0, 0, 260, 40});
  search->present();
  EXPECT_EQ(phone.app.focus().view(), inside.get()) << "what is to be filled in comes first";
  button->removeFromParent();
  search->dismiss(0);
  EXPECT_FALSE(phone.app.focus().view()) << "what had it is gone";
}

TEST_F(OverlayTest, AToastLetsTapsThroughAndGoesByItself) {
  phone.app.hud().toast("Connessione non presente", 1500);
  EXPECT_TRUE(phone.pump.settle()) << "a toast keeps nothing busy";
  EXPECT_EQ(phone.app.hud().toastText(), "Connessione non presente");
  phone.tap({160, 568 * 0.8});
  EXPECT_EQ(taps, 1);
  phone.pump.advance(1000);
  phone.app.hud().toast("Altro", 1500);
  phone.pump.advance(1000);
  EXPECT_EQ(phone.app.hud().toastText(), "Altro") << "the former one's time ended the newer";
  phone.pump.advance(500);
  EXPECT_FALSE(phone.app.hud().toastShown());
  phone.pump.settle();
  EXPECT_TRUE(phone.window->overlay().children().empty());
}

TEST_F(OverlayTest, WhatIsBehindADialogIsHiddenFromAssistiveTechnology) {
  placeText(page, {0, 0, 100, 20}, "dietro");
  const auto names = [&] {
    std::vector<std::string> all;
    for (const auto& e : accessibilityTree(*phone.window)) all.push_back(e.name);
    return all;
  };
  EXPECT_THAT(names(), testing::Contains("dietro"));
  auto d = dialog(true);
  auto field = place<TextField>(*d->content, {0, 0, 260, 40});
  field->setHint("Oggetto");
  show(*d);
  // The dialog itself, its heading, and what is in it.
  EXPECT_THAT(names(), ElementsAre("Ricerca per oggetto", "Ricerca per oggetto", "Oggetto", "Cerca",
                                   "Annulla"));
  EXPECT_EQ(accessibilityTree(*phone.window).front().role, Role::Dialog);
  EXPECT_EQ(focusOrder(*phone.window).size(), 3u);
  d->dismiss(0);
  EXPECT_THAT(names(), testing::Contains("dietro"));
}

}  // namespace
}  // namespace ui
