#include <charconv>
#include <cmath>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "data_fixture.h"
#include "runtime/core/array.h"
#include "runtime/core/language/common.h"
#include "runtime/core/language/string_builder.h"
#include "runtime/data/json/json_generator.h"
#include "runtime/data/json/json_parser.h"
#include "runtime/data/json/json_reader.h"

using kes::ArrayStore;
using kes::Dictionary;
using kes::KesJSONGenerator;
using kes::KesJSONParser;
using kes::NumberType;

namespace {

Value parsed(std::string_view json) {
  KesJSONParser parser;
  parser.Initialize(Text(json));
  return parser.NextObject();
}
KesMap parsedMap(std::string_view json) { return KesMap::fromBoxed(parsed(json)); }

// From memory that ends where the text ends, so that a step beyond it is seen.
Value readExactly(const std::string& json) {
  const std::unique_ptr<char[]> exact(new char[json.size()]);
  std::memcpy(exact.get(), json.data(), json.size());
  return kes::JsonReader({exact.get(), json.size()}).read();
}

Text generated(const Value& root) {
  KesJSONGenerator g;
  if (root.as<KesMap>())
    g.Initialize(KesMap::fromBoxed(root));
  else
    g.Initialize2(KesList::fromBoxed(root));
  return g.ToString();
}

class JsonTest : public DataTest {};

// A document with one of everything.
constexpr std::string_view kSample =
    R"({"nome":"Città \u00e8 \ud83d\ude00\n","telefono":"0342 555","lungo nome di un membro":[],)"
    R"("n":[0,-1,2.5,1e3,-0.25E-2,9223372036854775807],"sì":true,"no":false,"nulla":null,)"
    R"("dentro":{"a":{},"b":[[1],{"c":"un testo di più di sedici byte"}]}})";

TEST_F(JsonTest, DocumentsBecomeMapsAndArrays) {
  const KesMap map = parsedMap(kSample);
  EXPECT_TRUE(map.IsReadOnly());
  EXPECT_EQ(map.Size(), 8);
  EXPECT_EQ(map.Get("nome").asText(), "Città è 😀\n");
  EXPECT_EQ(map.Get("telefono").asText(), "0342 555");
  const Value list = map.Get("lungo nome di un membro");
  ASSERT_TRUE(list.as<ArrayStore>());
  EXPECT_FALSE(list.as<ArrayStore>()->isImmutable());
  EXPECT_EQ(KesList::fromBoxed(list).Size(), 0);

  EXPECT_TRUE(map.ContainsKey("nulla"));
  EXPECT_TRUE(map.Get("nulla").isNull());
  EXPECT_FALSE(map.Get("nulla").isNil());
  EXPECT_TRUE(map.Get("assente").isNil());
  EXPECT_EQ(map.Get("no").numberType(), NumberType::Bool);
  EXPECT_TRUE(map.Get("sì").asBool());

  const auto inner = KesMap::fromBoxed(map.Get("dentro"));
  EXPECT_EQ(KesMap::fromBoxed(inner.Get("a")).Size(), 0);
  const auto items = KesList::fromBoxed(inner.Get("b"));
  EXPECT_TRUE(items.Get(0).as<ArrayStore>());
  ASSERT_TRUE(items.Get(1).as<KesMap>());
  EXPECT_EQ(KesMap::fromBoxed(items.Get(1)).Get("c").asText(), "un testo di più di sedici byte");
}

TEST_F(JsonTest, EachCallReadsTheTextAnew) {
  KesJSONParser parser;
  parser.Initialize(R"({"a":[1,2]})");
  const KesMap first = parser.NextObject();
  const KesMap second = parser.NextObject();
  EXPECT_EQ(Value(first), Value(second));
  KesList list = KesList::fromBoxed(first.Get("a"));
  list.Add(3);
  EXPECT_EQ(KesList::fromBoxed(first.Get("a")).Size(), 3);
  EXPECT_EQ(KesList::fromBoxed(second.Get("a")).Size(), 2);

  parser.Initialize(" [ {} , 1 ] ");
  EXPECT_EQ(parser.NextArray().Size(), 2);
  EXPECT_TRUE(parser.NextObject().as<ArrayStore>());
  parser.Initialize("{}");
  EXPECT_THAT(thrownBy([&] { parser.NextArray(); }), StartsWith("Invalid object type|Expected: "));
}

TEST_F(JsonTest, RefusesWhatIsNoJson) {
  const struct {
    std::string_view text;
    std::string reason;
  } cases[] = {
      {"", "The text is empty (at character 0)"},
      {" \n\t ", "The text is empty (at character 0)"},
      {"5", "Neither an object nor an array is at the top (at character 0)"},
      {" \"testo\"", "Neither an object nor an array is at the top (at character 1)"},
      {"{", "The text ends too early, or goes on too long (at character 1)"},
      {"[[]", "The text ends too early (at character 3)"},
      {"{}x", "The text ends too early, or goes on too long (at character 3)"},
      {"{}{}", "The text goes on after its end (at character 2)"},
      {"[1]]", "The text goes on after its end (at character 3)"},
      {"[1,]", "A value is expected (at character 3)"},
      {"[,1]", "A value is expected (at character 1)"},
      {"[1 2]", "A comma or a closing bracket is missing (at character 3)"},
      {"[1}", "A comma or a closing bracket is missing (at character 2)"},
      {R"({"a":1,})", "The name of a member is missing (at character 7)"},
      {R"({"a":1 "b":2})", "A comma or a closing brace is missing (at character 7)"},
      {R"({"a":1])", "A comma or a closing brace is missing (at character 6)"},
      {R"({"a"})", "A colon is missing after the name of a member (at character 4)"},
      {R"({"a":})", "A value is expected (at character 5)"},
      {R"({a:1})", "The name of a member is missing (at character 1)"},
      {"[tru]", "A value is expected (at character 1)"},
      {"[True]", "A value is expected (at character 1)"},
      {"[truex]", "A comma or a closing bracket is missing (at character 5)"},
      {"[nul]", "A value is expected (at character 1)"},
      {"[fals", "The text ends too early, or goes on too long (at character 5)"},
      {"[NaN]", "A value is expected (at character 1)"},
      {"[-]", "A digit is expected (at character 2)"},
      {"[1.]", "A digit is expected (at character 3)"},
      {"[1e]", "A digit is expected (at character 3)"},
      {"[1e+]", "A digit is expected (at character 4)"},
      {"[01]", "A number begins with a needless zero (at character 1)"},
      {"[-01]", "A number begins with a needless zero (at character 2)"},
      {"[1e400]", "A number is too large (at character 1)"},
      {"[-1e99999999999999999999]", "A number is too large (at character 1)"},
      {"[\"a]", "A string has no end (at character 1)"},
      {"[\"a\\\"]", "A string has no end (at character 1)"},
      {"[\"a\tb\"]", "A control character stands in a string (at character 3)"},
      {"[\"a\x1F\"]", "A control character stands in a string (at character 3)"},
      {std::string_view("[\"a\0\"]", 6), "A control character stands in a string (at character 3)"},
      {R"(["\x41"])", "An escape is unknown (at character 2)"},
      {R"(["\u12"])", "An escape needs four hexadecimal digits (at character 4)"},
      {R"(["\u-123"])", "An escape needs four hexadecimal digits (at character 4)"},
      {"[1] // remark", "The text ends too early, or goes on too long (at character 13)"},
      {"[\"è\",x]", "A value is expected (at character 5)"},  // not bytes
  };
  for (const auto& c : cases)
    EXPECT_EQ(thrownBy([&] { parsed(c.text); }), "Error parsing string: " + c.reason) << c.text;
  // A text may hold half a pair; JSON may not.
  const Text half = Text("[\"") + Text("😀").SubString2(0, 1) + Text("\"]");
  EXPECT_THAT(thrownBy([&] { parsed(half.view()); }),
              StartsWith("Error parsing string: A string is not UTF-8"));
}

// Symptom: one clipped emoji in a post cost the whole list of posts.
TEST_F(JsonTest, AHalfOfAPairIsReplacedAndCostsNothingElse) {
  const struct {
    const char *escaped, *text;
  } cases[] = {
      {R"(\ud83d\ude00)", "😀"},
      {R"(Festa \ud83d)", "Festa \uFFFD"},
      {R"(\ud83d, a lungo, a lungo)", "\uFFFD, a lungo, a lungo"},
      {R"(\ud83d\n)", "\uFFFD\n"},
      {R"(\ude00)", "\uFFFD"},
      {R"(\ude00\ud83d)", "\uFFFD\uFFFD"},
      {R"(\ud83d\ud83d\ude00)", "\uFFFD😀"},
      {R"(\ud83d\u00e8)", "\uFFFDè"},
      {R"(\udfff\ud800 è)", "\uFFFD\uFFFD è"},
  };
  for (const auto& c : cases) {
    const std::string text = c.escaped;
    const auto list = KesList::fromBoxed(parsed("[\"" + text + "\",{\"" + text + "\":1},2]"));
    EXPECT_EQ(list.Get(0), Value(c.text)) << text;
    EXPECT_EQ(KesMap::fromBoxed(list.Get(1)).Get(c.text), Value(1)) << text;
    EXPECT_EQ(list.Get(2), Value(2)) << text;
  }
}

TEST_F(JsonTest, NumbersAreTheOnesInTheText) {
  const struct {
    std::string_view text;
    NumberType type;
    double value;
  } cases[] = {
      {"0", NumberType::LongLong, 0},
      {"-0", NumberType::LongLong, 0},
      {"-7", NumberType::LongLong, -7},
      {"999999999999999999", NumberType::LongLong, 999999999999999999.0},
      {"9223372036854775807", NumberType::LongLong, 9223372036854775807.0},
      {"-9223372036854775808", NumberType::LongLong, -9223372036854775808.0},
      {"9223372036854775808", NumberType::UnsignedLongLong, 9223372036854775808.0},
      {"18446744073709551615", NumberType::UnsignedLongLong, 18446744073709551615.0},
      {"18446744073709551616", NumberType::Double, 18446744073709551616.0},
      {"-9223372036854775809", NumberType::Double, -9223372036854775809.0},
      {"1.0", NumberType::Double, 1},
      {"-0.0", NumberType::Double, -0.0},
      {"46.123456789012", NumberType::Double, 46.123456789012},
      {"0.1", NumberType::Double, 0.1},
      {"123456789012345.6", NumberType::Double, 123456789012345.6},
      {"9007199254740993.0", NumberType::Double, 9007199254740992.0},
      {"1e0", NumberType::Double, 1},
      {"1E+2", NumberType::Double, 100},
      {"12.5e-1", NumberType::Double, 1.25},
      {"1.7976931348623157e308", NumberType::Double, 1.7976931348623157e308},
      {"5e-324", NumberType::Double, 5e-324},
      {"1e-400", NumberType::Double, 0},
      {"0e99999999999999999999", NumberType::Double, 0},
      {"0.0000000000000000000000001e-99999999999999999999", NumberType::Double, 0},
  };
  for (const auto& c : cases) {
    const Value v = KesList::fromBoxed(parsed("[" + std::string(c.text) + "]")).Get(0);
    EXPECT_EQ(v.numberType(), c.type) << c.text;
    EXPECT_EQ(v.asDouble(), c.value) << c.text;
    EXPECT_EQ(std::signbit(v.asDouble()), std::signbit(c.value)) << c.text;
  }
  EXPECT_EQ(KesList::fromBoxed(parsed("[-9223372036854775808]")).Get(0).asInt64(), INT64_MIN);
}

// To the last bit, for numbers of all lengths and sizes.
TEST_F(JsonTest, DoublesAreExact) {
  std::uint64_t seed = 7;
  const auto next = [&] { return seed = seed * 6364136223846793005u + 1442695040888963407u; };
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    if (i % 2) {
      const std::uint64_t bits = next();
      double d;
      std::memcpy(&d, &bits, sizeof d);
      if (!std::isfinite(d)) continue;
      char buffer[64];
      std::snprintf(buffer, sizeof buffer, "%.*e", static_cast<int>(next() >> 60) + 3, d);
      text = buffer;
    } else {
      text = std::to_string(next() >> (1 + next() % 62)) + "." +
             std::to_string(next() >> (1 + next() % 62));
    }
    const double expected = std::strtod(text.c_str(), nullptr);
    if (!std::isfinite(expected)) continue;
    const double read = KesList::fromBoxed(parsed("[" + text + "]")).Get(0).asDouble();
    EXPECT_EQ(read, expected) << text;
  }
}

