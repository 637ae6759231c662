#include <thread>

#include "phone.h"

namespace ui {
namespace {

using testing::ElementsAre;

TEST(FixedText, WrapsAtWordsAndBreaksLongOnes) {
  headless::FixedTextEngine engine;
  const Font ten = Font::system(10);  // 5 points a character, lines of 12
  const struct {
    const char* text;
    double width;
    int lines;
    Size size;
  } cases[] = {
      {"", 100, 0, {0, 0}},
      {"abcd", 0, 1, {20, 12}},
      {"ab cd ef", 30, 0, {25, 24}},
      {"ab cd ef", 40, 0, {40, 12}},
      {"ab  cd   ", 0, 0, {30, 12}},
      {"abcdefghij", 20, 0, {20, 36}},
      {"a\n\nb", 100, 0, {5, 36}},
      {"a\n", 100, 0, {5, 24}},
      {"uno due tre quattro", 20, 2, {15, 24}},
      {"è\uF015🍕", 0, 1, {25, 12}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(engine.measure(c.text, ten, c.width, c.lines), c.size) << c.text;
  AttributedText rich("ab cd");
  rich.apply(0, 2, {.font = Font::system(20)});
  EXPECT_EQ(engine.measure(rich, ten, 0, 1), (Size{35, 24}));
  EXPECT_EQ(engine.measure(rich, ten, 25, 0), (Size{20, 36}));
}

TEST(FixedText, ALabelSizedToFitTakesNoMoreLinesThanItHas) {
  Phone phone;
  auto label = makeShared<Label>();
  label->setFont(Font::system(10));
  label->setFrame({10, 20, 50, 0});
  label->setMaxLines(0);
  label->setText("una riga piuttosto lunga");
  label->sizeToFit();
  EXPECT_EQ(label->frame(), (Rect{10, 20, 50, 36}));
  label->setMaxLines(1);
  label->sizeToFit();
  EXPECT_EQ(label->frame(), (Rect{10, 20, 120, 12}));
}

TEST(Pump, MovesTheClockOnlyToWhatIsDue) {
  Phone phone;
  phone.pump.settle();
  const auto start = phone.test.clock().monotonic();
  std::vector<std::string> log;
  auto& queue = phone.test.platform().mainQueue();
  const auto at = [&](const char* what) {
    return
        [&, what] { log.push_back(what + std::to_string(phone.test.clock().monotonic() - start)); };
  };
  queue.postAfter(200, at("b"));
  queue.post([&] { queue.postAfter(50, at("a")); });
  phone.app.hud().toast("x", 100000);
  EXPECT_TRUE(phone.pump.settle());
  EXPECT_THAT(log, ElementsAre("a50", "b200"));
  queue.postAfter(500, at("c"));
  phone.pump.advance(499);
  EXPECT_EQ(log.size(), 2u);
  phone.pump.advance(1);
  EXPECT_EQ(log.back(), "c700");
  queue.postAfter(40000, at("never"));
  EXPECT_FALSE(phone.pump.settle()) << "gives up at its limit";
}

TEST(Pump, WaitsReallyForWorkElsewhere) {
  Phone phone;
  phone.pump.settle();
  std::atomic<bool> busy{true};
  bool arrived = false;
  std::thread worker([&] {
    phone.test.platform().mainQueue().postAndWait([&] { arrived = true; });
    busy = false;
  });
  EXPECT_TRUE(phone.pump.settle([&] { return busy.load(); }));
  EXPECT_TRUE(arrived);
  worker.join();
  EXPECT_FALSE(phone.pump.settle([] { return true; }, 60));
}

}  // namespace
}  // namespace ui
