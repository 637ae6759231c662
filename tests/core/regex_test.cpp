#include "runtime/core/language/regex.h"

#include "component_fixture.h"

using namespace kes;

namespace {

using Texts = std::vector<std::string>;

TEST(Regex, MatchesTheWholeText) {
  struct {
    const char *pattern, *text;
    std::int32_t options;
    bool matches;
  } cases[] = {
      {"[^@]+@[^@]+", "a@b", 0, true},
      {"[^@]+", "a@b", 0, false},
      {"a|ab", "ab", 0, true},
      {"caffè.", "caffè😀", 0, true},
      {"CAFFÈ", "caffè", 0, false},
      {"CAFFÈ", "caffè", KesRegex::CASE_INSENSITIVE, true},
      {"a*", "", 0, true},
      {"^b$", "a\nb", KesRegex::MULTILINE, false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(KesRegex::IsMatch2(c.options, c.pattern, c.text), c.matches) << c.pattern;
}

TEST(Regex, MatcherWalksMatchesAndGroups) {
  const auto m = KesRegex::Matcher("(\\d+)(px)?", "😀12px è 7");
  EXPECT_THROW(m->Match(), KesException);
  ASSERT_TRUE(m->Find());
  EXPECT_EQ(m->GroupCount(), 2);
  EXPECT_EQ(m->Match(), "12px");
  EXPECT_EQ(m->Group(1), "12");
  EXPECT_EQ(m->Group(2), "px");
  EXPECT_EQ(m->GetStart(0), 2);  // after the two units of the face
  EXPECT_EQ(m->GetEnd(1), 4);
  ASSERT_TRUE(m->Find());
  EXPECT_EQ(m->Match(), "7");
  EXPECT_EQ(m->Group(2), "");
  EXPECT_EQ(m->GetStart(2), -1);
  EXPECT_THROW(m->Group(3), KesException);
  EXPECT_THROW(m->Group(-1), KesException);
  EXPECT_FALSE(m->Find());
  EXPECT_FALSE(m->Find());
  EXPECT_THROW(m->Group(0), KesException);

  const auto lines = KesRegex::Matcher2(KesRegex::MULTILINE, "^.", "a\nb\nc");
  int n = 0;
  while (lines->Find()) ++n;
  EXPECT_EQ(n, 3);
}

TEST(Regex, ReplaceFillsTheTemplate) {
  struct {
    const char *pattern, *text, *replacement, *result;
  } cases[] = {
      {"(\\w+) (\\w+)", "città bella", "$2 $1", "bella città"},
      {"(a)(b)?", "a", "[$1$2]", "[a]"},
      {"(a)", "a", "$12", "a2"},
      {"(a)", "a", "<$2>", "<>"},
      {"a", "a", "\\$0$", "$0$"},
      {"x*", "ab", "-", "-a-b-"},
      {"q", "abc", "-", "abc"},
      {"abc", "abc", "", ""},
      {"^", "abc", "", "abc"},
      {"😀", "a😀b", "è", "aèb"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(KesRegex::Replace(c.pattern, c.text, c.replacement), c.result)
        << c.pattern << " " << c.replacement;
  EXPECT_EQ(KesRegex::Replace2(KesRegex::CASE_INSENSITIVE, "A", "aA", "b"), "bb");
}

TEST(Regex, SplitKeepsAllPieces) {
  EXPECT_EQ(textsOf(KesRegex::Split(";", "a;;b;")->objectsData()), (Texts{"a", "", "b", ""}));
  EXPECT_EQ(textsOf(KesRegex::Split("\\s*,\\s*", "uno , due,tre")->objectsData()),
            (Texts{"uno", "due", "tre"}));
  EXPECT_EQ(textsOf(KesRegex::Split("x", "")->objectsData()), (Texts{""}));
  EXPECT_EQ(textsOf(KesRegex::Split("(?:)", "aè😀")->objectsData()), (Texts{"a", "è", "😀"}));
  EXPECT_EQ(textsOf(KesRegex::Split2(KesRegex::CASE_INSENSITIVE, "X", "1x2X3")->objectsData()),
            (Texts{"1", "2", "3"}));
}

TEST(Regex, ABadPatternNamesTheFault) {
  for (const auto& [pattern, fault] :
       {std::pair("(a", "MISMATCHED_PAREN"), {"[a", "MISSING_CLOSE_BRACKET"}, {"", "ILLEGAL"}}) {
    const auto thrown = thrownBy([&, &wrong = pattern] { KesRegex::IsMatch(wrong, "a"); });
    EXPECT_THAT(thrown, testing::AllOf(StartsWith("regex|"), testing::HasSubstr(fault)));
  }
}

TEST(Regex, TheCacheIsEmptiedWhenItOverflows) {
  const auto pattern = [](int i) { return Text("p" + std::to_string(i)); };
  for (int i = 0; i < 60; ++i) KesRegex::IsMatch(pattern(i), "x");  // from whatever was there
  std::size_t former = KesRegex::cachedPatterns();
  bool emptied = false;
  for (int i = 60; i < 180; ++i) {
    KesRegex::IsMatch(pattern(i), "x");
    const auto now = KesRegex::cachedPatterns();
    emptied = emptied || now == 1;
    EXPECT_EQ(now, former > 50 ? 1 : former + 1);
    former = now;
    EXPECT_TRUE(KesRegex::IsMatch(pattern(i), pattern(i)));
    EXPECT_EQ(KesRegex::cachedPatterns(), now) << "a known pattern was compiled again";
  }
  EXPECT_TRUE(emptied);
  // The options are part of the key.
  KesRegex::IsMatch("zz", "zz");
  EXPECT_TRUE(KesRegex::IsMatch2(KesRegex::CASE_INSENSITIVE, "zz", "ZZ"));
  EXPECT_FALSE(KesRegex::IsMatch("zz", "ZZ"));
}

// Matching hung for minutes on a pattern whose repetitions can share a text in 2^30 ways.
TEST(Regex, AnEndlessSearchIsGivenUp) {
  const Text pattern = "(a+)+$", text = "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab";
  EXPECT_EQ(thrownBy([&] { KesRegex::IsMatch(pattern, text); }), "regex|U_REGEX_TIME_OUT");
  EXPECT_TRUE(KesRegex::IsMatch(pattern, "aaa")) << "the pattern is of no more use";
}

}  // namespace
