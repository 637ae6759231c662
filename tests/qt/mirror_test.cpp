// The items on the screen are what the view tree says, and no more than can be seen.
#include <sys/resource.h>
#include <QBuffer>
#include <QQuickWindow>

#include <cmath>

#include "desk.h"
#include "platform/qt/drawing/image_store.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/image_view.h"
#include "platform/ui/controls/indicators.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/controls/web_view.h"
#include "platform/ui/pages/drawer_controller.h"
#include "platform/ui/values/style.h"

static constexpr ui::Color kRed{0xFFFF0000}, kGreen{0xFF00FF00}, kBlue{0xFF0000FF};

static ui::Color colorOf(int row) {
  return ui::Color(0xFF000000U | static_cast<std::uint32_t>((row * 2654435761U) >> 8));
}

class OnScreen : public Desk {
 protected:
  ui::Ref<ui::View> box(const ui::Rect& frame, ui::Color color, ui::View* parent = nullptr) {
    auto view = add<ui::View>(frame, parent);
    view->setBackground(color);
    return view;
  }
  // From now on.
  void countFrames(int& frames) {
    QObject::connect(&screen.window(), &QQuickWindow::frameSwapped, &screen.window(),
                     [&frames] { ++frames; });
  }
};

TEST_F(OnScreen, ALongListCostsWhatItShows) {
  constexpr int kRows = 10000;
  constexpr double kRow = 44;
  auto list = add<ui::ScrollView>({0, 0, kWidth, kHeight});
  list->setContentSize({kWidth, kRows * kRow});
  for (int i = 0; i < kRows; ++i) {
    auto row = box({0, i * kRow, kWidth, kRow}, colorOf(i), &list->content());
    addText("Riga " + std::to_string(i), {100, 0, 200, kRow}, row.get());
  }
  for (double offset : {0.0, 3.0, 100000.0, 219999.5, kRows * kRow - kHeight}) {
    list->setOffset({0, offset});
    const QImage image = picture();
    EXPECT_LT(screen.shownViews(), 60U);
    for (int y = 1; y < kHeight; y += 20) {
      const double at_ = offset + y;
      if (std::abs(at_ - std::round(at_ / kRow) * kRow) < 1.5) continue;  // at an edge
      const ui::Color c = colorOf(static_cast<int>(at_ / kRow));
      ASSERT_EQ(at(image, 20, y), QColor::fromRgba(c.argb)) << offset << " + " << y;
    }
  }
}

TEST_F(OnScreen, FollowsEveryChangeOfTheTree) {
  auto under = box({20, 20, 100, 100}, kRed);
  auto over = box({20, 20, 100, 100}, kGreen);
  EXPECT_EQ(at(picture(), 50, 50), QColor(0, 255, 0));
  under->bringToFront();
  EXPECT_EQ(at(picture(), 50, 50), QColor(255, 0, 0));
  auto between = ui::makeShared<ui::View>();
  between->setFrame({20, 20, 100, 100});
  between->setBackground(kBlue);
  page().insertSubview(between, 1);
  under->setHidden(true);
  EXPECT_EQ(at(picture(), 50, 50), QColor(0, 0, 255));
  between->setFrame({200, 20, 50, 50});
  EXPECT_EQ(at(picture(), 50, 50), QColor(0, 255, 0));
  over->setAlpha(0.5);
  EXPECT_NEAR(at(picture(), 50, 50).red(), 127, 2);
  EXPECT_EQ(at(picture(), 225, 45), QColor(0, 0, 255));
  between->removeFromParent();
  over->setBackground(kRed);
  over->setAlpha(1);
  const QImage last = picture();
  EXPECT_EQ(at(last, 225, 45), QColor(Qt::white));
  EXPECT_EQ(at(last, 50, 50), QColor(255, 0, 0));
}

