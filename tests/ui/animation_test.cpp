#include "phone.h"

namespace ui {
namespace {

using Animation = PageTest;
using testing::ElementsAre;

TEST_F(Animation, TheViewIsThereAtOnceWhatIsSeenFollows) {
  auto view = place(page, {0, 0, 100, 100});
  bool finished = false;
  phone.app.animator().frame(*view, {100, 0, 200, 100}, {400, Timing::Linear},
                             [&](bool f) { finished = f; });
  EXPECT_EQ(view->frame(), (Rect{100, 0, 200, 100}));
  EXPECT_EQ(view->presented().frame(), (Rect{0, 0, 100, 100}));
  phone.pump.advance(100);
  EXPECT_EQ(view->presented().frame(), (Rect{25, 0, 125, 100}));
  EXPECT_TRUE(phone.app.animator().isAnimating(*view));
  phone.pump.advance(299);
  EXPECT_FALSE(finished);
  phone.pump.advance(1);
  EXPECT_TRUE(finished);
  EXPECT_FALSE(phone.app.animator().isAnimating() || phone.app.animator().isAnimating(*view));
  EXPECT_EQ(view->presented().frame(), view->frame());
}

TEST_F(Animation, EndsInEachWayWithOneWord) {
  std::vector<std::string> heard;
  const auto hear = [&](std::string who) {
    return [&heard, who](bool finished) { heard.push_back(who + (finished ? " yes" : " no")); };
  };
  auto& animator = phone.app.animator();
  const Timing linear{100, Timing::Linear};

  auto view = place(page, {0, 0, 10, 10});
  animator.alpha(*view, 0, linear, hear("replaced"));
  phone.pump.advance(50);
  animator.alpha(*view, 1, linear, hear("newer"));
  EXPECT_DOUBLE_EQ(view->presented().alpha, 0.5) << "a newer one starts from what is seen";
  phone.pump.advance(100);

  animator.background(*view, kBlack, linear, hear("set directly"));
  view->setBackground(kBlack);
  EXPECT_TRUE(animator.isAnimating(*view)) << "the same value is no change";
  view->setBackground(kWhite);
  EXPECT_EQ(view->presented().background, kWhite);

  animator.center(*view, {50, 50}, {0}, hear("at once"));

  auto mortal = place(page, {0, 0, 10, 10});
  animator.center(*mortal, {50, 50}, linear, hear("died"));
  mortal->removeFromParent();
  mortal = nullptr;
  phone.pump.advance(200);
  EXPECT_THAT(heard,
              ElementsAre("replaced no", "newer yes", "set directly no", "at once yes", "died no"));
}

TEST_F(Animation, CompletionsMayStartAndEndAnything) {
  auto& animator = phone.app.animator();
  auto a = place(page, {0, 0, 10, 10}), b = place(page, {0, 0, 10, 10});
  int again = 0;
  animator.alpha(*a, 0, {50}, [&](bool) {
    b->removeFromParent();
    b = nullptr;
    animator.alpha(*a, 1, {50}, [&](bool f) { again += f; });
  });
  animator.alpha(*b, 0, {50}, [&](bool) { a->setBackground(kBlack); });
  EXPECT_TRUE(phone.pump.settle());
  EXPECT_EQ(again, 1);
  EXPECT_EQ(a->alpha(), 1);
}

TEST_F(Animation, ColoursMixAndCurvesStartAndArrive) {
  EXPECT_EQ(Color(0xFF000000).mixed(Color(0x01FF8000), 0), Color(0xFF000000));
  EXPECT_EQ(Color(0xFF000000).mixed(Color(0x01FF8000), 1), Color(0x01FF8000));
  EXPECT_EQ(Color(0xFF000000).mixed(Color(0xFFFF8000), 0.5), Color(0xFF804000));
  Timing eased{100}, out{100, Timing::EaseOut}, spring{100, Timing::EaseInOut, 0.3},
      stiff{100, Timing::EaseInOut, 1};
  double highest = 0;
  for (const auto& t : {eased, out, spring, stiff}) {
    EXPECT_EQ(t.progress(0), 0);
    EXPECT_EQ(t.progress(1), 1);
    EXPECT_NEAR(t.progress(0.99), 1, 0.02);
  }
  for (double t = 0; t < 1; t += 0.01) {
    highest = std::max(highest, spring.progress(t));
    EXPECT_LE(eased.progress(t), 1);
  }
  EXPECT_GT(highest, 1.2) << "a loose spring swings past its end";
}

}  // namespace
}  // namespace ui
