// What was measured to fit does fit, and looks as it should.
#include <cmath>
#include <ctime>

#include "desk.h"
#include "platform/qt/drawing/qt_text_engine.h"
#include "platform/ui/controls/text_input.h"

static const char* const kLong =
    "Il servizio di guardia medica è attivo nei giorni festivi e prefestivi, e dalle 20:00 "
    "alle 8:00 di tutti gli altri: telefonare prima di andare.";

class TextOnScreen : public Desk {
 protected:
  ui::Size drawn(const ui::Rect& frame) { return ink(picture(), frame).size(); }
};

TEST_F(TextOnScreen, ALabelOfItsMeasuredSizeShowsTheWholeText) {
  const struct {
    const char* text;
    ui::Font font;
    double width;  // 0: one line
  } cases[] = {
      {"Farmacia di turno", ui::Font::system(17), 0},
      {"InfoCittà", ui::Font::bold(22), 0},
      {"fff jjj", ui::Font::italic(31), 0},
      {"\uE878", ui::Font::named("Material Icons", 24), 0},
      {"una riga\ne un'altra", ui::Font::system(15), 300},
      {kLong, ui::Font::system(15), 240},
      {kLong, ui::Font::bold(13), 333},
      {"parolasenzaspaziluuuuuuuuuuuuuuuuuuuuuuunga", ui::Font::system(20), 120},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const ui::Size size = app.text().measure(c.text, c.font, c.width, c.width > 0 ? 0 : 1);
    auto label = addText(c.text, {10, 10, c.width > 0 ? c.width : size.width, size.height});
    label->setFont(c.font);
    label->setMaxLines(c.width > 0 ? 0 : 1);
    const ui::Size exact = drawn(page().bounds());
    // With room to spare nothing is cut, so what is seen must stay the same.
    label->setFrame({10, 10, c.width > 0 ? c.width : size.width + 150, size.height + 100});
    EXPECT_EQ(drawn(page().bounds()), exact);
    EXPECT_GT(exact.width, 0);
    EXPECT_LE(exact.width, size.width + 2);
    EXPECT_LE(exact.height, size.height + 2);
    label->removeFromParent();
  }
}

TEST_F(TextOnScreen, MeasuresAlikeWithAndWithoutAttributes) {
  const auto font = ui::Font::system(16);
  EXPECT_EQ(app.text().measure(kLong, font, 200, 0),
            app.text().measure(ui::AttributedText(kLong), font, 200, 0));
  const double line = app.text().lineHeight(font);
  EXPECT_NEAR(app.text().measure("a\nb\nc", font, 0, 0).height, 3 * line, 1);
  EXPECT_NEAR(app.text().measure(kLong, font, 200, 2).height, 2 * line, 1);
  EXPECT_EQ(app.text().measure("", font, 200, 0), ui::Size{});
  ui::AttributedText big("piccolo GRANDE");
  const auto large = ui::Font::bold(40);
  big.apply(8, 14, {.font = large});
  EXPECT_GE(app.text().measure(big, font, 0, 1).height, app.text().lineHeight(large) - 1);
}

TEST_F(TextOnScreen, CutsWithAnEllipsisInsideItsWidth) {
  auto label = addText(kLong, {10, 10, 200, 30});
  const ui::Rect one = ink(picture("cut"), page().bounds());
  EXPECT_LE(one.right(), 210);
  EXPECT_GT(one.right(), 180);
  label->setMaxLines(2);
  label->setFrame({10, 10, 200, 60});
  const ui::Rect two = ink(picture(), page().bounds());
  EXPECT_LE(two.right(), 210);
  EXPECT_GT(two.height, one.height * 1.5);
  EXPECT_LT(two.height, one.height * 3);
  label->setMaxLines(1);
  label->setShrinksToFit(true);
  label->setText("Una riga che entra appena rimpicciolita");
  EXPECT_LT(ink(picture(), page().bounds()).height, one.height);
}

