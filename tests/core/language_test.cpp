#include <cmath>
#include <limits>

#include "component_fixture.h"
#include "runtime/core/array.h"
#include "runtime/core/error.h"
#include "runtime/core/list.h"

using namespace kes;

namespace {

template <class F>
std::string resultOf(F action) {
  try {
    return Value(action()).description().str();
  } catch (const KesException& e) {
    return (e.name().empty() ? "" : e.name().str() + ": ") + e.reason().str();
  }
}

KesCommon& c() { return KesCommon::shared(); }

TEST(Conversions, NumbersAsText) {
  struct {
    Value number;
    const char* text;
  } cases[] = {
      {5.0, "5"},
      {-0.5, "-0.5"},
      {0.1, "0.1"},
      {1.0 / 3, "0.3333333333333333"},
      {0.1f, "0.1"},
      {16777217.0, "16777217"},
      {123456789012.0, "123456789012"},
      {1e21, "1e+21"},
      {1.5e-9, "1.5e-09"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {true, "1"},
      {false, "0"},
      {std::int64_t{INT64_MIN}, "-9223372036854775808"},
      {std::uint64_t{UINT64_MAX}, "18446744073709551615"},
      {std::uint8_t{200}, "200"},
      {char16_t{0xFFFF}, "65535"},
  };
  for (const auto& [number, text] : cases) {
    EXPECT_EQ(Kes::NumberToString(number), text);
    EXPECT_EQ(number.description(), text);
  }
  EXPECT_EQ(Kes::ObjectToString(Value()), "null");
  EXPECT_EQ(Kes::BooleanToString(true), "true");
  EXPECT_EQ(Kes::CharToString(0xE8), "è");
}

TEST(Conversions, TextAsNumbers) {
  const auto number = [](const char* t) {
    return resultOf([&] { return Kes::ObjectToNumber(t); });
  };
  struct {
    const char *text, *number;
    std::int64_t whole;
    bool isNumber;
  } cases[] = {
      {"12", "12", 12, true},
      {"-12.5", "-12.5", -12, true},
      {"12abc", "12", 12, false},
      {"1,5", "1", 1, false},
      {",5", "Cannot parse: ,5", 0, false},
      {"", "Cannot parse: ", 0, false},
      {"abc", "Cannot parse: abc", 0, false},
      {"0", "0", 0, true},
      {"0abc", "0", 0, false},
      {".x", "0", 0, false},
      {"-0", "Cannot parse: -0", 0, true},
      {" 0", "Cannot parse:  0", 0, true},
      {" 7", "7", 7, true},
      {"7 ", "7", 7, false},
      {"+5", "5", 5, true},
      {".5", "0.5", 0, true},
      {"5.", "5", 5, true},
      {".", "0", 0, false},
      {"1e3", "1000", 1, true},
      {"1e", "1", 1, false},
      {"2e+", "2", 2, false},
      {"0x10", "0", 0, false},
      {"nan", "Cannot parse: nan", 0, false},
      {"1e999", "inf", 1, true},
      {"-1e999", "-inf", -1, true},
      {"1e-999", "Cannot parse: 1e-999", 1, true},  // a zero that does not begin with one
      {"99999999999999999999", "1e+20", INT64_MAX, true},
      {"-99999999999999999999", "-1e+20", INT64_MIN, true},
      {"9007199254740993", "9007199254740992", 9007199254740993, true},
  };
  for (const auto& [text, expected, whole, isNumber] : cases) {
    EXPECT_EQ(number(text), expected) << text;
    EXPECT_EQ(Kes::ObjectToLongNumber(text), whole) << text;
    EXPECT_EQ(KesCommon::IsNumber(text), isNumber) << text;
  }
  EXPECT_EQ(resultOf([] { return Kes::ObjectToNumber(Value()); }), "Cannot parse: null");
  EXPECT_EQ(Kes::ObjectToNumber(7.5), 7.5);
  EXPECT_EQ(Kes::ObjectToLongNumber(-7.9), -7);
}

TEST(Conversions, BooleansCharactersAndLongs) {
  const auto boolean = [](Value v) { return Kes::ObjectToBoolean(v); };
  EXPECT_TRUE(boolean("true") && boolean(2) && boolean(0.5));
  EXPECT_FALSE(boolean("TRUE") || boolean("True") || boolean("1") || boolean(0) ||
               boolean(Value()));
  EXPECT_EQ(Kes::ObjectToChar("èb"), u'è');
  EXPECT_EQ(Kes::ObjectToChar("😀"), 0xD83D);
  EXPECT_EQ(Kes::ObjectToChar(""), 0);
  EXPECT_EQ(Kes::ObjectToChar(0x10041), u'A');
  EXPECT_TRUE(Kes::IsLong(std::int64_t{1}) && Kes::IsLong(std::uint64_t{1}));
  EXPECT_FALSE(Kes::IsLong(1) || Kes::IsLong(1.0) || Kes::IsLong("1"));
  EXPECT_EQ(KesCommon::Chr(0x20AC), "€");
  EXPECT_EQ(KesCommon::Asc(u'€'), 0x20AC);
  EXPECT_EQ(KesCommon::Chr(0xD83D) + KesCommon::Chr(0xDE00), "😀");
}

TEST(Conversions, SelectFindsTheFirstCaseThatMatches) {
  struct {
    Value value;
    std::vector<Value> cases;
    int index;
  } table[] = {
      {0, {"0", "abc", false, 0}, 2},
      {0, {"0"}, -1},
      {5, {"x", "5", 5}, 1},
      {5, {"5abc"}, 0},
      {2.5, {2, 2.5f}, 1},
      {true, {0, 1}, 1},
      {"5", {5, "5"}, 1},
      {"a", {"A", "b"}, -1},
      {"a", {}, -1},
      {Value(), {Value::null(), Value()}, -1},
      {Value::null(), {0, Value::null()}, 1},
      {KesList::of({1}), {"x", KesList::of({1})}, 1},
  };
  for (const auto& t : table)
    EXPECT_EQ(Kes::switchObjectToInt(t.value, t.cases), t.index) << t.value.description().str();
}

TEST(Numbers, FormatWithDigitsAndGroups) {
  struct {
    double number;
    int minInteger, maxFraction, minFraction;
    bool grouping;
    const char* text;
  } cases[] = {
      {1234567.891, 1, 2, 0, true, "1,234,567.89"},
      {1234567.891, 1, 2, 0, false, "1234567.89"},
      {5, 2, 0, 0, false, "05"},
      {5, 1, 2, 2, true, "5.00"},
      {0.5, 0, 2, 0, true, ".5"},
      {-1234.5, 1, 0, 0, true, "-1,234"},  // half to even
      {1235.5, 1, 0, 0, true, "1,236"},
      {12, 5, 0, 0, true, "00,012"},
      {1e15, 1, 0, 0, true, "1,000,000,000,000,000"},
      {0.1 + 0.2, 1, std::numeric_limits<int>::max(), 0, true, "0.30000000000000004"},
      {1, -3, -3, -3, true, "1"},
      {-std::nan(""), 1, 2, 0, true, "NaN"},
  };
  for (const auto& t : cases)
    EXPECT_EQ(c().NumberFormat2(t.number, t.minInteger, t.maxFraction, t.minFraction, t.grouping),
              t.text);
  EXPECT_EQ(c().NumberFormat(1234.5678, 1, 3), "1,234.568");
}

TEST(Numbers, SmartStringsFormatTheirPieces) {
  const auto former = c().dateText;
  c().dateText = [](std::string_view kind, std::int64_t ticks) {
    return Text(std::string(kind) + std::to_string(ticks));
  };
  struct {
    const char* format;
    Value value;
    const char* text;
  } cases[] = {
      {"", Value(), "null"},
      {"1.2", 1234.567, "1,234.57"},
      {"3.0", "7", "007"},
      {"2", 1.125, "01.125"},
      {"0.1", 0.25, ".2"},
      {"1.2", "abc", "NaN"},
      {"1.2", Value(), "NaN"},
      {"abc", 0.5, ".5"},
      {"date", 86400000.0, "date86400000"},
      {"datetime", "12", "date12 time12"},
      {"xml", "<a href=\"x\">d'&amp;</a>", "&lt;a href=&qout;x&qout;&gt;d&#39;&amp;amp;&lt;/a&gt;"},
  };
  for (const auto& t : cases) EXPECT_EQ(c().SmartStringFormatter(t.format, t.value), t.text);
  c().dateText = [](std::string_view, std::int64_t) -> Text { throw KesException("no format"); };
  EXPECT_EQ(c().SmartStringFormatter("time", 0), "NaN");
  c().dateText = former;
}

TEST(Numbers, MathematicsInDegreesAndRounding) {
  EXPECT_NEAR(KesCommon::SinD(30), 0.5, 1e-12);
  EXPECT_NEAR(KesCommon::CosD(60), 0.5, 1e-12);
  EXPECT_NEAR(KesCommon::TanD(45), 1, 1e-12);
  EXPECT_NEAR(KesCommon::ASinD(0.5), 30, 1e-12);
  EXPECT_NEAR(KesCommon::ACosD(0.5), 60, 1e-12);
  EXPECT_NEAR(KesCommon::ATanD(1), 45, 1e-12);
  EXPECT_NEAR(KesCommon::ATan2D(-1, -1), -135, 1e-12);
  EXPECT_NEAR(KesCommon::Logarithm(8, 2), 3, 1e-12);
  EXPECT_EQ(KesCommon::Round(2.5), 3);
  EXPECT_EQ(KesCommon::Round(-2.5), -3);
  EXPECT_EQ(KesCommon::Round(1e300), INT64_MAX);
}

TEST(Numbers, RandomOnesStayInRangeAndReachAll) {
  std::vector<int> seen(6);
  for (int i = 0; i < 6000; ++i) {
    const int r = KesCommon::Rnd(-2, 4);
    ASSERT_TRUE(r >= -2 && r < 4) << r;
    ++seen[static_cast<unsigned>(r + 2)];
  }
  // About 1000 each; ten times the standard deviation off would be no chance.
  for (const int n : seen) EXPECT_NEAR(n, 1000, 290);
  EXPECT_EQ(KesCommon::Rnd(5, 6), 5);
  EXPECT_EQ(KesCommon::Rnd(5, 5), 5);
  const auto any = KesCommon::Rnd(INT32_MIN, INT32_MAX);
  EXPECT_LT(any, INT32_MAX);
}

TEST(Charsets, DecodeAndEncodeByRegisteredName) {
  struct {
    const char *charset, *text;
    std::vector<std::uint8_t> bytes;
  } cases[] = {
      {"UTF8", "è😀", {0xC3, 0xA8, 0xF0, 0x9F, 0x98, 0x80}},
      {"utf-8", "è", {0xC3, 0xA8}},
      {"ISO-8859-1", "è", {0xE8}},
      {"latin1", "è", {0xE8}},
      {"windows-1252", "€", {0x80}},
      {"Shift_JIS", "日", {0x93, 0xFA}},
      {"UTF-16BE", "a😀", {0, 'a', 0xD8, 0x3D, 0xDE, 0x00}},
      {"US-ASCII", "", {}},
  };
  for (const auto& t : cases) {
    EXPECT_EQ(KesCommon::GetBytes(t.text, t.charset), t.bytes) << t.charset;
    EXPECT_EQ(KesCommon::BytesToString(t.bytes, 0, static_cast<int>(t.bytes.size()), t.charset),
              t.text);
  }
  for (const char* name : {"nessuno", "", "utf 88"})
    EXPECT_EQ(resultOf([&] { return KesCommon::getEncoding(name), 0; }),
              std::string("Invalid CharSet ") + name);
  EXPECT_EQ(KesCommon::GetBytes("è", "US-ASCII"), (std::vector<std::uint8_t>{'?'}));
  EXPECT_EQ(KesCommon::GetBytes(Text::fromUnit(0xD800), "UTF8"),
            (std::vector<std::uint8_t>{0xEF, 0xBF, 0xBD}));
}

TEST(Charsets, UndecodableBytesFail) {
  const auto decode = [](std::vector<std::uint8_t> bytes, int offset, int length,
                         const char* charset) {
    return resultOf([&] { return KesCommon::BytesToString(bytes, offset, length, charset); });
  };
  const std::string failure = "Error decoding data as string.";
  EXPECT_EQ(decode({0xC3, 0x28}, 0, 2, "UTF8"), failure);
  EXPECT_EQ(decode({0xC3, 0xA8}, 0, 1, "UTF8"), failure);
  EXPECT_EQ(decode({0xE8}, 0, 1, "US-ASCII"), failure);
  EXPECT_EQ(decode({0x93}, 0, 1, "Shift_JIS"), failure);
  EXPECT_EQ(decode({0xD8, 0x3D}, 0, 2, "UTF-16BE"), failure);
  EXPECT_EQ(decode({'a', 'b', 'c'}, 1, 1, "UTF8"), "b");
  for (const auto& [offset, length] : {std::pair(-1, 1), {0, 4}, {3, 1}, {1, INT32_MAX}, {0, -1}})
    EXPECT_TRUE(decode({'a', 'b', 'c'}, offset, length, "UTF8").starts_with("NSRangeException"))
        << offset << " " << length;
}

class LanguageTest : public ComponentTest {};

TEST_F(LanguageTest, LogIsCutAfterFourThousandCharacters) {
  const std::string full(3999, 'x');
  KesCommon::Log(full + "è");
  KesCommon::Log(full + "èz");
  KesCommon::Log(Value());
  KesCommon::Log(full + "😀z");
  KesCommon::Log(Text("😀").SubString(1) + Text("a"));
  EXPECT_EQ(phone.lines(), (Trace{full + "è", full + "è (message truncated)...", "null",
                                  full + "\uFFFD (message truncated)...", "\uFFFDa"}))
      << "each line is UTF-8";
  phone.clearLog();
  Trace received;
  Kes::shared().logger = [&](const Text& line, const Text& prefix) {
    received.push_back(prefix.str() + "|" + line.str());
  };
  KesCommon::Log(1);
  KesCommon::LogInfo("b");
  KesCommon::LogError("c");
  KesCommon::LogColor("d", KesColors::Red);
  Kes::shared().logger = nullptr;
  EXPECT_EQ(received, (Trace{"|1", "i|b", "e|c", "-65536|d"}));
  EXPECT_TRUE(phone.lines().empty());
}

// A record with a field of each kind.
class Card : public KesClass {
 public:
  void _initialize(Value peer) {
    initializeClassModule();
    _peer = std::move(peer);
  }
  struct Pair {
    float x, y;
  };
  static void describe(ClassBuilder<Card>& b) {
    b.name("kes_test_card");
    b.field<&Card::_name>("name");
    b.field<&Card::_open>("open");
    b.field<&Card::_price>("price");
    b.field<&Card::_peer>("peer");
    b.field<&Card::_place>("place");
  }
  Text _name = "Rossi";
  bool _open = true;
  double _price = 2.5;
  Value _peer;
  Pair _place{1, 2};
};

class Empty : public KesClass {
 public:
  static void describe(ClassBuilder<Empty>& b) { b.name("kes_test_empty"); }
};

TEST_F(LanguageTest, AnInstancePrintsItsFields) {
  ClassRegistry::instance().addAll<Card, Empty>();
  const auto inner = make<Card>(Value());
  EXPECT_EQ(inner->description(),
            "[name=Rossi, open=1, price=2.5, peer=null, place=Unknown type: {]");
  EXPECT_EQ(make<Empty>()->description(), "[]");
  const auto outer = make<Card>(inner);
  EXPECT_EQ(outer->description(), "[name=Rossi, open=1, price=2.5, peer=" +
                                      inner->description().str() + ", place=Unknown type: {]");
  inner->_peer = outer;  // each in the other
  EXPECT_TRUE(outer->description().Contains("peer=…"));
  inner->_peer = Value();
}

TEST_F(LanguageTest, SmallServices) {
  EXPECT_EQ(KesColors::ARGB(128, 1, 2, 3), static_cast<std::int32_t>(0x80010203));
  EXPECT_EQ(KesColors::RGB(255, 0, 0), KesColors::Red);
  EXPECT_EQ(formatText("%@ e %@, %d", {"%@", "b"}), "%@ e b, %d");
  EXPECT_EQ(formatText("%@ %@", {"a"}), "a %@");
  EXPECT_TRUE(KesCommon::IsDevTool("KES"));
  EXPECT_FALSE(KesCommon::IsDevTool("kes2"));
  const KesException fault("guasto");
  Kes::SetException(fault);
  EXPECT_TRUE(c().LastException().IsInitialized());
  EXPECT_EQ(c().LastException().Message(), "guasto");
  const auto error = Kes::shared().lastError().as<KesError>();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain(), "caught_exception");
  EXPECT_EQ(error->code(), 0);
}

}  // namespace
