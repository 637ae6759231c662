#include "runtime/data/serialized/serializer.h"

#include "data_fixture.h"
#include "runtime/core/language/string_builder.h"
#include "runtime/data/bytes/byte_converter.h"
#include "runtime/data/bytes/compressed_streams.h"

using kes::KesSerializator;

namespace {

// A record with a field of each kind.
struct Card : kes::Object {
  bool isInitialized = true;
  Text key;
  std::int32_t count = 0;
  std::int64_t big = 0;
  std::int16_t small = 0;
  std::uint8_t octet = 0;
  float ratio = 0;
  double exact = 0;
  Value value;
  KesList items;
  KesMap map;
  Ref<Card> next;
  Text description() const override { return kes::KesCommon::TypeToString(*this, false); }
  static void describe(kes::ClassBuilder<Card>& c) {
    c.name("_card");
    c.storedField<&Card::isInitialized>("_IsInitialized");
    c.storedField<&Card::key>("_KEY");
    c.field<&Card::count>("count");
    c.field<&Card::big>("big");
    c.field<&Card::small>("small");
    c.field<&Card::octet>("octet");
    c.field<&Card::ratio>("ratio");
    c.field<&Card::exact>("exact");
    c.field<&Card::value>("value");
    c.field<&Card::items>("items");
    c.field<&Card::map>("map");
    c.field<&Card::next>("next");
  }
};

// A small one, for golden bytes.
struct Pair : kes::Object {
  std::int32_t b = 0;
  Text a;
  bool isInitialized() const { return true; }
  static void describe(kes::ClassBuilder<Pair>& c) {
    c.name("_pair");
    c.method<&Pair::isInitialized>("IsInitialized");
    c.field<&Pair::b>("b");
    c.field<&Pair::a>("a");
  }
};

// Described, but no custom type: it has no IsInitialized.
struct Plain : kes::Object {
  Text description() const override { return "a plain one"; }
  static void describe(kes::ClassBuilder<Plain>& c) { c.name("_plain"); }
};

struct Shape {
  int x, y;
};
// Holds a field of a kind that no tag stands for.
struct Framed : kes::Object {
  bool isInitialized = true;
  Shape shape{};
  Text description() const override { return "a framed one"; }
  static void describe(kes::ClassBuilder<Framed>& c) {
    c.name("_framed");
    c.storedField<&Framed::isInitialized>("_IsInitialized");
    c.field<&Framed::shape>("shape");
  }
};

class Serializer : public RecordedTest {
 protected:
  Serializer() { kes::ClassRegistry::instance().addAll<Card, Pair, Plain, Framed>(); }

  std::string written(const Value& v) { return toHex(serializer->WriteObject(v, false)); }
  Value read(std::string_view hex) {
    return serializer->ReadObject(KesArray::initBytesWithData(fromHex(hex)), false);
  }
  Ref<KesSerializator> serializer = makeShared<KesSerializator>();
};

Value listOf(std::vector<Value> items) { return Value(KesList::of(std::move(items))); }
Value mapOf(std::initializer_list<Value> items) { return Value(kes::KesCommon::createMap(items)); }
Value pairOf(std::int32_t b, Text a) {
  auto p = makeShared<Pair>();
  p->b = b;
  p->a = std::move(a);
  return p;
}
std::string plainHex(std::string_view hex) {
  std::string out(hex);
  std::erase(out, ' ');
  return out;
}

}  // namespace

