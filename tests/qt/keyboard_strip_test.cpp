// The simulated keyboard: comes and goes with the focus, types, keeps touches to itself.
#include "desk.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/overlays/dialog.h"

class Strip : public Desk {
 protected:
  static constexpr double kHeight = 216;
  Strip() : Desk(kHeight) {}
};

TEST_F(Strip, ComesWithAFieldAndGoesWithIt) {
  std::vector<double> heights;
  const auto observer =
      app.focus().addKeyboardObserver([&](bool, double height) { heights.push_back(height); });
  auto field = add<ui::TextField>({20, 20, 300, 40});
  int taps = 0;
  add<ui::View>({0, kHeight, kWidth, kHeight * 2})->setOnTap([&](ui::View&) { ++taps; });
  rest();
  const ui::Point low{kWidth / 2, kHeight * 2.5};
  EXPECT_EQ(at(picture(), 2, kHeight * 2.5), QColor(Qt::white));
  tap({100, 40});
  EXPECT_EQ(heights, (std::vector<double>{kHeight}));
  EXPECT_NE(at(picture("keyboard"), 2, kHeight * 2.5), QColor(Qt::white));
  tap({20, kHeight * 2 + 45});  // the first key
  rest();
  EXPECT_EQ(field->text(), "q");
  tap(low);
  EXPECT_EQ(taps, 0) << "a touch went through the keyboard";
  app.focus().set(nullptr);
  rest();
  EXPECT_EQ(heights, (std::vector<double>{kHeight, 0}));
  tap({kWidth / 2, kHeight * 2.5});
  EXPECT_EQ(taps, 1);
  app.focus().removeKeyboardObserver(observer);
}
