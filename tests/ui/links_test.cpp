// Links in a label: found by Tab and by assistive technology, opened by a press.
#include "phone.h"
#include "platform/ui/controls/text_input.h"

namespace ui {
namespace {

AttributedText withLinks(std::initializer_list<std::pair<const char*, const char*>> links) {
  AttributedText text;
  for (const auto& [word, url] : links) {
    text.append("vedi ");
    const auto start = text.length();
    text.append(word);
    text.apply(start, text.length(), {.link = url});
    text.append(" ");
  }
  return text;
}

using LabelLinks = PageTest;

TEST_F(LabelLinks, AreReachedByTabAndOpenedOneByOne) {
  auto plain = placeText(page, {0, 0, 300, 20}, "testo");
  auto label = place<Label>(page, {0, 40, 300, 20});
  label->setAttributedText(
      withLinks({{"qui", "https://a.example/"}, {"là", "https://b.example/"}}));
  EXPECT_FALSE(plain->canFocus());
  EXPECT_EQ(plain->role(), Role::StaticText);
  EXPECT_EQ(label->role(), Role::Link);
  phone.app.key(Key::Tab);
  ASSERT_TRUE(label->isFocused());
  EXPECT_EQ(label->accessibleValue(), "qui");
  phone.app.key(Key::Enter);
  phone.app.key(Key::Right);
  EXPECT_EQ(label->accessibleValue(), "là");
  phone.app.key(Key::Enter);
  EXPECT_THAT(phone.screen.opened,
              testing::ElementsAre("https://a.example/", "https://b.example/"));
  // Without links it is a text again.
  label->setText("niente");
  EXPECT_FALSE(label->canFocus());
  EXPECT_EQ(label->role(), Role::StaticText);
}

TEST_F(LabelLinks, ARunOffTheBaselineMakesItsLineHigher) {
  headless::FixedTextEngine engine;
  const auto height = [&](double up) {
    AttributedText text("a\nb");
    text.apply(2, 3, {.baseline = up});
    return engine.measure(text, Font::system(20), 0, 0).height;
  };
  EXPECT_EQ(height(0), 48);
  EXPECT_EQ(height(7), 55);
  EXPECT_EQ(height(-7), 55);
}

}  // namespace
}  // namespace ui