TEST_F(Serializer, WritesEachTagAsTheFormatSays) {
  KesMap nothing;
  kes::KesStringBuilder built;
  built.Initialize().Append("b");
  const auto store = makeShared<kes::ArrayStore>(std::vector<Value>{1}, true);
  const struct {
    const char* what;
    Value value;
    const char* hex;
  } cases[] = {
      {"nil", {}, "00"},
      {"the null object", Value::null(), "00"},
      {"a wrapper of nothing", KesList(), "00"},
      {"text, its length in bytes", "aè€", "01 06000000 61c3a8e282ac"},
      {"empty text", "", "01 00000000"},
      {"a text that is being built", built, "01 01000000 62"},
      {"short", std::int16_t{-2}, "02 feff"},
      {"int", 258, "03 02010000"},
      {"long", std::int64_t{-2}, "04 feffffffffffffff"},
      {"float", 1.5f, "05 0000c03f"},
      {"double", -2.0, "06 00000000000000c0"},
      {"true", true, "07 01"},
      {"false", false, "07 00"},
      {"unsigned byte", std::uint8_t{200}, "0a c8"},
      {"char", u'A', "0e 4100"},
      {"an empty map", mapOf({}), "14 00000000"},
      {"a map that was not initialised", nothing, "14 00000000"},
      {"keys of any kind", mapOf({"a", 1, 2, Value::null()}),
       "14 02000000 01 01000000 61 03 01000000 03 02000000 00"},
      {"an empty list", listOf({}), "15 00000000"},
      {"a list with nil", listOf({Value(), "x"}), "15 02000000 00 01 01000000 78"},
      {"an immutable array", store, "15 01000000 03 01000000"},
      {"objects", KesArray::initObjectsWithData({true, listOf({})}),
       "16 02000000 07 01 15 00000000"},
      {"bytes", arrayOf("abc"), "17 03000000 616263"},
      {"no bytes", arrayOf(""), "17 00000000"},
      {"a custom type, fields as declared", pairOf(7, "z"),
       "18 01 05000000 5f70616972 02000000 01 02000000 5f62 03 07000000"
       " 01 02000000 5f61 01 01000000 7a"},
  };
  for (const auto& c : cases) EXPECT_EQ(written(c.value), plainHex(c.hex)) << c.what;
}

TEST_F(Serializer, ReadsEachTagAsItsType) {
  const struct {
    const char *what, *hex;
    char kind;  // '0' nil, 't' text, 'o' object, else a number's type code
    const char* text;
  } cases[] = {
      {"null", "00", '0', "null"},
      {"text", "01 02000000 c3a8", 't', "è"},
      {"short", "02 feff", 's', "-2"},
      {"int", "03 ffffffff", 'i', "-1"},
      {"long", "04 0000000001000000", 'q', "4294967296"},
      {"float", "05 0000c03f", 'f', "1.5"},
      {"double", "06 00000000000000c0", 'd', "-2"},
      {"true", "07 01", 'B', "1"},
      {"only 1 is true", "07 02", 'B', "0"},
      {"200 comes back signed", "0a c8", 'c', "-56"},
      {"char", "0e ffff", 'S', "65535"},
      {"what follows is ignored", "07 01 63 63", 'B', "1"},
      {"a short number ends in zeros", "03 0102", 'i', "513"},
      {"so does a short text", "01 03000000 6162", 't', std::string_view("ab\0", 3).data()},
      {"a negative count is none", "15 ffffffff", 'o', "[]"},
  };
  for (const auto& c : cases) {
    const Value v = read(c.hex);
    const char kind = v.isNil()      ? '0'
                      : v.isText()   ? 't'
                      : v.isNumber() ? static_cast<char>(v.numberType())
                                     : 'o';
    EXPECT_EQ(kind, c.kind) << c.what;
    if (v.isNumber() && v.numberType() == kes::NumberType::Bool)
      EXPECT_EQ(v.asBool(), *c.text == '1') << c.what;
    else
      EXPECT_EQ(v.description().str().c_str(), std::string(c.text)) << c.what;
  }
  EXPECT_EQ(read("01 03000000 6162").textView().size(), 3u);

  const Value list = read("15 01000000 00");
  ASSERT_TRUE(list.as<kes::ArrayStore>());
  EXPECT_FALSE(list.as<kes::ArrayStore>()->isImmutable());
  EXPECT_TRUE(list.as<kes::ArrayStore>()->items()[0].isNull());

  const auto map = read("14 01000000 03 05000000 00").as<KesMap>();
  ASSERT_TRUE(map);
  EXPECT_TRUE(map->IsInitialized() && !map->IsReadOnly());
  EXPECT_TRUE(map->Keys().Get(0).isNumber()) << "a number key stays a number";
  map->Put("new", 1);
  EXPECT_EQ(map->Size(), 2);

  const auto objects = read("16 01000000 07 01").as<KesArray>();
  ASSERT_TRUE(objects && !objects->isBytes());
  EXPECT_TRUE(objects->getObjectFast(0).asBool());
  const auto bytes = read("17 04000000 616263").as<KesArray>();
  ASSERT_TRUE(bytes && bytes->isBytes());
  EXPECT_EQ(toHex(bytes), "61626300") << "missing bytes are zeros";
}

