#include "platform/ui/values/rich_text.h"

#include <gtest/gtest.h>

#include "platform/ui/controls/web_view.h"

namespace ui {
namespace {

// "0-3:r 3-5:rf" — one entry a run: its range, then r/g/b for colours and f for a font.
std::string describe(const AttributedText& text) {
  std::string out;
  for (const auto& run : text.runs()) {
    if (!out.empty()) out += ' ';
    out += std::to_string(run.start) + "-" + std::to_string(run.end) + ":";
    if (run.attributes.color)
      out += run.attributes.color->argb == 1 ? 'r' : run.attributes.color->argb == 2 ? 'g' : 'b';
    if (run.attributes.font) out += 'f';
  }
  return out;
}

TEST(RichText, LaterAttributesOverrideEarlierOnesInTheirRangeOnly) {
  struct Step {
    std::uint32_t start, end;
    char what;
  };
  const struct {
    const char* says;
    std::vector<Step> steps;
    const char* runs;
  } cases[] = {
      {"inner wins over outer", {{0, 9, 'r'}, {3, 5, 'g'}}, "0-3:r 3-5:g 5-9:r"},
      {"other attributes add up", {{0, 6, 'r'}, {4, 8, 'f'}}, "0-4:r 4-6:rf 6-8:f"},
      {"gaps between runs are filled",
       {{1, 2, 'r'}, {5, 6, 'r'}, {0, 9, 'f'}},
       "0-1:f 1-2:rf 2-5:f 5-6:rf 6-9:f"},
      {"equal neighbours are one run", {{0, 2, 'r'}, {2, 4, 'r'}}, "0-4:r"},
      {"before what is there", {{6, 8, 'r'}, {1, 3, 'g'}}, "1-3:g 6-8:r"},
      {"over several runs", {{0, 2, 'r'}, {3, 5, 'g'}, {1, 4, 'b'}}, "0-1:r 1-4:b 4-5:g"},
      {"an empty range does nothing", {{3, 3, 'r'}}, ""},
      {"clipped to the text", {{7, 99, 'r'}, {20, 30, 'g'}}, "7-9:r"},
  };
  for (const auto& c : cases) {
    AttributedText text("123456789");
    for (const auto& s : c.steps) {
      if (s.what == 'f')
        text.apply(s.start, s.end, {.font = Font::bold(12)});
      else
        text.apply(s.start, s.end, {.color = Color(s.what == 'r' ? 1 : s.what == 'g' ? 2 : 3)});
    }
    EXPECT_EQ(describe(text), c.runs) << c.says;
  }
}

TEST(RichText, PositionsCountSixteenBitUnits) {
  AttributedText text("è🍕 ok");
  EXPECT_EQ(text.length(), 6u);
  text.apply(0, 3, {.color = Color(1)});
  AttributedText more("dopo");
  more.apply(0, 4, {.color = Color(2)});
  text.append(more);
  EXPECT_EQ(describe(text), "0-3:r 6-10:g");
  EXPECT_EQ(utf8Offset(text.text(), 3), std::string("è🍕").size());
  EXPECT_EQ(utf8Offset(text.text(), 2), std::string("è").size()) << "inside a pair";
  EXPECT_EQ(utf8Offset(text.text(), 99), text.text().size());
}

TEST(RichText, IconsAreNotReadAloud) {
  EXPECT_EQ(spokenText("\uF015 Home"), "Home");
  EXPECT_EQ(spokenText("  Città \uE878\n"), "Città");
  EXPECT_EQ(spokenText("\uF015"), "");
  EXPECT_EQ(spokenText("🍕 Pizza"), "🍕 Pizza");
  EXPECT_EQ(spokenText("caff\xC3"), "caff\xC3") << "a broken last character stays inside the text";
}

TEST(HtmlText, ReadsAsAPersonWould) {
  const struct {
    const char *html, *text;
  } cases[] = {
      {"<p>Uno</p>\n  <p>due <b>tre</b></p>", "Uno\ndue tre"},
      {"<html><head><title>T</title><style>p{}</style></head><body>x</body></html>", "x"},
      {"a<script>if (a < b) document.write('</p>')</script>b", "ab"},
      {"Citt&agrave; &amp; &#232; &#x20AC; &boh; &", "Città & è € &boh; &"},
      {"a<br>b<br/>c", "a\nb\nc"},
      {"<!-- no <b>--> s&igrave;", "sì"},
      {"1 < 2 <a title='x>y'>link</a>", "1 < 2 link"},
      {"<p", ""},
      {"<script>mai chiuso", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(htmlText(c.html), c.text) << c.html;
}

}  // namespace
}  // namespace ui
