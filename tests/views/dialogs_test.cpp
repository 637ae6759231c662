#include "platform/ui/overlays/dialog.h"
#include "platform/ui/reading/finder.h"
#include "runtime/data/files/bitmap.h"
#include "runtime/views/dialogs/custom_dialog.h"
#include "runtime/views/dialogs/hud.h"
#include "runtime/views/dialogs/message_box.h"
#include "views_fixture.h"

namespace kes {
namespace {

class DialogOwner final : public EventNotes {
 public:
  static void describe(ClassBuilder<DialogOwner>& c) {
    c.name("DialogOwner");
    c.sub<&DialogOwner::note<"click", Text>>("msg_click");
  }

  Resumable<> ask(iCustomDialog dialog, bool cancelable) {
    const Value alert =
        dialog.ShowAsync(bi(), "Ricerca per oggetto", "Cerca", "Annulla", "", cancelable);
    const auto result = co_await waitFor<std::int32_t>("dialog_result:", alert);
    trace.push_back("result " + std::to_string(result));
  }
  Resumable<> week() {
    const auto buttons = KesList::of({"Chiudi"});
    const Value box = Msgbox2Async(bi(), "Lunedì\n9 - 12", "Orari", buttons);
    const auto text = co_await waitFor<Text>("msgbox_result:", box);
    trace.push_back("box " + text.str());
  }
  Resumable<> load(Text until) {
    auto progress = hud.progress("Caricamento...");
    co_await waitFor<>("msg_go");
    progress.setText("Quasi fatto");
    if (until == "fault") throw KesException("rotto");
    co_await waitFor<>("msg_end");
  }

  iHUD hud;
};

class DialogsTest : public ViewsTest {
 public:
  DialogsTest() {
    ClassRegistry::instance().add<DialogOwner>();
    owner = make<DialogOwner>(0);
    page = phone.showPage(owner->bi(), "page");
    panel.Initialize(owner->bi(), "");
    panel.SetLayoutAnimated(0, 1, 0, 0, 270, 100);
  }
  ui::Hud& hud() { return phone.app.hud(); }
  std::vector<std::string> buttons() {
    std::vector<std::string> texts;
    for (const auto& b : phone.app.dialogs().at(0)->buttons()) texts.push_back(b.text);
    return texts;
  }
  void press(std::size_t index) { phone.tap(*phone.app.dialogs().at(0)->buttonView(index)); }