TEST_F(Serializer, RefusesWithTheGivenTexts) {
  const auto plain = makeShared<Plain>();
  const auto framed = makeShared<Framed>();
  KesMap itself;
  itself.Initialize();
  itself.Put("me", itself);
  const struct {
    const char* what;
    std::function<void()> call;
    const char* thrown;
  } cases[] = {
      {"no IsInitialized", [&] { written(plain); }, "Cannot serialize: a plain one"},
      {"inside a list",
       [&] {
         written(listOf({1, plain}));
       },
       "Cannot serialize: a plain one"},
      {"a field that is a structure", [&] { written(framed); }, "Cannot serialize: a framed one"},
      {"not described at all", [&] { written(makeShared<kes::Object>()); },
       "Cannot serialize: <Object>"},
      {"a map that holds itself", [&] { written(itself); },
       "Cannot serialize: values nested too deeply"},
      {"the platform's long", [&] { written(Value::number(kes::NumberType::Long, 1)); },
       "Unknown number type|108"},
      {"a signed byte", [&] { written(static_cast<signed char>(1)); }, "Unknown number type|99"},
      {"unsigned int", [&] { written(1u); }, "Unknown number type|73"},
      {"a tag between the others", [&] { read("08"); }, "Unknown type in readObject: 8"},
      {"a tag above", [&] { read("19"); }, "Unknown type in readObject: 25"},
      {"no data", [&] { read(""); }, "Unknown type in readObject: 255"},
      {"an item missing", [&] { read("15 02000000 00"); }, "Unknown type in readObject: 255"},
      {"a value missing", [&] { read("14 01000000 00"); }, "Unknown type in readObject: 255"},
      {"a length that cannot be", [&] { read("01 ffffff7f 61"); },
       "Unknown type in readObject: 255"},
      {"a negative length", [&] { read("17 ffffffff 61"); }, "Unknown type in readObject: 255"},
      {"text that is no UTF-8", [&] { read("01 01000000 ff"); }, "Error decoding data as string."},
      {"not compressed", [&] { serializer->ReadObject(arrayOf("abc"), true); },
       "Error decompressing data"},
      {"no array", [&] { serializer->ReadObject(nullptr, false); },
       "An array of bytes is expected."},
  };
  for (const auto& c : cases) EXPECT_EQ(thrownBy(c.call), c.thrown) << c.what;
  itself.Clear();
}

TEST_F(Serializer, CustomTypesComeBackWhole) {
  auto inner = makeShared<Card>();
  inner->key = "inner";
  inner->map.Initialize().Put("n", 1);
  auto card = makeShared<Card>();
  card->key = "è";
  card->count = -5;
  card->big = std::int64_t{1} << 40;
  card->small = -3;
  card->octet = 9;
  card->ratio = 0.5f;
  card->exact = 0.1;
  card->value = mapOf({"deep", makeShared<kes::ArrayStore>(std::vector<Value>{1, 2})});
  card->items = KesList::of({"a", Value(inner)});
  card->next = inner;

  const auto copy =
      serializer->ConvertBytesToObject(serializer->ConvertObjectToBytes(card)).as<Card>();
  ASSERT_TRUE(copy);
  EXPECT_NE(copy.get(), card.get());
  EXPECT_EQ(copy->description(), card->description());
  EXPECT_FALSE(copy->next->map.IsReadOnly());
  EXPECT_FALSE(copy->map.IsReadOnly());
}