// Strings are read sixteen bytes at a time, kept inside a value up to fourteen, and end
// right before the text does: each length, with each special byte at each place.
TEST_F(JsonTest, StringsOfEachLength) {
  const std::pair<std::string, std::string> inserts[] = {
      {"", ""},
      {"\\n", "\n"},
      {"\\\"", "\""},
      {"\\\\", "\\"},
      {"è", "è"},
      {"\\u00e8", "è"},
      {"😀", "😀"},
      {"\\ud83d\\ude00", "😀"},
      {"\\u0000", std::string(1, '\0')},
      {"\\/\\b\\f\\r\\t", "/\b\f\r\t"},
  };
  for (const auto& [written, meant] : inserts)
    for (std::size_t length = 0; length <= 40; ++length)
      for (std::size_t at = 0; at <= length; at += written.empty() ? length + 1 : 1) {
        const std::string before(at, 'x'), after(length - at, 'y');
        const std::string json = "[\"" + before + written + after + "\"]";
        const Text text = KesList::fromBoxed(readExactly(json)).Get(0).asText();
        ASSERT_EQ(text, before + meant + after) << json;
        ASSERT_EQ(text.Length(), Text(before + meant + after).Length()) << json;
      }
}

TEST_F(JsonTest, OfEqualKeysTheLastWins) {
  const auto check = [](std::string_view json, std::int32_t size,
                        std::vector<std::pair<std::string, int>> expected) {
    const KesMap map = parsedMap(json);
    EXPECT_EQ(map.Size(), size) << json;
    for (const auto& [key, value] : expected) EXPECT_EQ(map.Get(key).asInt64(), value) << json;
  };
  check(R"({"a":1,"a":2})", 1, {{"a", 2}});
  check(R"({"a":1,"\u0061":2,"b":3})", 2, {{"a", 2}, {"b", 3}});
  check(R"({"un nome lungo davvero":1,"b":2,"un nome lungo davvero":3})", 2,
        {{"un nome lungo davvero", 3}});

  // A record with a name twice among records of its length with the same first names.
  const KesList records = KesList::fromBoxed(
      parsed(R"([{"a":1,"b":2,"c":3},{"a":1,"b":2,"b":3},{"a":1,"b":2,"c":3},{"b":1,"b":2,"c":3},)"
             R"({"xa":1,"xb":2,"c":3},{"xb":1,"xb":2,"c":3}])"));
  const std::int32_t sizes[] = {3, 2, 3, 2, 3, 2};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(KesMap::fromBoxed(records.Get(i)).Size(), sizes[i]) << i;
  EXPECT_EQ(KesMap::fromBoxed(records.Get(3)).Get("b").asInt64(), 2);

  // Tables of all sizes, with short and long names, each name twice.
  for (const int names : {5, 11, 12, 13, 25, 600}) {
    for (const std::string stem : {"k", "a rather long name no. "}) {
      std::string json = "{";
      for (int i = 0; i < 2 * names; ++i)
        json += (i ? ",\"" : "\"") + stem + std::to_string(i % names) + "\":" + std::to_string(i);
      check(json + "}", names,
            {{stem + "0", names}, {stem + std::to_string(names - 1), 2 * names - 1}});
    }
  }
}

