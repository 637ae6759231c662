// What is drawn in fixed colours can be told from what it is drawn on.
#include <gtest/gtest.h>

#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {
namespace {

TEST(Contrast, IsThatOfTheWebsGuidelines) {
  EXPECT_DOUBLE_EQ(contrast(kBlack, kWhite), 21);
  EXPECT_DOUBLE_EQ(contrast(kWhite, kWhite), 1);
  EXPECT_NEAR(contrast(Color(0xFF767676), kWhite), 4.54, 0.01);
  EXPECT_EQ(readableOn(Color(0xFFFFD600)), kBlack);
  EXPECT_EQ(readableOn(Color(0xFF1B3A6B)), kWhite);
}

TEST(Contrast, ShapesAndTextsStandApart) {
  constexpr double kShape = 3, kText = 4.5;
  const struct {
    const char* what;
    Color front, back;
    double least;
  } cases[] = {
      {"text", style::kText, style::kPage, kText},
      {"secondary text", style::kSecondaryText, style::kPage, kText},
      {"hint of a field", style::kHint, style::kPage, kText},
      {"text on the progress", style::kOnHud, style::kHud, kText},
      {"destructive button", style::kDestructive, style::kCard, kText},
      {"link, and title of a bar", looks().accent, style::kPage, kText},
      {"focus ring", style::kFocusRing, style::kPage, kShape},
      {"focus ring on a chosen row", style::kFocusRing, style::kSelection, kShape},
      {"its line on a bar", kWhite, looks().accent, kShape},
      {"border of a field", style::kFieldBorder, style::kPage, kShape},
      {"switch that is off", style::kSwitchOff, style::kPage, kShape},
      {"its thumb", kWhite, style::kSwitchOff, kShape},
  };
  for (const auto& c : cases) EXPECT_GE(contrast(c.front, c.back), c.least) << c.what;
}

}  // namespace
}  // namespace ui