  Ref<DialogOwner> owner;
  KesPage page;
  KesPanelWrapper panel;
  iCustomDialog dialog;
};

TEST_F(DialogsTest, OneOverlayIsShownAndOneHideRemovesIt) {
  iHUD first, second;
  first.ProgressDialogHide();
  first.ProgressDialogShow("Caricamento...");
  auto* overlay = hud().progressView();
  first.ProgressDialogShow("Caricamento dati...");
  EXPECT_EQ(hud().progressView(), overlay);
  EXPECT_EQ(hud().progressText(), "Caricamento dati...");
  second.ProgressDialogHide();
  EXPECT_TRUE(hud().progressShown()) << "it was not its own";
  iHUD copy = first;
  copy.ProgressDialogHide();
  EXPECT_FALSE(hud().progressShown());
  second.ProgressDialogShow("Altro");
  first.ProgressDialogHide();
  EXPECT_TRUE(hud().progressShown());
  second.ProgressDialogHide();
}

TEST_F(DialogsTest, AToastGoesByItselfAndLetsTapsThrough) {
  iHUD toaster;
  for (const auto& [isLong, milliseconds] : {std::pair{false, 1500}, {true, 3000}}) {
    toaster.ToastMessageShow("Connessione non presente", isLong);
    EXPECT_EQ(hud().toastText(), "Connessione non presente");
    EXPECT_FALSE(hud().toastView()->userInteraction());
    phone.pump.advance(milliseconds - 1);
    EXPECT_TRUE(hud().toastShown()) << milliseconds;
    phone.pump.advance(1);
    EXPECT_FALSE(hud().toastShown()) << milliseconds;
  }
}

TEST_F(DialogsTest, AGuardHidesTheOverlayHoweverTheSubEnds) {
  const auto raise = [&](const char* event) { owner->bi()->raiseEvent(nullptr, event, {}); };
  {
    auto sub = owner->load("end");
    raise("msg_go");
    EXPECT_EQ(hud().progressText(), "Quasi fatto");
    raise("msg_end");
    EXPECT_FALSE(hud().progressShown()) << "it came to its end";
  }
  owner->load("fault");
  EXPECT_TRUE(hud().progressShown());
  EXPECT_EQ(thrownBy([&] { raise("msg_go"); }), "rotto");
  EXPECT_FALSE(hud().progressShown()) << "it failed";
  owner->load("end");
  EXPECT_TRUE(hud().progressShown());
  owner->bi()->waitsFor("msg_go").clear();
  EXPECT_FALSE(hud().progressShown()) << "it was dropped";
}

TEST_F(DialogsTest, ACustomDialogAnswersWithItsResult) {
  EXPECT_EQ(thrownBy([&] { dialog.ShowAsync(owner->bi(), "t", "", "", "", true); }),
            "Object was not initialized (SCLAlertView)");
  const struct {
    bool cancelable;
    std::function<void(DialogsTest&)> act;
    Trace trace;
    std::int32_t result;
  } cases[] = {
      {false, [](auto& t) { t.press(0); }, {"result -1"}, iCustomDialog::RESULT_POSITIVE},
      {false, [](auto& t) { t.press(1); }, {"result -3"}, iCustomDialog::RESULT_CANCEL},
      {true,
       [](auto& t) {
         t.phone.tap({5, 5});
       },
       {"result -3"},
       iCustomDialog::RESULT_CANCEL},
      {false,
       [](auto& t) {
         t.phone.tap({5, 5});
       },
       {},
       iCustomDialog::RESULT_CANCEL},
      {false,
       [](auto& t) { t.dialog.CloseDialog(iCustomDialog::RESULT_NEGATIVE); },
       {"result -2"},
       iCustomDialog::RESULT_NEGATIVE},
  };
  for (const auto& c : cases) {
    dialog.Initialize(panel);
    EXPECT_EQ(dialog.Style, iCustomDialog::STYLE_INFO);
    EXPECT_EQ(dialog.CustomColor, static_cast<std::int32_t>(0xFF2866BF));
    dialog.Style = iCustomDialog::STYLE_CUSTOM;
    owner->ask(dialog, c.cancelable);
    phone.pump.settle();
    EXPECT_THAT(buttons(), ElementsAre("Cerca", "Annulla")) << "the empty text makes no button";
    EXPECT_FALSE(phone.app.dialogs()[0]->circle) << "custom, and without an icon";
    EXPECT_EQ(phone.app.dialogs()[0]->accent->argb, 0xFF2866BF) << "the buttons have it";
    EXPECT_EQ(dialog.Result(), iCustomDialog::RESULT_CANCEL);
    c.act(*this);
    phone.pump.settle();
    EXPECT_EQ(std::exchange(owner->trace, {}), c.trace);
    EXPECT_EQ(dialog.Result(), c.result);
    EXPECT_EQ(phone.app.dialogs().empty(), !c.trace.empty());
    dialog.CloseDialog(c.result);
    phone.pump.settle();
    owner->trace.clear();
  }
}

TEST_F(DialogsTest, ADialogsCardIsReachedByNameAndMayBeMoved) {
  dialog.Initialize(panel);
  dialog.Style = iCustomDialog::STYLE_WAITING;
  dialog.ShowAsync(owner->bi(), "Attendere", "Uno", "Tre", "Due", KesBitmap(), false);
  EXPECT_THAT(buttons(), ElementsAre("Uno", "Due", "Tre"));
  EXPECT_TRUE(phone.app.dialogs()[0]->spinner);
  EXPECT_EQ(phone.app.dialogs()[0]->accent->argb, 0xFF2866BF);
  KesNativeObject alert = KesNativeObject::fromBoxed(dialog).GetField("alertView");
  auto card = KesViewWrapper::fromBoxed(alert.GetField("view"));
  EXPECT_EQ(card.Top(), 0) << "not laid out yet";
  phone.pump.settle();
  EXPECT_NE(card.Top(), 0);
  card.setTop(40);
  phone.pump.settle();
  EXPECT_EQ(card.Top(), 40);
  EXPECT_TRUE(panel.view().isDescendantOf(card.view()));
  // A second call neither shows it again nor forgets it.
  dialog.ShowAsync(owner->bi(), "Ancora", "", "", "", true);
  EXPECT_EQ(phone.app.dialogs().size(), 1u);
}

TEST_F(DialogsTest, MessageBoxesAnswerFromTheQueueWithTheButtonsText) {
  Msgbox2(owner->bi(), "Msg", "Nuova versione rilasciata!", "InfoVarlo", KesList::of({"OK", 2}));
  phone.pump.settle();
  EXPECT_THAT(buttons(), ElementsAre("OK", "2"));
  phone.app.dialogs()[0]->dismiss(1);
  EXPECT_THAT(owner->trace, IsEmpty());
  phone.pump.drain();
  EXPECT_THAT(owner->trace, ElementsAre("click 2"));

  owner->week();
  phone.pump.settle();
  press(0);
  phone.pump.settle();
  EXPECT_THAT(owner->trace, ElementsAre("click 2", "box Chiudi"));

  Msgbox(12, "Titolo");
  phone.pump.settle();
  EXPECT_THAT(buttons(), ElementsAre("OK"));
  EXPECT_EQ(phone.app.dialogs()[0]->message, "12");
  press(0);
  phone.pump.settle();
  EXPECT_EQ(owner->trace.size(), 2u);

  Msgbox2(owner->bi(), "Msg", "Senza bottoni", "", KesList::of({}));
  phone.pump.settle();
  phone.tap({5, 5});
  EXPECT_TRUE(phone.app.dialogs().empty()) << "there is a way out";
}

}  // namespace
}  // namespace kes