TEST_F(JsonTest, WhiteSpaceAndByteOrderMark) {
  EXPECT_EQ(parsedMap("\xEF\xBB\xBF {\"a\" :\t1}").Get("a").asInt64(), 1);
  for (std::size_t blanks = 0; blanks < 40; ++blanks) {
    const std::string s = "\r\n" + std::string(blanks, ' ') + (blanks % 3 ? "\t" : "");
    const std::string json = s + "{" + s + "\"a\"" + s + ":" + s + "[" + s + "1" + s + "," + s +
                             "2" + s + "]" + s + "," + s + "\"b\"" + s + ":" + s + "null" + s +
                             "}" + s;
    const KesMap map = parsedMap(json);
    EXPECT_EQ(KesList::fromBoxed(map.Get("a")).Size(), 2) << blanks;
    EXPECT_TRUE(map.ContainsKey("b")) << blanks;
  }
}

// The text with each escape of half a pair, which the other reader refuses, as "\\ufffd".
std::string withoutHalves(std::string text) {
  const auto unitAt = [&](std::size_t i) -> int {
    unsigned unit = 0;
    const char* const digits = text.data() + std::min(i + 2, text.size());
    const char* const end = digits + std::min<std::size_t>(4, text.size() - (digits - text.data()));
    const bool escaped = text.compare(i, 2, "\\u") == 0 && end - digits == 4 && *digits != '-' &&
                         std::from_chars(digits, end, unit, 16).ptr == end;
    return escaped ? static_cast<int>(unit) : -1;
  };
  for (std::size_t i = 0; (i = text.find('\\', i)) != text.npos; i += 2) {
    const int unit = unitAt(i);
    if (unit < 0xD800 || unit > 0xDFFF) continue;
    const int next = i + 6 <= text.size() ? unitAt(i + 6) : -1;
    if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF)
      i += 10;
    else
      text.replace(i, 6, "\\ufffd");
  }
  return text;
}

