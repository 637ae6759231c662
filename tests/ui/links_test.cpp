// Links: in a label found by Tab and by assistive technology, opened by a press; what of them
// leaves the application.
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

TEST(Links, LeaveTheApplicationCleanOrNotAtAll) {
  const struct {
    const char* given;
    const char* opened;  // empty: refused
  } cases[] = {
      {"https://www.example.it/a?b=c#d", "https://www.example.it/a?b=c#d"},
      {"  HTTP://x \n", "HTTP://x"},
      {"http://x/a b\"<c>", "http://x/a%20b%22%3Cc%3E"},
      {"http://x/citt\u00E0", "http://x/citt%C3%A0"},
      {"http://x/\r\nSet: 1", ""},
      {"http:///etc/passwd", ""},
      {"https:x", ""},
      {"//x/y", ""},
      {"tel:0123", "tel:0123"},
      {"tel:+39 0123/456-789 (1)", "tel:+3901234567891"},
      {"TEL:%2B39%200123", "tel:+390123"},
      {"tel:0123;ext=5", "tel:0123"},
      {"tel:0123 int. 45", "tel:0123"},
      {"tel:*%2331%23", ""},
      {"tel:", ""},
      {"tel:chiamare", ""},
      {"mailto:ufficio@comune.it", "mailto:ufficio@comune.it"},
      {"mailto:ufficio%40comune.it?subject=Buon%20giorno&body=x&attach=/etc/passwd",
       "mailto:ufficio@comune.it?subject=Buon%20giorno"},
      {"mailto:a@b.it?cc=c@d.it&Subject=%0D%0ABcc:e@f.it",
       "mailto:a@b.it?subject=%20%20Bcc%3Ae%40f.it"},
      {"mailto:a@b.it,c@d.it", "mailto:a@b.it"},
      {"mailto:?subject=x", ""},
      {"mailto:nessuno", ""},
      {"file:///etc/passwd", ""},
      {"javascript:alert(1)", ""},
      {"data:text/html,x", ""},
      {"blob:http://x/1", ""},
      {"about:blank", ""},
      {"smb://server/share", ""},
      {"intent://x", ""},
      {"senza schema", ""},
      {"", ""},
  };
  Phone phone;
  std::size_t refused = 0;
  for (const auto& c : cases) {
    phone.screen.opened.clear();
    const bool opens = phone.app.openUrl(c.given);
    EXPECT_EQ(opens, *c.opened != 0) << c.given;
    EXPECT_EQ(opens ? phone.screen.opened.at(0) : "", c.opened) << c.given;
    refused += *c.opened ? 0 : 1;
  }
  EXPECT_EQ(phone.test.lines().size(), refused) << "each refusal is told";
}

}  // namespace
}  // namespace ui
