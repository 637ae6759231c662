#include "runtime/views/richtext/cs_builder.h"
#include "runtime/views/richtext/rich_string.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "views_fixture.h"

namespace kes {
namespace {

// "3-7 color=FFFF0000 size=12" for each run.
Trace runsOf(const Value& rich) {
  Trace lines;
  const auto string = detail::unwrapped(rich).as<AttributedString>();
  for (const auto& run : string->text.runs()) {
    const auto& a = run.attributes;
    std::string line = std::to_string(run.start) + "-" + std::to_string(run.end);
    char hex[16];
    const auto color = [&](const char* name, const std::optional<ui::Color>& c) {
      if (!c) return;
      std::snprintf(hex, sizeof hex, "%08X", c->argb);
      line += std::string(" ") + name + "=" + hex;
    };
    color("color", a.color);
    color("back", a.background);
    if (a.font) line += " size=" + std::to_string(static_cast<int>(a.font->size()));
    if (a.underline) line += " underline=" + std::to_string(*a.underline);
    if (a.strikethrough) line += " strike=" + std::to_string(*a.strikethrough);
    if (a.alignment) line += " align=" + std::to_string(static_cast<int>(*a.alignment));
    if (a.link) line += " link=" + *a.link;
    if (a.kerning) line += " kern=" + std::to_string(static_cast<int>(*a.kerning));
    if (a.baseline) line += " base=" + std::to_string(static_cast<int>(*a.baseline));
    lines.push_back(line);
  }
  return lines;
}

using RichText = ViewsTest;

TEST_F(RichText, SpansAreAppliedWhenTheOutermostClosesInnerOverOuter) {
  const auto red = KesColors::Red, blue = KesColors::Blue;
  const struct {
    const char* what;
    std::function<void(KesCSBuilder&)> build;
    const char* text;
    Trace runs;
  } cases[] = {
      {"no span", [](auto& b) { b.Append("ciao").PopAll(); }, "ciao", {}},
      {"inner colour wins inside, outer around it",
       [=](auto& b) {
         b.Color(red).Append("aa").Color(blue).Append("bb").Pop().Append("cc").Pop();
       },
       "aabbcc",
       {"0-2 color=FFFF0000", "2-4 color=FF0000FF", "4-6 color=FFFF0000"}},
      {"three deep, closed at once",
       [=](auto& b) {
         b.Color(red).Font(KesFont::CreateNew(9)).Underline().Append("x").PopAll().Append("y");
       },
       "xy",
       {"0-1 color=FFFF0000 size=9 underline=2"}},
      {"a later sibling does not reach back",
       [=](auto& b) { b.Color(red).Append("a").Pop().Color(blue).Append("b").Pop(); },
       "ab",
       {"0-1 color=FFFF0000", "1-2 color=FF0000FF"}},
      {"two siblings inside one span",
       [=](auto& b) {
         b.BackgroundColor(red).Color(blue).Append("a").Pop().Strikethrough().Append("b").Pop();
         b.Append("c").Pop();
       },
       "abc",
       {"0-1 color=FF0000FF back=FFFF0000", "1-2 back=FFFF0000 strike=1", "2-3 back=FFFF0000"}},
      {"an empty span", [=](auto& b) { b.Append("a").Color(red).Pop().Append("b"); }, "ab", {}},
      {"a span left open has no effect",
       [=](auto& b) { b.Color(red).Append("a").Color(blue).Append("b").Pop(); },
       "ab",
       {}},
      {"a pop too many", [=](auto& b) { b.Append("a").Pop().PopAll(); }, "a", {}},
      {"positions count 16-bit units",
       [=](auto& b) { b.Append("\U0001F600è").Color(red).Append("x").Pop(); },
       "\U0001F600èx",
       {"3-4 color=FFFF0000"}},
      {"the rest of the attributes",
       [=](auto& b) {
         b.Alignment("ALIGN_JUSTIFIED").Link("http://a").KerningScale(2).VerticalAlign(3);
         b.Append("z").PopAll();
       },
       "z",
       {"0-1 align=3 link=http://a kern=2 base=-3"}},
  };
  for (const auto& c : cases) {
    KesCSBuilder builder;
    c.build(builder.Initialize());
    EXPECT_EQ(builder.ToString(), Text(c.text)) << c.what;
    EXPECT_EQ(runsOf(builder), c.runs) << c.what;
  }
}

TEST_F(RichText, OnlyAnUnknownAlignmentFails) {
  KesCSBuilder builder;
  EXPECT_EQ(thrownBy([&] { builder.Append("x"); }),
            "Object was not initialized (NSMutableAttributedString)");
  builder.Initialize();
  EXPECT_EQ(thrownBy([&] { builder.Alignment("LEFT"); }), "Invalid alignment: LEFT");
  for (const char* name : {"ALIGN_LEFT", "ALIGN_CENTER", "ALIGN_RIGHT"}) builder.Alignment(name);
  EXPECT_EQ(builder.Append("ab").PopAll().Length(), 2);
  EXPECT_EQ(runsOf(builder), Trace{"0-2 align=2"}) << "the innermost";
}

TEST_F(RichText, ALabelKeepsTheTextAsItWas) {
  auto label = fresh<KesLabelWrapper>();
  KesCSBuilder builder;
  builder.Initialize().Color(KesColors::Red).Append("Uno").PopAll();
  label.setAttributedText(builder);
  builder.Append(" due");
  EXPECT_TRUE(label.Text() == "Uno");
  ASSERT_TRUE(label.native()->attributedText());
  label.setText("piano");
  EXPECT_FALSE(label.native()->attributedText());
}

TEST_F(RichText, ARichStringSetsAttributesByRange) {
  auto string = make<kes_richstring>(Ref<Kes>(), Value("Via Roma"));
  string->_color(KesColors::Red, 4, 8)->_underline(0, 3)->_setfont(KesFont::CreateNew(12), 2, 5);
  string->_addattribute("NSKern", 2, 0, 1)->_alignment("ALIGN_CENTER", 0, 0);
  EXPECT_EQ(runsOf(string->_getattributedstring()),
            (Trace{"0-1 underline=1 kern=2", "1-2 underline=1", "2-3 size=12 underline=1",
                   "3-4 size=12", "4-5 color=FFFF0000 size=12", "5-8 color=FFFF0000"}));
  for (const auto& [start, end] : {std::pair{-1, 2}, {3, 2}, {0, 9}})
    EXPECT_THAT(thrownBy([&] { string->_color(0, start, end); }), HasSubstr("length 8"));
  EXPECT_EQ(thrownBy([&] { string->_addattribute("NSNiente", 1, 0, 1); }),
            "Invalid attribute: NSNiente");
  auto label = fresh<KesLabelWrapper>();
  string->_settolabel(label);
  EXPECT_TRUE(label.Text() == "Via Roma");
}

}  // namespace
}  // namespace kes