// Every prefix, and every other byte at every place: refused or accepted as another
// reader of JSON does, and read back equal from what the generator makes of it.
TEST_F(JsonTest, DamagedTextsAreJudgedAsOthersDo) {
  const auto judge = [](const std::string& text) {
    Value tree;
    try {
      tree = readExactly(text);
    } catch (const kes::JsonError& e) {
      EXPECT_LE(e.position, text.size());
    }
    const auto other = nlohmann::json::parse(withoutHalves(text), nullptr, false);
    const bool accepted = other.is_structured();
    EXPECT_EQ(tree.isObject(), accepted) << text;
    if (!tree.isObject() || !accepted) return;
    EXPECT_EQ(nlohmann::json::parse(generated(tree).view()), other) << text;
  };
  const std::string sample(kSample);
  for (std::size_t n = 0; n <= sample.size(); ++n) judge(sample.substr(0, n));
  constexpr char kBytes[] =
      "[]{},:\"\\ \n09eE.+-tfnua/\0\x1F\x20\x7F\x80\xBF\xC1\xC3\xED\xF0\xF5\xFF";

  for (std::size_t i = 0; i < sample.size(); ++i)
    for (const char c : std::string_view(kBytes, sizeof kBytes - 1)) {
      std::string damaged = sample;
      damaged[i] = c;
      judge(damaged);
    }
}