// Rows of a list built wide and turned narrow used to show half a line over the next row.
TEST_F(TextOnScreen, ATextTooHighForItsBoxEndsAtAWholeLine) {
  const auto font = ui::Font::system(15);
  const double line = app.text().lineHeight(font);
  ui::AttributedText rich(std::string("Guardia medica\n") + kLong);
  rich.apply(0, 14, {.font = ui::Font::bold(15)});
  const struct {
    const char* what;
    bool rich;
    double lines;  // of room
    int shown;
  } cases[] = {{"half a line more", false, 2.5, 2},
               {"all but a hair of one", false, 2.9, 2},
               {"the last reaches out by less than a point", false, 3 - 0.5 / line, 3},
               {"less than a line", false, 0.5, 1},
               {"up to a break", true, 1.4, 1},
               {"with room between the lines", true, 2.6, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const double spacing = c.rich ? 1.2 * line : line;
    auto label = addText(kLong, {10, 10, 200, c.lines * spacing});
    label->setFont(font);
    label->setMaxLines(0);
    if (c.rich) label->setAttributedText(rich);
    const ui::Rect shown = ink(picture(c.what), page().bounds());
    EXPECT_NEAR(shown.height, c.shown * spacing - 0.25 * line, 0.3 * line);
    EXPECT_LE(shown.bottom(), 10 + std::max(label->bounds().height, line) + 1);
    // All of it is there again when it has room.
    label->setFrame({10, 10, 200, 400});
    label->sizeToFit();
    EXPECT_NEAR(ink(picture(), page().bounds()).bottom(), 10 + label->bounds().height, 0.4 * line);
    label->removeFromParent();
  }
}

// Rows of a list ran into one another, with a wide gap inside each.
TEST_F(TextOnScreen, HalfOfAnEmptyLineIsAirAboveAndBelow) {
  const auto font = ui::Font::system(20);
  const auto inkOf = [&](std::string text, double high) {
    ui::AttributedText rich(text);
    rich.apply(0, static_cast<std::uint32_t>(text.size()), {.font = font});
    auto label = addText("", {10, 10, 200, high});
    label->setMaxLines(0);
    label->setAttributedText(rich);
    if (high == 0) label->sizeToFit();
    EXPECT_EQ(high > 0 ? high : 3 * std::ceil(1.2 * app.text().lineHeight(font)),
              label->bounds().height);
    const ui::Rect shown = ink(picture(text), page().bounds());
    label->removeFromParent();
    return shown;
  };
  const double line = 1.2 * app.text().lineHeight(font);
  const ui::Rect full = inkOf("HEH\nHEH\nHEH", 0), airy = inkOf("HEH\n\nHEH", 0);
  EXPECT_NEAR(airy.y, full.y + line / 4, 1);
  EXPECT_NEAR(airy.bottom(), full.bottom() - line / 4, 1);
  // No air is left in a box without room for it.
  EXPECT_NEAR(inkOf("HEH\n\nHEH", 2.5 * line).height, airy.height, 1);
}

TEST_F(TextOnScreen, LargerTextIsDrawnAsItWasMeasuredAndLosesNoWords) {
  const auto font = ui::Font::system(16);
  const char* const number = "0370 550236";
  const ui::Size plain = app.text().measure(number, font, 0, 1);
  auto label = addText(number, {10, 10, plain.width, 30});
  label->setFont(font);
  const ui::Rect before = ink(picture(), page().bounds());
  label->removeFromParent();

  qt::QtTextEngine larger(2);
  const ui::Size twice = larger.measure(number, font, 0, 1);
  EXPECT_NEAR(twice.width, 2 * plain.width, 2);
  EXPECT_NEAR(twice.height, 2 * plain.height, 2);
  label = addText(number, {10, 10, twice.width, twice.height});
  label->setFont(font);
  EXPECT_NEAR(ink(picture("larger"), page().bounds()).width, 2 * before.width, 2);
  // In a box that was made for the plain size it shrinks, as far as that and no further.
  label->setFrame({10, 10, plain.width + 1, 30});
  EXPECT_NEAR(ink(picture("unenlarged"), page().bounds()).width, before.width, 2);
  label->setFrame({10, 10, plain.width / 2, 30});
  EXPECT_NEAR(ink(picture(), page().bounds()).height, before.height, 2);
  qt::QtTextEngine usual(1);
}

// A raised or lowered run used to be painted over the lines beside it.
TEST_F(TextOnScreen, RunsOffTheBaselineAreMeasuredAsTheyAreDrawn) {
  const auto font = ui::Font::system(20);
  const double line = app.text().lineHeight(font);
  for (const double up : {12.0, -12.0}) {
    SCOPED_TRACE(up);
    ui::AttributedText text("HHH\nHIH\nHHH");
    text.apply(5, 6, {.baseline = up});
    const ui::Size size = app.text().measure(text, font, 100, 0);
    EXPECT_NEAR(size.height, 3 * 1.2 * line + 12, 2);
    auto label = addText("", {10, 10, 100, size.height});
    label->setFont(font);
    label->setMaxLines(0);
    label->setAttributedText(text);
    const QImage image = picture(up > 0 ? "raised" : "lowered");
    // Between the run and its neighbours in the other lines nothing is painted twice: the
    // middle column has as much ink as the three letters are high.
    const ui::Rect all = ink(image, page().bounds());
    EXPECT_LE(all.bottom(), 10 + size.height);
    const double middle = app.text().measure("H", font, 0, 1).width;
    const ui::Rect letter = ink(image, {10, 10, middle - 3, 1.2 * line});
    int dark = 0;
    for (double y = 10; y < 10 + size.height; y += 0.5)
      dark += at(image, 10 + middle + 2.7, y).lightness() < 128 ? 1 : 0;
    EXPECT_GE(dark, 3 * 2 * (letter.height - 2)) << "letters cover each other";
    label->removeFromParent();
  }
}

TEST_F(TextOnScreen, ARichPageIsDrawnAsItWasMeasuredAndItsLinksOpen) {
  ui::AttributedText text("sinistra\ndestra\nlink");
  text.apply(9, 15, {.alignment = ui::TextAlign::Right});
  text.apply(0, 8, {.color = ui::Color(0x40000000)});
  text.apply(16, 20, {.link = "https://varlo.example/atti"});
  auto view = add<ui::TextView>({10, 10, 300, 400});
  view->setEditable(false);
  view->setAttributedText(text);
  std::string opened;
  view->onLinkClick = [&](const std::string& url) { opened = url; };
  view->setFrame({10, 10, 300, view->sizeThatFits({300, 0}).height});
  const QImage image = picture("rich page");
  const double third = (view->bounds().height - 16) / 3;
  const ui::Rect first = ink(image, {10, 18, 300, third});
  const ui::Rect second = ink(image, {10, 18 + third, 300, third});
  EXPECT_NEAR(first.x, 15, 3);
  EXPECT_NEAR(second.right(), 305, 3);
  EXPECT_NEAR(ink(image, page().bounds()).bottom(), 10 + view->bounds().height - 8, third / 2);
  int darkest = 255;
  for (double x = first.x; x < first.right(); x += 0.5)
    for (double y = first.y; y < first.bottom(); y += 0.5)
      darkest = std::min(darkest, at(image, x, y).lightness());
  EXPECT_NEAR(darkest, 0xBF, 12) << "a quarter of black on white";
  tap({20, 18 + 2.5 * third});
  EXPECT_EQ(opened, "https://varlo.example/atti");
}

TEST_F(TextOnScreen, ALabelsLinksTakeTouchesWhereTheyStand) {
  ui::AttributedText text("Bando, allegato e modulo");
  text.apply(7, 15, {.link = "https://varlo.example/a"});
  text.apply(18, 24, {.link = "https://varlo.example/m"});
  auto row = add<ui::View>({0, 0, 300, 60});
  int rows = 0;
  row->setOnTap([&](ui::View&) { ++rows; });
  auto label = addText("", {10, 10, 280, 30}, row.get());
  label->setAttributedText(text);
  const double before = app.text().measure("Bando, alle", label->font(), 0, 1).width;
  tap({20, 25});
  EXPECT_EQ(rows, 1) << "beside a link the row is meant";
  tap({10 + before, 25});
  EXPECT_EQ(rows, 1);
  EXPECT_THAT(opened, testing::ElementsAre("https://varlo.example/a"));
}

TEST_F(TextOnScreen, AWordTooLongForItsLineIsShrunkOrBrokenAfterASign) {
  const char* const mail = "anagrafe@comune.varlo.example";
  const auto font = ui::Font::system(17);
  const double whole = app.text().measure(mail, font, 0, 1).width;
  const double line = app.text().lineHeight(font);
  auto label = addText(mail, {10, 10, whole - 20, 3 * line});
  label->setMaxLines(0);
  // Broken: what follows the last sign that fits goes to the next line.
  const double first = app.text().measure("anagrafe@comune.varlo.", font, 0, 1).width;
  EXPECT_NEAR(drawn(page().bounds()).width, first, 3);
  EXPECT_GT(drawn(page().bounds()).height, line);
  // Shrunk: whole, on one line.
  label->setShrinksToFit(true);
  EXPECT_GT(drawn(page().bounds()).width, first + 5);
  EXPECT_LT(drawn(page().bounds()).height, line);
  // Several lines are made smaller until they have room, as long as they can be read.
  label->setText(kLong);
  label->setFrame({10, 10, 300, 3 * line});
  EXPECT_LE(ink(picture("shrunk"), page().bounds()).bottom(), 10 + 3 * line + 2);
}

// One text of 100,000 letters without a blank kept a list from opening for half a minute.
TEST_F(TextOnScreen, AWordOfAnyLengthIsBrokenInATextsTime) {
  const auto seconds = [&](const std::string& text) {
    const auto start = std::clock();
    EXPECT_GT(app.text().measure(text, ui::Font::system(14), 300, 0).height, 1000);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  };
  constexpr std::size_t kLetters = 40000;
  std::string words(kLetters, 'W');
  for (std::size_t i = 4; i < kLetters; i += 5) words[i] = ' ';
  seconds(words);
  EXPECT_LT(seconds(std::string(kLetters, 'W')), 30 * seconds(words));
}

TEST_F(TextOnScreen, IconsBesideTextsLineThemUpAndStandInTheMiddle) {
  const std::pair<const char*, const char*> icons[] = {
      {"FontAwesome", "\uF015"},     // wide
      {"FontAwesome", "\uF128"},     // narrow
      {"Material Icons", "\uE878"},  // stands on the baseline
  };
  for (const auto& [family, icon] : icons) {
    SCOPED_TRACE(icon);
    ui::AttributedText text(std::string(icon) + " H");
    text.apply(0, 1, {.font = ui::Font::named(family, 20)});
    auto label = addText("", {10, 10, 200, 50});
    label->setAttributedText(text);
    const QImage image = picture();
    const ui::Rect letter = ink(image, {36, 0, 100, 80}), sign = ink(image, {0, 0, 36, 80});
    EXPECT_NEAR(letter.x, 41, 2);
    EXPECT_NEAR(sign.center().y, letter.center().y, 1);
    label->removeFromParent();
  }
}

TEST_F(TextOnScreen, AlignsLinesAndParagraphs) {
  auto label = addText("destra", {10, 10, 300, 30});
  label->setAlignment(ui::TextAlign::Right);
  EXPECT_NEAR(ink(picture(), page().bounds()).right(), 310, 2);
  label->setAlignment(ui::TextAlign::Center);
  EXPECT_NEAR(ink(picture(), page().bounds()).center().x, 160, 2);
  // The second paragraph has an alignment of its own.
  ui::AttributedText text("sinistra\ndestra");
  text.apply(9, 15, {.alignment = ui::TextAlign::Right});
  label->setAlignment(ui::TextAlign::Left);
  label->setMaxLines(0);
  label->setAttributedText(text);
  label->setFrame({10, 10, 300, 60});
  const QImage image = picture("paragraphs");
  const double half = 40;
  EXPECT_NEAR(ink(image, {0, 0, kWidth, half}).x, 10, 2);
  EXPECT_NEAR(ink(image, {0, half, kWidth, 60}).right(), 310, 2);
}

TEST_F(TextOnScreen, PaintsTheColoursOfItsRuns) {
  ui::AttributedText text("XXXX\u2588\u2588");
  text.apply(4, 6, {.color = ui::Color(0xFFFF0000)});
  auto label = add<ui::Label>({10, 10, 200, 60});
  label->setFont(ui::Font::system(30));
  label->setTextColor(ui::Color(0xFF0000FF));
  label->setAttributedText(text);
  const QImage image = picture();
  const ui::Rect all = ink(image, page().bounds());
  EXPECT_EQ(at(image, all.right() - 4, all.center().y), QColor(255, 0, 0));
  EXPECT_EQ(ink(image, {0, 0, 30, 80}).x, all.x);
}

TEST_F(TextOnScreen, EmojiAreColoredPictures) {
  const char* emoji[] = {"🍕", "🎉", "🎭", "🏀"};
  for (int i = 0; i < 4; ++i)
    addText(emoji[i], {20, 20.0 + 60 * i, 100, 50})->setFont(ui::Font::system(30));
  const QImage image = picture("emoji");
  for (int i = 0; i < 4; ++i) {
    int colored = 0;
    for (int y = 40 + 120 * i; y < 140 + 120 * i; ++y)
      for (int x = 40; x < 240; ++x) colored += image.pixelColor(x, y).saturation() > 60;
    EXPECT_GT(colored, 200) << emoji[i];
  }
}

TEST_F(TextOnScreen, TallTextIsWholeWhereverItIsScrolledTo) {
  std::string text;
  for (int i = 0; i < 300; ++i) text += "riga " + std::to_string(i) + "\n";
  auto scroll = add<ui::ScrollView>({0, 0, kWidth, kHeight});
  auto label = addText(text, {}, &scroll->content());
  label->setMaxLines(0);
  const double height = app.text().measure(text, label->font(), kWidth, 0).height;
  label->setFrame({0, 0, kWidth, height});
  scroll->setContentSize({kWidth, height});
  const double line = height / 300;
  for (double y : {0.0, 500.0, 1800.0, height - kHeight}) {
    scroll->setOffset({0, y});
    const QImage image = picture();
    for (double at = line; at + line < kHeight - line; at += line)
      EXPECT_GT(ink(image, {0, at, kWidth, line}).width, 20) << "at " << y << " + " << at;
  }
}