TEST_F(OnScreen, ChildrenAreClippedMovedAndFadedWithTheirParent) {
  auto parent = box({50, 50, 100, 100}, kBlue);
  auto child = box({80, 10, 100, 20}, kRed, parent.get());
  EXPECT_EQ(at(picture(), 170, 70), QColor(255, 0, 0));
  parent->setClipsToBounds(true);
  QImage image = picture();
  EXPECT_EQ(at(image, 170, 70), QColor(Qt::white));
  EXPECT_EQ(at(image, 140, 70), QColor(255, 0, 0));
  parent->setFrame({50, 150, 100, 100});
  parent->setAlpha(0.5);
  image = picture();
  EXPECT_NEAR(at(image, 60, 170).green(), 127, 2);
  EXPECT_GT(at(image, 140, 170).red(), at(image, 60, 170).red());
  EXPECT_EQ(at(image, 140, 70), QColor(Qt::white));
}

TEST_F(OnScreen, DrawsBordersRoundedCornersAndShadows) {
  auto card = box({50, 50, 120, 80}, kGreen);
  card->setBorder({3, kRed, 16});
  card->setShadow({ui::kBlack, {0, 4}, 0.5, 10});
  for (int round = 0; round < 2; ++round) {  // stretched, and small enough to be exact
    const ui::Rect f = card->frame();
    const QImage image = picture(round ? "circle" : "card");
    EXPECT_EQ(at(image, f.center().x, f.center().y), QColor(0, 255, 0));
    EXPECT_EQ(at(image, f.center().x, f.y + 1), QColor(255, 0, 0));
    EXPECT_EQ(at(image, f.right() - 1.5, f.center().y), QColor(255, 0, 0));
    const QColor corner = at(image, f.x + 1, f.y + 1);
    EXPECT_TRUE(corner.red() == corner.green() && corner.red() > 150) << "no corner: rounded off";
    const QColor below = at(image, f.center().x, f.bottom() + 4);
    EXPECT_TRUE(below.red() == below.green() && below.red() < 235) << "the shadow falls below";
    EXPECT_GT(at(image, f.center().x, f.y - 4).red(), below.red()) << "…more than above";
    card->setFrame({50, 50, 32, 32});
  }
}

TEST_F(OnScreen, EdgesAndTextLieOnThePixelGrid) {
  QImage image = picture();
  ASSERT_EQ(image.size(), QSize(750, 1334));
  box({10.5, 10, 0.5, 20}, ui::kBlack);
  auto label = addText("Nitido", {40, 100, 200, 30});
  image = picture();
  EXPECT_EQ(image.pixelColor(20, 30), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(21, 30), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(22, 30), QColor(Qt::white));
  // A place between two pixels is one of them: the same glyphs, not blurred ones.
  const QImage sharp = image.copy(80, 200, 300, 60);
  label->setFrame({40.2, 100.15, 200, 30});
  EXPECT_EQ(picture().copy(80, 200, 300, 60), sharp);
}

TEST_F(OnScreen, PlacesImagesByTheirContentMode) {
  auto view = add<ui::ImageView>({100, 100, 100, 100});
  view->setImage(ui::Image::fromFile(redPicture(40, 20)));
  const struct {
    ui::ContentMode mode;
    ui::Rect seen;
  } cases[] = {
      {ui::ContentMode::Fill, {100, 100, 100, 100}},
      {ui::ContentMode::Fit, {100, 125, 100, 50}},
      {ui::ContentMode::FillKeepingAspect, {100, 100, 100, 100}},
      {ui::ContentMode::Center, {130, 140, 40, 20}},
      {ui::ContentMode::TopLeft, {100, 100, 40, 20}},
      {ui::ContentMode::BottomRight, {160, 180, 40, 20}},
  };
  for (const auto& c : cases) {
    view->setContentMode(c.mode);
    EXPECT_EQ(ink(picture(), page().bounds()), c.seen) << static_cast<int>(c.mode);
  }
  view->setImage(ui::Image::fromFile((folder / "manca.png").string()));
  EXPECT_TRUE(ink(picture(), page().bounds()).empty());
}