TEST_F(JsonTest, NestingIsLimitedByMemoryOnly) {
  constexpr int kLevels = 100'000;
  std::string arrays, maps, mixed;
  for (int i = 0; i < kLevels; ++i) {
    arrays += '[';
    maps += R"({"a":)";
    mixed += i % 2 ? R"([{"b":1},)" : R"({"a":)";
  }
  maps += "null";
  mixed += "null";
  for (int i = 0; i < kLevels; ++i) {
    arrays += ']';
    maps += '}';
    mixed += i % 2 ? '}' : ']';
  }
  for (const auto& json : {arrays, maps, mixed}) {
    const Value tree = parsed(json);
    ASSERT_TRUE(tree.isObject());
    EXPECT_EQ(generated(tree), json);
    EXPECT_EQ(thrownBy([&] { parsed(std::string_view(json).substr(0, json.size() - 1)); }),
              "Error parsing string: The text ends too early (at character " +
                  std::to_string(json.size() - 1) + ")");
  }
}

// What is kept of a document outlives the rest of it, and may be given up anywhere.
TEST_F(JsonTest, PartsOutliveTheirDocument) {
  std::string json = "[";
  for (int i = 0; i < 500; ++i)
    json += std::string(i ? "," : "") + R"({"il nome di una entità":"testo lungo numero )" +
            std::to_string(i) + R"(","righe":[[],{}]})";
  Value document = parsed(json + "]");
  std::vector<Value> texts, maps;
  {
    const auto list = KesList::fromBoxed(document);
    for (int i = 0; i < 500; i += 7) {
      maps.push_back(list.Get(i));
      texts.push_back(
          KesMap::fromBoxed(list.Get(i + 1 < 500 ? i + 1 : i)).Get("il nome di una entità"));
    }
  }
  std::thread([gone = std::move(document)]() mutable { gone = Value(); }).join();
  EXPECT_EQ(texts[3].asText(), "testo lungo numero 22");
  EXPECT_EQ(KesMap::fromBoxed(maps[3]).Get("il nome di una entità").asText(),
            "testo lungo numero 21");
  texts.clear();
  std::thread([gone = std::move(maps)]() mutable { gone.clear(); }).join();
}

