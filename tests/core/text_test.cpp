#include <gtest/gtest.h>

#include <thread>

#include "runtime/core/exception.h"
#include "runtime/core/language/string_builder.h"
#include "runtime/core/text.h"
#include "runtime/core/value.h"

using namespace kes;

namespace {

const Text kSmile("😀");  // one character, two units
const Text kHigh = Text::fromUnit(0xD83D), kLow = Text::fromUnit(0xDE00);
const Text kMixed("aé😀z€😀");  // units: a 0, é 1, 😀 2-3, z 4, € 5, 😀 6-7

std::u16string unitsOf(const Text& t) { return t.utf16(); }

TEST(Text, CountsAndFindsIn16BitUnits) {
  EXPECT_EQ(kMixed.Length(), 8);
  EXPECT_EQ(Text("").Length(), 0);
  struct {
    const char* needle;
    int start, forward, backward;
  } cases[] = {
      {"😀", 0, 2, -1}, {"😀", 2, 2, 2},   {"😀", 3, 6, 2}, {"😀", 7, -1, 6},  {"z", 0, 4, -1},
      {"z", 8, -1, 4}, {"€😀", 8, -1, 5}, {"é", 1, 1, 1}, {"q", 0, -1, -1}, {"", 3, -1, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.needle) + " from " + std::to_string(c.start));
    EXPECT_EQ(kMixed.IndexOf2(c.needle, c.start), c.forward);
    EXPECT_EQ(kMixed.LastIndexOf2(c.needle, c.start), c.backward);
  }
  EXPECT_EQ(Text("").IndexOf("a"), -1);
  EXPECT_EQ(Text("").IndexOf2("a", 5), -1);
  EXPECT_EQ(Text("abcabc").LastIndexOf("bc"), 4);
  EXPECT_TRUE(kMixed.Contains("z€"));
  EXPECT_FALSE(kMixed.Contains("zz"));
}

TEST(Text, HalvesOfACharacterAreFoundAndRejoin) {
  EXPECT_EQ(kMixed.IndexOf(kLow), 3);
  EXPECT_EQ(kMixed.LastIndexOf(kHigh), 6);
  EXPECT_EQ(kMixed.SubString2(2, 3), kHigh);
  EXPECT_EQ(kMixed.SubString2(3, 5), kLow + Text("z"));
  EXPECT_EQ(kHigh + kLow, kSmile);
  EXPECT_EQ((Text("0123456789abcdef") + kHigh) + (kLow + Text("0123456789abcdef")),
            "0123456789abcdef😀0123456789abcdef");
  EXPECT_EQ((kLow + kHigh).Length(), 2);
  EXPECT_EQ((kHigh + Text("-") + kLow).Replace("-", ""), kSmile);
  EXPECT_EQ(kSmile.Replace(kHigh, kHigh + Text("-")), kHigh + Text("-") + kLow);
  EXPECT_EQ(unitsOf(kMixed.SubString(3)), u"\xDE00z€😀");
  for (int i = 0; i < kMixed.Length(); ++i)
    EXPECT_EQ(kMixed.SubString2(0, i) + kMixed.SubString(i), kMixed) << i;
}

// Symptom: cutting a long text with accents into its lines took seconds, each position being
// walked to from the beginning.
TEST(Text, PositionsInLongTextsAreThoseOfTheirUnits) {
  std::uint32_t seed = 7;
  const char* const pieces[] = {"a", "è", "€", "😀", " Via Garibaldi "};
  for (const std::size_t bytes : {250, 256, 300, 5000}) {
    std::string made;
    // Pairs that begin one unit before a multiple of any stride, and after it.
    for (int i = 0; i < 40; ++i) made += std::string(i % 3, 'x') + "😀";
    while (made.size() < bytes) made += pieces[(seed = seed * 1103515245 + 12345) >> 16 & 3];
    const Text text(made + pieces[4]);
    const auto units = text.utf16();
    const auto length = text.Length();
    ASSERT_EQ(length, static_cast<std::int32_t>(units.size()));
    std::thread other([&] { EXPECT_EQ(text.CharAt(length - 1), units.back()); });
    for (int i = 0; i < length; ++i) {
      const auto at = static_cast<std::size_t>(i);
      ASSERT_EQ(text.CharAt(i), units[at]) << i << " of " << bytes;
      ASSERT_EQ(unitsOf(text.SubString2(i / 2, i)), units.substr(at / 2, at - at / 2)) << i;
      for (const char* needle : {"è", "x😀"}) {
        const auto wanted = unitsOf(needle);
        ASSERT_EQ(text.IndexOf2(needle, i), static_cast<int>(units.find(wanted, at))) << i;
        ASSERT_EQ(text.LastIndexOf2(needle, i), static_cast<int>(units.rfind(wanted, at))) << i;
      }
    }
    other.join();
    EXPECT_EQ(text.SubString(length), "");
  }
}

TEST(Text, BeginningsAndEndsAreJudgedByUnits) {
  const Text text = kSmile + Text("z") + kSmile;
  for (const auto& [begin, does] : {std::pair<Text, bool>{kHigh, true},
                                    {kSmile, true},
                                    {kSmile + Text("z"), true},
                                    {kLow, false},
                                    {"z", false}})
    EXPECT_EQ(text.StartsWith(begin), does) << begin.view();
  for (const auto& [end, does] : {std::pair<Text, bool>{kLow, true},
                                  {kSmile, true},
                                  {Text("z") + kSmile, true},
                                  {kHigh, false},
                                  {"z", false}})
    EXPECT_EQ(text.EndsWith(end), does) << end.view();
}

