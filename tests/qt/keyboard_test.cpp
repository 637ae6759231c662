// Keys do what a finger does; the keyboard's place is seen; editors take what is typed.
#include <QQuickItem>
#include <QQuickWindow>

#include "desk.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/overlays/dialog.h"
#include "platform/ui/values/style.h"

class Keys : public Desk {
 protected:
  ui::Ref<ui::Button> button(const std::string& title, double y) {
    auto b = add<ui::Button>({20, y, 200, 44});
    b->setTitle(title);
    b->setOnTap([this, title](ui::View&) { pressed.push_back(title); });
    return b;
  }
  // Whether the ring is drawn along the inner edge of a view.
  bool ringed(const ui::View& view) {
    const ui::Rect f = view.frameInWindow();
    const QColor ring = QColor::fromRgba(ui::style::kFocusRing.argb);
    const QImage image = picture();
    return at(image, f.center().x, f.y + 1) == ring &&
           at(image, f.center().x, f.bottom() - 1) == ring;
  }
  std::vector<std::string> pressed;
};

TEST_F(Keys, TabMovesARingAndEnterPresses) {
  auto first = button("uno", 20), second = button("due", 80);
  EXPECT_FALSE(ringed(*first));
  press(ui::Key::Tab);
  EXPECT_TRUE(ringed(*first));
  press(ui::Key::Down);
  EXPECT_TRUE(ringed(*second));
  EXPECT_FALSE(ringed(*first));
  press(ui::Key::Enter);
  press(ui::Key::BackTab);
  press(ui::Key::Space);
  EXPECT_EQ(pressed, (std::vector<std::string>{"due", "uno"}));
  // A finger needs no ring.
  tap({100, 300});
  EXPECT_FALSE(ringed(*first));
}

TEST_F(Keys, TheRingStaysWithARowThatScrolls) {
  auto list = add<ui::ScrollView>({0, 0, kWidth, 300});
  list->setContentSize({kWidth, 3000});
  for (int i = 0; i < 60; ++i) {
    auto row = add<ui::View>({0, i * 50.0, kWidth, 50}, &list->content());
    row->setOnTap([](ui::View&) {});
    row->setAccessibleName("riga");
  }
  for (int i = 0; i < 20; ++i) press(ui::Key::Tab);
  EXPECT_GT(list->offset().y, 500);
  EXPECT_TRUE(ringed(*list->content().children()[19]));
}

TEST_F(Keys, AFieldTakesWhatIsTyped) {
  auto field = add<ui::TextField>({20, 20, 300, 40});
  field->setHint("Nome");
  field->setBorderStyle(3);
  auto after = button("dopo", 100);
  std::vector<std::string> heard;
  field->onBeginEdit = [&] { heard.push_back("begin"); };
  field->onEndEdit = [&] { heard.push_back("end"); };
  field->onTextChanged = [&](const std::string& was, const std::string& is) {
    heard.push_back(was + ">" + is);
  };
  field->onEnterPressed = [&] { heard.push_back("enter"); };
  const QImage hint = picture("field-hint");
  EXPECT_GT(ink(hint, {30, 25, 100, 30}).width, 20) << "the hint is read";
  tap({150, 40});
  EXPECT_TRUE(field->isFocused());
  type("Però");
  EXPECT_EQ(field->text(), "Però");
  EXPECT_NE(picture("field-text"), hint);
  press(ui::Key::Enter);
  EXPECT_EQ(heard,
            (std::vector<std::string>{"begin", ">P", "P>Pe", "Pe>Per", "Per>Però", "enter"}));
  // Arrows are the editor's, Tab is not.
  press(ui::Key::Left);
  type("o");
  EXPECT_EQ(field->text(), "Peroò");
  press(ui::Key::Tab);
  EXPECT_TRUE(after->isFocused());
  EXPECT_EQ(heard.back(), "end");
  press(ui::Key::Enter);
  EXPECT_EQ(pressed, (std::vector<std::string>{"dopo"}));
  EXPECT_EQ(field->text(), "Peroò");
}

TEST_F(Keys, AFieldAtRestShowsHowItBeginsAndADisabledOneLooksSo) {
  auto field = add<ui::TextField>({20, 20, 120, 40});
  field->setBorderStyle(3);
  field->setText("IIIIIIIIIIIIII molto lungo");
  auto same = add<ui::TextField>({20, 80, 120, 40});
  same->setBorderStyle(3);
  same->setText("IIIIIIIIIIIIII molto lungo ma diverso alla fine");
  const auto part = [&](double y) {
    return picture().copy(QRectF(20 * kScale, y * kScale, 120 * kScale, 40 * kScale).toRect());
  };
  EXPECT_EQ(part(20), part(80)) << "both begin alike";
  same->requestFocus();
  press(ui::Key::End);
  EXPECT_NE(part(20), part(80)) << "while it is edited it shows where the cursor is";
  same->resignFocus();
  EXPECT_EQ(part(20), part(80)) << "after the editing too";
  const QImage enabled = part(20);
  field->setEnabled(false);
  EXPECT_NE(part(20), enabled);
  EXPECT_NE(at(picture(), 130, 25), QColor(Qt::white));
}

TEST_F(Keys, FieldAndProgramAgreeOnTheText) {
  auto field = add<ui::TextField>({20, 20, 300, 40});
  field->onTextChanged = [&](const std::string&, const std::string& is) {
    if (is.size() > 3) field->setText(is.substr(0, 3));
  };
  field->requestFocus();
  rest();
  for (const char* c : {"1", "2", "3", "4", "5"}) {
    type(c);
  }
  EXPECT_EQ(field->text(), "123");
  EXPECT_EQ(screen.window().activeFocusItem()->property("text").toString(), "123");
  field->setText("altro");
  rest();
  EXPECT_EQ(screen.window().activeFocusItem()->property("text").toString(), "altro");
  // Without a hook of its own, Enter ends the editing.
  press(ui::Key::Enter);
  EXPECT_FALSE(field->isFocused());
  type("x");
  EXPECT_EQ(field->text(), "altro");
}

TEST_F(Keys, ATextViewTakesLinesAndAPasswordStaysHidden) {
  auto area = add<ui::TextView>({20, 20, 300, 100});
  auto secret = add<ui::TextField>({20, 150, 300, 40});
  secret->setTraits({.password = true});
  area->requestFocus();
  type("uno\ndue");
  EXPECT_EQ(area->text(), "uno\ndue");
  const double one = app.text().lineHeight(area->font());
  EXPECT_GT(ink(picture("area"), {20, 20, 300, 100}).height, one);
  area->setEditable(false);
  secret->requestFocus();
  type("iiii");
  secret->resignFocus();  // and the cursor, which blinks, goes
  const double narrow = ink(picture(), {22, 152, 296, 36}).width;
  secret->setText("wwww");
  EXPECT_NEAR(ink(picture(), {22, 152, 296, 36}).width, narrow, 2) << "only its length is seen";
}

TEST_F(Keys, EscapeLeavesADialogFromInsideAField) {
  auto field = ui::makeShared<ui::TextField>();
  field->setFrame({0, 0, 250, 40});
  auto dialog = ui::makeShared<ui::Dialog>();
  dialog->content = field;
  dialog->cancelable = true;
  dialog->cancelResult = -3;
  int result = 0;
  dialog->onResult = [&](int r) { result = r; };
  dialog->present();
  field->requestFocus();
  type("a");
  EXPECT_EQ(field->text(), "a");
  press(ui::Key::Escape);
  EXPECT_EQ(result, -3);
}