ui::Image striped(int width, int height, const char* format) {
  QImage source(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      source.setPixelColor(x, y, y * 10 / height % 2 == 0 ? Qt::red : Qt::blue);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  source.save(&buffer, format);
  return ui::Image::fromBytes({bytes.begin(), bytes.end()});
}

TEST_F(OnScreen, OfATallImageOnlyWhatIsSeenIsPainted) {
  auto list = add<ui::ScrollView>({0, 0, kWidth, kHeight});
  list->setContentSize({kWidth, 200'000});
  auto view = ui::makeShared<ui::ImageView>();
  view->setFrame({0, 0, kWidth, 200'000});
  view->setImage(striped(30, 2000, "PNG"));
  picture();
  rusage before{}, after{};
  getrusage(RUSAGE_SELF, &before);
  list->content().addSubview(view);
  // A stripe is 20,000 points: the first, the border of the first two, the last.
  for (const auto& [offset, above, below] : {std::tuple{0.0, Qt::red, Qt::red},
                                             {20'000 - 300.0, Qt::red, Qt::blue},
                                             {200'000 - kHeight, Qt::blue, Qt::blue}}) {
    list->setOffset({0, offset});
    const QImage shown = picture();
    EXPECT_EQ(at(shown, 180, 150), QColor(above)) << offset;
    EXPECT_EQ(at(shown, 180, 600), QColor(below)) << offset;
  }
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT((after.ru_maxrss - before.ru_maxrss) / 1024, 80);
}

TEST(ImageStore, OneFileInManyViewsIsDecodedOnce) {
  qt::ImageStore store;
  const ui::Image photo = striped(1200, 900, "JPEG");
  for (int i = 0; i < 50; ++i) {
    // Some were loaded anew, some are larger.
    const auto image = i % 2 ? photo : ui::Image::fromBytes(*photo.bytes());
    const ui::Rect box{0, 0, 40.0 + 5 * i, 40.0 + 5 * i};
    const auto shown = store.pictures({image, box, ui::ContentMode::Fit, 0, 2}, box);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].image.width(), 2 * box.width);
  }
  EXPECT_EQ(store.decoded(), 1);
}

TEST_F(OnScreen, RoundCornersCutWhatIsInside) {
  auto card = box({50, 50, 200, 200}, ui::kWhite);
  card->setBorder({0, ui::kClear, 40});
  card->setClipsToBounds(true);
  auto head = box({0, 0, 200, 60}, kRed, card.get());
  auto photo = add<ui::ImageView>({0, 100, 200, 100}, card.get());
  photo->setImage(striped(40, 40, "PNG"));
  const QImage image = picture("corners");
  const QColor paper = at(image, 20, 20);
  for (const auto& [x, y] : {std::pair{52, 52}, {247, 52}, {52, 247}, {247, 247}})
    EXPECT_EQ(at(image, x, y), paper) << x << "," << y;
  EXPECT_EQ(at(image, 150, 52), QColor(Qt::red));
  EXPECT_EQ(at(image, 52, 108), QColor(Qt::red));
  // Moved out of the corners, it is a plain box again.
  head->setFrame({0, 80, 200, 20});
  EXPECT_EQ(at(picture(), 51, 140), QColor(Qt::red));
}

// What the toolkit draws itself, and what is opaque, is cut as well; what lies under the
// corners is seen as it is now, and stays so while only the inside changes.
TEST_F(OnScreen, RoundCornersCutTextsAndControlsToo) {
  auto under = box({40, 40, 220, 220}, kGreen);
  auto card = box({50, 50, 200, 200}, ui::kWhite);
  card->setBorder({0, ui::kClear, 40});
  card->setClipsToBounds(true);
  const ui::Rect whole{0, 0, 200, 200};
  auto label = ui::makeShared<ui::Label>();
  for (int line = 0; line < 12; ++line) label->setText(label->text() + "WWWWWWWWWWWW ");
  label->setMaxLines(0);
  auto field = ui::makeShared<ui::TextField>();
  auto page = ui::makeShared<ui::TextView>();
  auto list = ui::makeShared<ui::ScrollView>();
  list->setContentSize({200, 1000});
  box({0, 0, 200, 1000}, kRed, &list->content());
  auto web = ui::makeShared<ui::WebView>();
  web->loadHtml("<body style='background:#f00'>");
  auto segments = ui::makeShared<ui::SegmentedControl>();
  segments->setItems({"uno", "due"});
  const std::vector<ui::Ref<ui::View>> inside{label, field, page, list, web, segments};
  for (std::size_t i = 0; i < inside.size(); ++i) {
    const auto& view = inside[i];
    std::optional<QColor> edge;
    view->setBackground(kRed);
    view->setFrame(whole);
    card->addSubview(view);
    for (const auto color : {kGreen, kBlue, kGreen}) {
      under->setBackground(color);
      for (int frame = 0; frame < 2; ++frame) {
        view->setBackground(frame ? kRed : ui::Color(0xFFFE0000));
        const QImage image = picture("round-" + std::to_string(i));
        for (const auto& [x, y] : {std::pair{52, 52}, {247, 52}, {52, 247}, {247, 247}, {58, 60}})
          ASSERT_EQ(at(image, x, y), QColor::fromRgba(color.argb)) << i << ": " << x << "," << y;
        EXPECT_EQ(at(image, 120, 54).green(), 0) << i;
        // The curve's own pixels don't take on more with each frame.
        const QColor curve = image.pixelColor(123, 123);
        if (color != kGreen || frame == 0) continue;
        EXPECT_EQ(curve, edge.value_or(curve)) << i;
        edge = curve;
      }
    }
    view->removeFromParent();
  }
}

// All at once: what has no indicator by the time that the others have theirs gets none.
TEST_F(OnScreen, IndicatorsFlashAlongWhatDoesNotFit) {
  const struct {
    ui::Size content;
    bool down, across;
  } cases[] = {{{100, 2000}, true, false},
               {{100.6, 2000}, true, false},  // a list whose width was rounded
               {{2000, 100}, false, true},
               {{2000, 2000}, true, true},
               {{100, 100}, false, false}};
  for (const auto& c : cases)
    add<ui::ScrollView>({10, 10 + 110.0 * static_cast<double>(&c - cases), 100, 100})
        ->setContentSize(c.content);
  const auto shown = [&](bool flash) {
    const QImage image = picture(flash ? "indicators" : "");
    return std::all_of(std::begin(cases), std::end(cases), [&](const auto& c) {
      const double y = 10 + 110.0 * static_cast<double>(&c - cases);
      return ink(image, {100, y, 10, 90}).empty() != (flash && c.down) &&
             ink(image, {10, y + 90, 90, 10}).empty() != (flash && c.across);
    });
  };
  EXPECT_TRUE(loop.until([&] { return shown(true); }, 3000)) << "none when they came";
  EXPECT_TRUE(loop.until([&] { return shown(false); }, 5000)) << "they stay";
}

TEST_F(OnScreen, ADrawerMarksItsCurrentRowAndFadesWhereMoreFollows) {
  auto menu = ui::makeShared<ui::ViewController>();
  auto drawer =
      ui::makeShared<ui::DrawerController>(ui::makeShared<ui::ViewController>(), menu, nullptr);
  window->setRootViewController(drawer);
  auto list = add<ui::ScrollView>({0, 100, 280, 400}, &menu->view());
  list->setContentSize({280, 1000});
  for (int i = 0; i < 20; ++i)
    addText("riga", {100, i * 50.0, 100, 50}, &list->content())->setCurrent(i == 1);
  box({200, 0, 20, 1000}, kRed, &list->content());
  drawer->openDrawer(ui::DrawerSide::Left, false);
  QImage image = picture("drawer");
  const QColor paper = QColor::fromRgba(ui::style::kDrawer.argb);
  EXPECT_EQ(at(image, 198, 110), paper) << "another row";
  EXPECT_NE(at(image, 198, 160), paper) << "the current one";
  EXPECT_EQ(at(image, 101, 160), QColor::fromRgba(menu->view().tint().argb)) << "and its bar";
  // Down to nothing at the edge, as long as there is something below.
  const auto redness = [&](double y) {
    return at(image, 210, y).red() - at(image, 210, y).green();
  };
  EXPECT_EQ(redness(300), 255);
  EXPECT_TRUE(redness(475) > redness(485) && redness(485) > redness(497));
  EXPECT_LT(redness(499), 30);
  list->reveal(*list->content().children()[10]);
  EXPECT_EQ(list->offset().y, 11 * 50 - 400 + list->fadeHeight()) << "not under the fade";
  list->setOffset({0, 600});
  image = picture("drawer-end");
  EXPECT_EQ(redness(499), 255);
}

TEST_F(OnScreen, ButtonsShowPressAndDisable) {
  auto button = add<ui::Button>({50, 50, 150, 44});
  button->setTitle("Premi");
  button->setTextColor(ui::kBlack);
  button->setBackground(ui::Color(0xFFC0C0C0));
  const QImage calm = picture();
  button->setPressed(true);
  const QImage pressed = picture();
  EXPECT_LT(at(pressed, 55, 55).red(), at(calm, 55, 55).red());
  button->setPressed(false);
  EXPECT_EQ(picture(), calm);
  button->setEnabled(false);
  EXPECT_NE(picture(), calm);
}

TEST_F(OnScreen, NothingIsDrawnWhileNothingChanges) {
  addText("Fermo", {10, 10, 100, 30});
  rest();
  loop.pass(100);
  int frames = 0;
  countFrames(frames);
  loop.pass(200);
  EXPECT_EQ(frames, 0);
  auto spinner = add<ui::ActivityIndicator>({100, 100, 40, 40});
  spinner->setSpinning(true);
  EXPECT_TRUE(loop.until([&] { return frames > 3; }, 5000));
  spinner->setSpinning(false);
  rest();
  loop.pass(100);
  frames = 0;
  loop.pass(200);
  EXPECT_EQ(frames, 0);
}

TEST_F(OnScreen, AnimationsRunToTheirEnd) {
  auto view = box({0, 0, 50, 50}, kRed);
  rest();
  int frames = 0;
  countFrames(frames);
  bool done = false;
  app.animator().frame(*view, {300, 500, 50, 50}, {200}, [&](bool finished) { done = finished; });
  rest();
  EXPECT_TRUE(done);
  EXPECT_GT(frames, 3);
  EXPECT_LT(frames, 40);
  EXPECT_EQ(ink(picture(), page().bounds()), (ui::Rect{300, 500, 50, 50}));
}

TEST_F(OnScreen, LinesBetweenRowsKeepTheirWidth) {
  page().setBackground(kRed);
  auto list = add<ui::ScrollView>({0, 20.3, kWidth, 500});
  list->setContentSize({kWidth, 2000});
  for (int i = 0; i < 20; ++i) box({0, 1 + i * 53.37, kWidth, 52.37}, ui::kWhite, &list->content());
  const QImage image = picture("rows");
  std::vector<int> lines;
  int run = 0;
  for (int y = 80; y < 1000; ++y) {
    if (image.pixelColor(300, y) == QColor(255, 0, 0)) {
      ++run;
    } else if (run > 0) {
      lines.push_back(std::exchange(run, 0));
    }
    EXPECT_TRUE(image.pixelColor(300, y).green() == 255 || run > 0) << "blurred at " << y;
  }
  EXPECT_THAT(lines, testing::AllOf(testing::SizeIs(8), testing::Each(2)));
}