TEST(Text, PositionsOutsideFail) {
  const Text t("abc");
  EXPECT_EQ(t.SubString(3), "");
  EXPECT_EQ(t.IndexOf2("a", 3), -1);
  EXPECT_THROW(t.SubString(4), KesException);
  EXPECT_THROW(t.SubString2(-1, 2), KesException);
  EXPECT_THROW(t.SubString2(2, 1), KesException);
  EXPECT_THROW(t.CharAt(3), KesException);
  EXPECT_THROW(t.CharAt(-1), KesException);
  EXPECT_THROW(t.IndexOf2("a", 4), KesException);
  EXPECT_THROW(t.LastIndexOf2("a", -1), KesException);
  EXPECT_THROW(kMixed.SubString(9), KesException);
}

TEST(Text, ComparesBy16BitUnits) {
  // In the order of units, where a character outside the basic plane comes before the
  // last ones inside it.
  const Text ordered[] = {"",   "A",      "a",     "aa",   "b",
                          "è",  "\uD7FF", kHigh,   kSmile, kSmile + Text("a"),
                          kLow, "\uE000", "\uFFFD"};
  for (std::size_t i = 0; i < std::size(ordered); ++i)
    for (std::size_t j = 0; j < std::size(ordered); ++j)
      EXPECT_EQ(ordered[i].CompareTo(ordered[j]), i < j ? -1 : i > j ? 1 : 0) << i << " " << j;
  EXPECT_EQ(Text("aé").CompareTo("aê"), -1);
}

TEST(Text, CaseFollowsTheFixedLanguage) {
  EXPECT_EQ(Text("IÌ STRASSE Éà").ToLowerCase(), "iì strasse éà");
  EXPECT_EQ(Text("iì straße").ToUpperCase(), "IÌ STRASSE");
  EXPECT_EQ((kHigh + Text("È")).ToLowerCase(), kHigh + Text("è"));
  EXPECT_TRUE(Text("Straße È").EqualsIgnoreCase("STRASSE è"));
  EXPECT_TRUE(Text("abc").EqualsIgnoreCase("ABC"));
  EXPECT_FALSE(Text("abc").EqualsIgnoreCase("abcd"));
}

TEST(Text, TrimTakesWhiteSpaceOfAllKinds) {
  EXPECT_EQ(Text(" \t\r\n\u0085\u00A0\u2003\u2028\u3000 a b \u2029\n").Trim(), "a b");
  EXPECT_EQ(Text("\n \u00A0").Trim(), "");
  EXPECT_EQ(Text("é😀").Trim(), "é😀");
  EXPECT_EQ((Text(" ") + kLow).Trim(), kLow);
}

TEST(Text, ReplacesAllOccurrences) {
  EXPECT_EQ(Text("aaaa").Replace("aa", "b"), "bb");
  EXPECT_EQ(Text("a.b.c").Replace(".", ""), "abc");
  EXPECT_EQ(Text("città").Replace("à", "à!"), "città!");
  EXPECT_EQ(Text("abc").Replace("", "x"), "abc");
  EXPECT_EQ(Text("abc").Replace("abc", ""), "");
}

TEST(Text, OnlyWellFormedBytesBecomeText) {
  EXPECT_EQ(Text::fromUtf8("è 😀")->Length(), 4);
  for (const std::string_view bad :
       {"\x80", "a\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xFF"})
    EXPECT_FALSE(Text::fromUtf8(bad)) << bad.size();
  // Bytes that came in unchecked give some text, never a read outside of it.
  for (const std::string_view bad :
       {"\xF0", "abc\xE2\x82", "\x80\x80", "0123456789abcdef\xF0\x9F"}) {
    const Text t(bad);
    EXPECT_EQ(t.SubString(0).view(), bad);
    EXPECT_LE(t.utf16().size(), bad.size());
    t.Trim();
    t.ToUpperCase();
    if (t.Length() > 0) t.CharAt(t.Length() - 1);
  }
}

TEST(Text, TheSixteenBytesHoldShortTextsAndShareLongOnes) {
  for (std::size_t n : {0u, 1u, 13u, 14u, 15u, 16u, 1000u}) {
    const std::string bytes(n, 'x');
    Text t(bytes);
    const Text copy = t;
    const Value v = t;
    t += "y";
    EXPECT_EQ(copy, bytes) << n;
    EXPECT_EQ(v.textView(), bytes) << n;
    EXPECT_EQ(t, bytes + "y") << n;
    EXPECT_EQ(copy.view().data() == copy.SubString(0).view().data(), n > 14) << n;
  }
}

TEST(StringBuilder, EditsOneTextThatCopiesShare) {
  KesStringBuilder b;
  EXPECT_THROW(b.Append("x"), KesException);
  b.Initialize().Append("città").Append(" di ").Append("Varlo");
  KesStringBuilder other = b;
  other.Insert(5, "😀").Remove(7, 10);
  EXPECT_EQ(b.ToString(), "città😀 Varlo");
  EXPECT_EQ(b.Length(), 13);
  EXPECT_EQ(b.description(), b.ToString());
  b.Remove(5, 6);  // leaves a half
  EXPECT_EQ(b.Length(), 12);
  b.Insert(5, kHigh);
  EXPECT_EQ(b.ToString(), "città😀 Varlo");
  EXPECT_THROW(b.Remove(3, 14), KesException);
  EXPECT_THROW(b.Remove(4, 3), KesException);
  EXPECT_THROW(b.Insert(-1, "x"), KesException);
  EXPECT_EQ(b.ToString(), "città😀 Varlo");
  b.Initialize().Append(kHigh).Append(kLow);
  EXPECT_EQ(b.ToString(), kSmile);
  EXPECT_EQ(other.Length(), 13);
}

}  // namespace