TEST_F(JsonTest, GeneratesContainersOfAllKinds) {
  KesMap map = kes::KesCommon::createMap({5, "five"});
  EXPECT_EQ(generated(map), R"({"5":"five"})");
  map.Put("5", "text");  // two keys of one description
  EXPECT_EQ(nlohmann::json::parse(generated(map).view()).size(), 1u);

  kes::KesStringBuilder built;
  built.Initialize().Append("di");
  kes::KesNativeObject holder;
  holder.setObject(map);
  const std::pair<Value, const char*> values[] = {
      {built, "[\"di\"]"},
      {holder, "[{\"5\":\"text\"}]"},
      {KesList(), "[null]"},
      {"a\"b\\/\n\x01è😀", "[\"a\\\"b\\\\/\\n\\u0001è😀\"]"},
      {true, "[true]"},
      {false, "[false]"},
      {std::int32_t{-5}, "[-5]"},
      {std::uint8_t{200}, "[200]"},
      {Value::number(NumberType::UnsignedLongLong, -1), "[18446744073709551615]"},
      {INT64_MIN, "[-9223372036854775808]"},
      {0.1, "[0.1]"},
      {0.1f, "[0.1]"},
      {3.0, "[3]"},
      {1e300, "[1e+300]"},
      {-0.0, "[-0]"},
      {Value::null(), "[null]"},
      {Value(), "[null]"},
      {KesArray::initObjectsWithData({1, "b"}), "[[1,\"b\"]]"},
      {platform::makeShared<ArrayStore>(std::vector<Value>{1}), "[[1]]"},
      {KesList::of({1, KesList::of({})}), "[[1,[]]]"},
      {platform::makeShared<Dictionary>(Dictionary::Entries{{"k", 1}}), "[{\"k\":1}]"},
      {KesMap().Initialize(), "[{}]"},
  };
  for (const auto& [value, text] : values) EXPECT_EQ(generated(KesList::of({value})), text);
}

TEST_F(JsonTest, PrettyTextHasOneValueALine) {
  KesJSONGenerator g;
  g.Initialize(parsedMap(R"({"a":[1,{"b":null}]})"));
  const Text pretty = g.ToPrettyString(0);
  EXPECT_EQ(pretty, "{\n  \"a\": [\n    1,\n    {\n      \"b\": null\n    }\n  ]\n}");
  EXPECT_EQ(g.ToPrettyString(8), pretty);
  EXPECT_EQ(parsed(pretty.view()), parsed(g.ToString().view()));
}

TEST_F(JsonTest, RefusesToWriteWhatJsonHasNoFormFor) {
  KesJSONGenerator g;
  EXPECT_EQ(thrownBy([&] { g.ToString(); }), "JSON was not initialized.");
  g.Initialize2(KesList());
  EXPECT_EQ(thrownBy([&] { g.ToPrettyString(4); }), "JSON was not initialized.");
  g.Initialize(KesMap());
  EXPECT_EQ(thrownBy([&] { g.ToString(); }), "Object not initialized (Map)");

  KesMap self = kes::KesCommon::createMap({});
  self.Put("self", KesList::of({self}));
  const Value unwritable[] = {
      std::nan(""),
      std::numeric_limits<double>::infinity(),
      -std::numeric_limits<float>::infinity(),
      kes::Period::ofDays(1),
      KesArray::initBytesWithData({1, 2}),
      Text("😀").SubString2(0, 1),
      self,
  };
  for (const Value& v : unwritable) {
    KesMap map = kes::KesCommon::createMap({"k", KesList::of({v})});
    EXPECT_THAT(thrownBy([&] { generated(map); }), StartsWith("Error writing JSON: "));
  }
  self.Clear();  // so that it can go
  // The same container in two places is no circle.
  const KesMap shared = parsedMap(R"({"x":1})");
  EXPECT_EQ(generated(KesList::of({shared, shared})), R"([{"x":1},{"x":1}])");
}

}  // namespace