TEST_F(Serializer, TypeNamesAndFieldsOfOtherBuilds) {
  const std::string fields = "01000000 01 02000000 5f62 03 07000000";  // _b = 7
  const auto named = [&](std::string_view name) {
    std::string hex = "15 02000000 18 01 ";
    const auto size = static_cast<std::uint8_t>(name.size());
    hex += toHex({size, 0, 0, 0}) + toHex(bytesOf(name)) + fields + "07 01";
    const Value list = read(hex);
    // Whatever became of the type, the stream is in step behind it.
    EXPECT_TRUE(list.as<kes::ArrayStore>()->items()[1].asBool()) << name;
    return list.as<kes::ArrayStore>()->items()[0];
  };
  for (const char* name : {"_pair", "main$_pair", "a.b.main$sub$_pair", "$_pair"}) {
    const auto pair = named(name).as<Pair>();
    ASSERT_TRUE(pair) << name;
    EXPECT_EQ(pair->b, 7) << name;
    EXPECT_EQ(pair->a, "") << "a field that the data leaves out";
  }
  for (const char* name : {"_none", "_pair$", "", "_plain", "KesMap", "recorder$"})
    EXPECT_TRUE(named(name).isNull()) << name;
  EXPECT_TRUE(read("18 03 01000000" + fields).isNil()) << "a name that is no text";

  // A field that went, one of another type, a key that is no text: logged, and on.
  const auto pair = read(
                        "18 01 05000000 5f70616972 04000000"
                        "01 05000000 5f676f6e65 00"
                        "01 02000000 5f62 01 01000000 78"
                        "03 01000000 00"
                        "01 02000000 5f61 01 01000000 7a")
                        .as<Pair>();
  ASSERT_TRUE(pair);
  EXPECT_EQ(pair->a, "z");
  EXPECT_TRUE(phone.logged("Error setting key: _gone, "));
  EXPECT_TRUE(phone.logged("Error setting key: _b, Cannot parse: x"));
  EXPECT_TRUE(phone.logged("Error setting key: 1, "));
}

TEST_F(Serializer, HalfOfASurrogatePairLeavesAsReplacement) {
  const Text half = Text(
                        "a\xF0\x9F\x98\x80"
                        "b")
                        .SubString2(0, 2);
  EXPECT_EQ(written(half), plainHex("01 04000000 61efbfbd"));
  EXPECT_EQ(read(written(half)).asText(), "a\uFFFD");
}

TEST_F(Serializer, CompressedIsAZlibStreamOfThePlainForm) {
  const auto plain = serializer->WriteObject({}, false);
  const auto compressed = serializer->ConvertObjectToBytes({});
  EXPECT_EQ(kes::KesCompressedStreams::DecompressBytes(compressed, "zlib")->bytesData(),
            plain->bytesData());
  EXPECT_TRUE(serializer->ConvertBytesToObject(compressed).isNil());
}

TEST_F(Serializer, AsyncCallsReportOnTheMainThread) {
  const auto map = mapOf({"a", listOf({1})});
  serializer->ConvertObjectToBytesAsync(recorder->bi(), map, "X");
  EXPECT_TRUE(recorder->events.empty());
  ASSERT_TRUE(waitForEvents(1));
  const auto bytes = recorder->results[0].as<KesArray>();
  ASSERT_TRUE(bytes);
  serializer->ConvertBytesToObjectAsync(recorder->bi(), bytes, "X");
  ASSERT_TRUE(waitForEvents(2));
  EXPECT_EQ(recorder->results[1], map);
  serializer->ConvertBytesToObjectAsync(recorder->bi(), arrayOf("no"), "X");
  ASSERT_TRUE(waitForEvents(3));
  EXPECT_EQ(kes::KesCommon::shared().LastException().Message(), "Error decompressing data");
  serializer->ConvertObjectToBytesAsync(recorder->bi(), makeShared<Plain>(), "X");
  ASSERT_TRUE(waitForEvents(4));
  EXPECT_THAT(recorder->events, ElementsAre("objecttobytes(1)", "bytestoobject(1)",
                                            "bytestoobject(0)", "objecttobytes(0)"));
  EXPECT_TRUE(recorder->results[2].isNil()) << "the null object reaches a sub as nil";
  for (const auto& sender : recorder->senders) EXPECT_EQ(sender.object(), serializer.get());
}

TEST_F(Serializer, WorkUnderWayOutlivesTheModuleThatAsked) {
  const auto watched = makeShared<Card>();
  const std::uint32_t before = watched->references();
  serializer->ConvertObjectToBytesAsync(recorder->bi(), watched, "x");
  recorder = nullptr;
  EXPECT_TRUE(phone.runUntil([&] { return watched->references() == before; }));
}
