#include "component_fixture.h"

#include <random>

#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"

using namespace kes;

namespace {

std::string textOf(const KesList& list) {
  std::string out;
  for (const Value& v : list) out += (out.empty() ? "" : " ") + v.description().str();
  return out;
}

KesMap readOnly(Dictionary::Entries entries) {
  KesMap m;
  m.setDict(platform::makeShared<Dictionary>(std::move(entries)));
  return m;
}

TEST(List, KeepsNilAndChangesInPlace) {
  KesList l;
  l.Initialize();
  l.Add(Value());
  EXPECT_EQ(l.Size(), 1);
  EXPECT_TRUE(l.Get(0).isNil());
  EXPECT_TRUE(l.begin()->isNull());
  EXPECT_EQ(l.IndexOf(Value()), 0);
  l.Set(0, "b");
  l.InsertAt(0, "a");
  l.InsertAt(2, "d");
  l.AddAllAt(2, KesList::of({"c", 1}));
  EXPECT_EQ(textOf(l), "a b c 1 d");
  EXPECT_EQ(l.IndexOf(1.0), 3);
  EXPECT_EQ(l.IndexOf("1"), -1);
  l.AddAll(l);
  EXPECT_EQ(textOf(l), "a b c 1 d a b c 1 d");
  l.RemoveAt(9);
  l.RemoveAt(0);
  EXPECT_EQ(textOf(l), "b c 1 d a b c 1");
  KesList view;
  view.Initialize2(l);
  view.Clear();
  view.Add("x");
  EXPECT_EQ(textOf(l), "x");
  EXPECT_EQ(Value(l), Value(KesList::of({"x"})));
}

TEST(List, WrongUseFailsWithItsText) {
  KesList none, l = KesList::of({1, 2});
  KesList fixed;
  fixed.setObject(platform::makeShared<ArrayStore>(std::vector<Value>{3, 1}, true));
  const std::string uninitialised = "Object was not initialized (NSArray)";
  EXPECT_EQ(thrownBy([&] { none.Add(1); }), uninitialised);
  EXPECT_EQ(thrownBy([&] { none.Size(); }), uninitialised);
  EXPECT_EQ(thrownBy([&] { none.Sort(true); }), uninitialised);
  EXPECT_THAT(thrownBy([&] { l.Get(2); }), StartsWith("NSRangeException|"));
  EXPECT_THAT(thrownBy([&] { l.Get(-1); }), StartsWith("NSRangeException|"));
  EXPECT_THAT(thrownBy([&] { l.Set(2, 0); }), StartsWith("NSRangeException|"));
  EXPECT_THAT(thrownBy([&] { l.InsertAt(3, 0); }), StartsWith("NSRangeException|"));
  EXPECT_THAT(thrownBy([&] { l.RemoveAt(2); }), StartsWith("NSRangeException|"));
  EXPECT_THAT(thrownBy([&] { l.AddAllAt(-1, l); }), StartsWith("NSRangeException|"));
  EXPECT_TRUE(fixed.IsReadOnly());
  EXPECT_FALSE(l.IsReadOnly());
  EXPECT_THAT(thrownBy([&] { fixed.Add(1); }), StartsWith("NSInvalidArgumentException|"));
  EXPECT_THAT(thrownBy([&] { fixed.Sort(true); }), StartsWith("NSInvalidArgumentException|"));
  EXPECT_THAT(thrownBy([&] { fixed.Clear(); }), StartsWith("NSInvalidArgumentException|"));
  KesList empty;
  empty.setObject(platform::makeShared<ArrayStore>(std::vector<Value>(), true));
  EXPECT_EQ(thrownBy([&] { empty.Sort(false); }), "") << "an empty list stays as it is";
  EXPECT_EQ(thrownBy([&] { empty.SortType("KEY", true); }), "");
  EXPECT_EQ(textOf(fixed), "3 1");
  EXPECT_EQ(textOf(l), "1 2");
}

TEST(List, SortsByTheKindOfTheFirst) {
  struct {
    std::vector<Value> items;
    const char *ascending, *descending, *folded;
  } cases[] = {
      {{}, "", "", ""},
      {{10, 9, 2.5, -1}, "-1 2.5 9 10", "10 9 2.5 -1", "-1 2.5 9 10"},
      {{"10", "9"}, "10 9", "9 10", "10 9"},
      {{INT64_MAX, INT64_MAX - 1},
       "9223372036854775806 9223372036854775807",
       "9223372036854775807 9223372036854775806",
       "9223372036854775806 9223372036854775807"},
      {{"b", "C", "a"}, "C a b", "b a C", "a b C"},
      {{"lungotesto2", "lungotesto10", "lungotesto"},
       "lungotesto lungotesto10 lungotesto2",
       "lungotesto2 lungotesto10 lungotesto",
       "lungotesto lungotesto10 lungotesto2"},
      {{"\uE000", "😀", "è", "È"}, "È è 😀 \uE000", "\uE000 😀 è È", nullptr},
      {{"b", 5, "1"}, "1 5 b", "b 5 1", "1 5 b"},
      {{2, "x", 1}, "x 1 2", "2 1 x", "x 1 2"},
      {{1.0, std::nan(""), -1.0}, "nan -1 1", "1 -1 nan", "nan -1 1"},
  };
  for (const auto& c : cases) {
    KesList up = KesList::of(c.items), down = KesList::of(c.items), l = KesList::of(c.items);
    up.Sort(true);
    EXPECT_EQ(textOf(up), c.ascending);
    down.Sort(false);
    EXPECT_EQ(textOf(down), c.descending);
    if (!c.folded) continue;
    l.SortCaseInsensitive(true);
    EXPECT_EQ(textOf(l), c.folded);
  }
}

TEST(List, SortsManyTextsAsTheirUnitsCompare) {
  std::mt19937 random(7);
  const char* const pieces[] = {"a", "b", "B", "è", "È", "ß", "\uD7FF", "\uE000", "😀", "0"};
  for (const std::size_t kinds : {3u, 6u, 10u}) {
    std::vector<Value> items;
    for (int i = 0; i < 3000; ++i) {
      std::string s;
      for (auto n = random() % 20; n > 0; --n) s += pieces[random() % kinds];
      items.push_back(s);
    }
    for (const bool folded : {false, true}) {
      KesList l = KesList::of(items);
      folded ? l.SortCaseInsensitive(true) : l.Sort(true);
      ASSERT_EQ(l.Size(), 3000);
      const auto key = [&](const Value& v) {
        return folded ? v.asText().Replace("ß", "ss").ToLowerCase() : v.asText();
      };
      for (int i = 1; i < l.Size(); ++i)
        ASSERT_LE(key(l.Get(i - 1)).utf16(), key(l.Get(i)).utf16()) << kinds << folded << i;
    }
  }
}

// A record as the application declares them.
class Record : public KesClass {
 public:
  Record(Text key, int order) : KEY(std::move(key)), _order(order) {}
  static void describe(ClassBuilder<Record>& c) {
    c.name("kes_test_record");
    c.storedField<&Record::KEY>("_KEY");
    c.field<&Record::_order>("order");
  }
  Text KEY;
  int _order;
};

TEST(List, SortsRecordsByAField) {
  ClassRegistry::instance().add<Record>();
  KesList l;
  l.Initialize();
  l.SortType("KEY", true);
  for (const auto& [key, order] : {std::pair("b", 10), {"C", 9}, {"a", 100}})
    l.Add(platform::makeShared<Record>(key, order));
  const auto keys = [&] {
    std::string out;
    for (const Value& v : l) out += v.as<Record>()->KEY.str();
    return out;
  };
  l.SortType("KEY", true);
  EXPECT_EQ(keys(), "Cab");
  l.SortTypeCaseInsensitive("_KEY", true);
  EXPECT_EQ(keys(), "abC");
  l.SortTypeCaseInsensitive("Order", true);
  EXPECT_EQ(keys(), "Cba");
  l.SortType("order", false);
  EXPECT_EQ(keys(), "abC");
  EXPECT_THAT(thrownBy([&] { l.SortType("none", true); }), StartsWith("NSUnknownKeyException|"));
  EXPECT_EQ(keys(), "abC");
}

TEST(Map, ReadsAndWrites) {
  KesMap m;
  const std::string uninitialised = "Object not initialized (Map)";
  EXPECT_EQ(thrownBy([&] { m.Get("a"); }), uninitialised);
  EXPECT_EQ(thrownBy([&] { m.Put("a", 1); }), uninitialised);
  EXPECT_EQ(thrownBy([&] { m.GetDefault("a", 1); }), uninitialised);
  m.Remove("a");
  m.Clear();
  EXPECT_FALSE(m.IsInitialized());
  EXPECT_EQ(m.Size(), 0);
  EXPECT_EQ(m.Keys().Size(), 0);
  m.Initialize();
  m.Put("a", 1);
  m.Put(5, "five");
  m.Put("nil", Value());
  m.Put("a", 2);
  EXPECT_EQ(m.Get("a"), 2);
  EXPECT_EQ(m.Get(5.0), "five");
  EXPECT_TRUE(m.Get("5").isNil());
  EXPECT_EQ(m.GetDefault("nil", 7), 7);
  EXPECT_FALSE(m.ContainsKey("nil"));
  EXPECT_EQ(m.Size(), 3);
  m.Put(Value(), "keyless");
  EXPECT_EQ(m.Get(Value()), "keyless");
  m.Remove(Value());
  EXPECT_EQ(m.Size(), 3);
  KesMap shared = m;
  shared.Remove("a");
  EXPECT_FALSE(m.ContainsKey("a"));
  const KesList keys = m.Keys();
  m.Clear();
  EXPECT_EQ(keys.Size(), 2);
  EXPECT_EQ(shared.Size(), 0);
}

TEST(Map, OneFromADocumentKeepsItsContents) {
  KesMap m = readOnly({{"a", 1}, {"b", Value::null()}, {"a", 3}});
  EXPECT_EQ(m.Size(), 2);
  m.Put("a", 9);
  m.Put("c", 9);
  m.Remove("a");
  m.Clear();
  EXPECT_TRUE(m.IsReadOnly());
  EXPECT_EQ(m.Get("a"), 3);
  EXPECT_TRUE(m.Get("b").isNull());
  EXPECT_TRUE(m.ContainsKey("b"));
  EXPECT_FALSE(m.ContainsKey("c"));
  m.Initialize();
  EXPECT_FALSE(m.IsReadOnly());
  EXPECT_EQ(m.Size(), 0);
}

TEST(Map, HoldsWhatAPlainTableWould) {
  // Grows and shrinks across the size where the index starts and ends.
  std::mt19937 random(3);
  for (const int range : {10, 14, 40, 2000}) {
    KesMap m;
    m.Initialize();
    std::unordered_map<std::string, int> plain;
    for (int step = 0; step < 6000; ++step) {
      const std::string key = "chiave" + std::to_string(random() % static_cast<unsigned>(range));
      const bool remove = random() % (step < 3000 ? 4 : 2) == 0;
      if (remove) {
        m.Remove(key);
        plain.erase(key);
      } else {
        m.Put(key, step);
        plain[key] = step;
      }
      ASSERT_EQ(m.Size(), static_cast<int>(plain.size()));
      ASSERT_EQ(m.ContainsKey(key), plain.contains(key));
    }
    for (const auto& [key, value] : plain) ASSERT_EQ(m.Get(key), value) << range;
    KesMap copy;
    copy.setDict(platform::makeShared<Dictionary>(m.ToDictionary()->entries()));
    EXPECT_EQ(Value(copy), Value(m));
  }
}

TEST(Map, ConvertsNestedDictionaries) {
  const auto inner = platform::makeShared<Dictionary>(Dictionary::Entries{{"x", 1}});
  const auto middle = platform::makeShared<Dictionary>(Dictionary::Entries{{"i", inner}});
  const auto array = platform::makeShared<ArrayStore>(std::vector<Value>{inner});
  const Dictionary top({{"m", middle}, {"l", array}, {"t", "text"}});
  const KesMap m = KesMap::convertToMap(top);
  ASSERT_TRUE(m.IsReadOnly());
  const auto converted = m.Get("m").as<KesMap>();
  ASSERT_TRUE(converted);
  EXPECT_EQ(converted->Get("i").as<KesMap>()->Get("x"), 1);
  EXPECT_EQ(m.Get("l").object(), array.get());
  EXPECT_EQ(array->at(0).object(), inner.get());
  EXPECT_EQ(m.description(), "{m={i={x=1}}, l=[{x=1}], t=text}");
}

// One container in another, of each kind in turn.
Value nested(int levels, Value core) {
  for (int i = 0; i < levels; ++i) {
    switch (i % 4) {
      case 0:
        core = platform::makeShared<ArrayStore>(std::vector<Value>{core});
        break;
      case 1:
        core = Value(readOnly({{"k", core}}));
        break;
      case 2:
        core = Value(KesList::of({core, 1}));
        break;
      default:
        core = KesArray::initObjectsWithData({core});
    }
  }
  return core;
}

TEST(Containers, DeepNestingIsFreedComparedAndPrinted) {
  Value deep = nested(100'000, "core");
  EXPECT_TRUE(deep.description().Contains("…"));
  EXPECT_LT(deep.description().Length(), 2000);
  deep = Value();

  const auto lists = [](const char* core) {
    Value v = core;
    for (int i = 0; i < 100'000; ++i)
      v = i % 2 ? Value(platform::makeShared<ArrayStore>(std::vector<Value>{v}))
                : Value(readOnly({{"k", v}}));
    return v;
  };
  EXPECT_TRUE(lists("a").isEqual(lists("a")));
  EXPECT_FALSE(lists("a").isEqual(lists("b")));

  auto dictionary = platform::makeShared<Dictionary>();
  for (int i = 0; i < 100'000; ++i)
    dictionary = platform::makeShared<Dictionary>(Dictionary::Entries{{"k", dictionary}});
  EXPECT_EQ(KesMap::convertToMap(*dictionary).Size(), 1);
}

TEST(Containers, OneThatHoldsItselfIsPrintedAndCompared) {
  const auto holdingItself = [](int first) {
    KesList l;
    l.Initialize();
    l.Add(first);
    l.Add(l);
    return l;
  };
  KesList l = holdingItself(1), alike = holdingItself(1), other = holdingItself(2);
  EXPECT_EQ(l.description(), "<KesList: [1, <KesList: …>]>");
  EXPECT_TRUE(Value(l) == Value(alike));
  EXPECT_FALSE(Value(l) == Value(other));
  for (auto* list : {&l, &alike, &other}) list->Clear();
}

TEST(Containers, CompareByContents) {
  const Value a(KesList::of({1, "x", Value()})), b(KesList::of({1.0, "x", Value::null()}));
  EXPECT_EQ(a, b);
  EXPECT_EQ(a,
            Value(platform::makeShared<ArrayStore>(std::vector<Value>{true, "x", Value::null()})));
  EXPECT_FALSE(a == Value(KesList::of({1, "x"})));
  EXPECT_EQ(Value(readOnly({{"a", 1}, {"b", a}})), Value(readOnly({{"b", b}, {"a", 1}})));
  EXPECT_FALSE(Value(readOnly({{"a", 1}})) == Value(readOnly({{"b", 1}})));
  EXPECT_FALSE(Value(readOnly({})) == Value(KesList::of({})));
}

TEST(Array, OfSeveralDimensions) {
  const auto a = KesArray::initObjects({2, 3, 4});
  EXPECT_EQ(a->Length(), 24);
  EXPECT_TRUE(a->getObject({1, 2, 3}).isNil());
  int n = 0;
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 4; ++k) a->setObject({i, j, k}, n++);
  EXPECT_EQ(a->getObject({1, 0, 2}), 14);
  EXPECT_EQ(a->getObjectFast(23), 23);
  EXPECT_EQ(thrownBy([&] { a->getObject({0, 3, 0}); }), "Out of bounds. Index=3 Length=3");
  EXPECT_EQ(thrownBy([&] { a->setObject({-1, 0, 0}, 0); }), "Out of bounds. Index=-1 Length=2");
  EXPECT_NE(thrownBy([&] { a->getObject({1, 1}); }), "");

  const auto grid = KesArray::initObjects({3, 2}, 0);
  grid->setObject2FastN(2, 1, 2.5);
  EXPECT_EQ(grid->getObject2FastN(2, 1), 2.5);
  EXPECT_EQ(grid->getObjectFastN(5), 2.5);
  EXPECT_EQ(grid->getObject2FastN(0, 0), 0);
  EXPECT_EQ(thrownBy([&] { grid->getObject2FastN(0, 2); }), "Out of bounds. Index=2 Length=2");
  EXPECT_NE(thrownBy([] { KesArray::initObjects({-1}); }), "");
  EXPECT_NE(thrownBy([] { KesArray::initBytes({1 << 20, 1 << 20}); }), "");
  EXPECT_NE(thrownBy([] { KesArray::initBytes({0, 1 << 20, 1 << 20}); }), "");
  EXPECT_EQ(KesArray::initBytes({3, 0})->Length(), 0);
}

TEST(Array, FastAccessIsTested) {
  const auto a = KesArray::initObjects({2});
  const auto bytes = KesArray::initBytesWithData({1, 255});
  const std::string text = "Out of bounds. Index=2 Length=2";
  EXPECT_EQ(thrownBy([&] { a->getObjectFast(2); }), text);
  EXPECT_EQ(thrownBy([&] { a->getObjectFastN(2); }), text);
  EXPECT_EQ(thrownBy([&] { a->setObjectFast(2, 1); }), text);
  EXPECT_EQ(thrownBy([&] { a->setObjectFastN(2, 1); }), text);
  EXPECT_EQ(thrownBy([&] { bytes->getByteFast(2); }), text);
  EXPECT_EQ(thrownBy([&] { bytes->setByteFast(-1, 0); }), "Out of bounds. Index=-1 Length=2");
  bytes->setByteFast(0, 200);
  EXPECT_EQ(bytes->getByteFast(0), 200);
  EXPECT_EQ(bytes->bytesData(), (std::vector<std::uint8_t>{200, 255}));
  EXPECT_TRUE(a->getObjectFast(0).isNil());
  EXPECT_EQ(a->getObjectFastN(0), 0);
}

TEST(Array, BecomesAListWithoutACopy) {
  const auto a = KesArray::initObjectsWithData({"b", Value(), "a"});
  const auto list = Kes::ArrayToList(a).as<KesList>();
  ASSERT_TRUE(list);
  list->Set(1, "c");
  EXPECT_EQ(a->getObjectFast(1), "c");
  list->Sort(true);
  EXPECT_EQ(a->getObjectFast(0), "a");
  EXPECT_EQ(thrownBy([] { Kes::ArrayToList(KesArray::initBytes({2})); }),
            "Cannot convert array of bytes to List.");
  EXPECT_TRUE(Kes::ArrayToList(platform::makeShared<KesArray>()).isNil());
  EXPECT_EQ(KesList::fromBoxed(a).Size(), 3);
  EXPECT_FALSE(KesList::fromBoxed(Value::null()).IsInitialized());
  EXPECT_THAT(thrownBy([] { KesList::fromBoxed("text"); }), StartsWith("Invalid object type|"));
}

}  // namespace
