#include <algorithm>

#include "component_fixture.h"

using namespace kes;

namespace {

template <class Map>
concept WalkedWhenItIsGone = requires(Map map) {
  std::move(map).table();
};
static_assert(!WalkedWhenItIsGone<KesMap>);

Trace* told = nullptr;  // of the test that runs

class Shell final : public Module<Shell> {
 public:
  static void describe(ClassBuilder<Shell>& c) { c.name("kes_test_shell"); }
  void initializeStaticModules() override { initializeModule(); }
  void _process_globals() override {
    if (told) told->push_back("globals of the shell");
  }
};

class Section final : public Module<Section> {
 public:
  static void describe(ClassBuilder<Section>& c) { c.name("kes_test_section"); }
};

class Item : public KesClass {
 public:
  static void describe(ClassBuilder<Item>& c) {
    c.name("kes_test_item");
    c.sub<&Item::_name>("name");
  }
  void _initialize(Text name) {
    initializeClassModule();
    _itsname = std::move(name);
  }
  void _class_globals() override { told->push_back("globals after " + _itsname.str()); }
  Text _name() { return _itsname; }
  Text _itsname;
};

// Answers to what its base answers to, and to one more.
class SpecialItem final : public Item {
 public:
  static void describe(ClassBuilder<SpecialItem>& c) {
    c.name("kes_test_specialitem");
    c.base<Item>();
    c.sub<&SpecialItem::_price>("price");
  }
  int _price() { return 5; }
};

class ModulesTest : public ComponentTest {
 protected:
  ModulesTest() {
    ClassRegistry::instance().addAll<Shell, Section, Item, SpecialItem>();
    told = &trace;
  }
  ~ModulesTest() override { told = nullptr; }
  Trace trace;
};

TEST_F(ModulesTest, AModuleIsOneObjectWithOneKesAndRunsItsGlobalsWhenTold) {
  auto& shell = Shell::instance();
  EXPECT_EQ(ClassRegistry::instance().find("kes_test_shell")->make().get(), &shell);
  EXPECT_EQ(&Shell::instance(), &shell);
  EXPECT_EQ(shell.bi(), Shell::instance().bi());
  EXPECT_EQ(shell.bi()->eventsTarget().get(), shell.object().get());
  EXPECT_NE(shell.bi(), Section::instance().bi());
  EXPECT_TRUE(trace.empty());
  shell.initializeStaticModules();
  EXPECT_EQ(trace, (Trace{"globals of the shell"}));
  EXPECT_EQ(thrownBy([] { Section::instance().initializeStaticModules(); }), "Must override")
      << "only the main module makes the others";
}

TEST_F(ModulesTest, AnInstanceGetsItsKesOnceAndItsGlobalsEachTime) {
  auto item = make<Item>();
  EXPECT_FALSE(item->IsInitialized());
  item->_initialize("a");
  const auto bi = item->bi();
  EXPECT_TRUE(item->IsInitialized());
  EXPECT_EQ(bi->eventsTarget(), item);
  item->_initialize("b");
  EXPECT_EQ(item->bi(), bi);
  EXPECT_EQ(bi->raiseEvent(nullptr, "name", {}), Value("b"));
  EXPECT_EQ(trace, (Trace{"globals after ", "globals after a"}));
  EXPECT_NE(make<Item>("c")->bi(), bi);
}

// Symptom: an event for a class that nobody had registered vanished without a word.
TEST_F(ModulesTest, MistakesInClassTablesAreTold) {
  class Forgotten : public KesClass {
   public:
    void _initialize() { initializeClassModule(); }
  };
  for (int i = 0; i < 2; ++i) {
    const auto forgotten = make<Forgotten>();
    forgotten->_initialize();
    for (int n = 0; n < 3; ++n) forgotten->bi()->raiseEvent(nullptr, "click:", {});
  }
  const auto lines = phone.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(),
                       "The class Forgotten is not in the registry: none of its subs hears an "
                       "event (the first one lost is click:)."),
            1)
      << "one line for the class";

  class Twice : public KesClass {
   public:
    static void describe(ClassBuilder<Twice>& c) {
      c.name("kes_twice");
      c.sub<&Twice::_first>("click");
      c.sub<&Twice::_other>("click");
      c.sub<&Twice::_second>("click");
    }
    void _first(int) {}
    void _other(int, int) {}
    void _second(Value) {}
  };
  EXPECT_EQ(thrownBy([] { ClassRegistry::instance().add<Twice>(); }),
            "kes_twice has two subs named _click:");
}

TEST_F(ModulesTest, OnlyWhatWasInitialisedTellsOfItsEnd) {
  make<Item>();
  EXPECT_TRUE(phone.lines().empty());
  make<Item>("a");
  make<SpecialItem>("b");
  EXPECT_EQ(phone.lines(), (Trace{"Class (kes_test_item) instance released.",
                                  "Class (kes_test_specialitem) instance released."}));
}

TEST_F(ModulesTest, ADerivedClassAnswersToTheSubsOfItsBase) {
  const auto item = make<SpecialItem>("b");
  EXPECT_EQ(item->bi()->raiseEvent(nullptr, "name", {}), Value("b"));
  EXPECT_EQ(item->bi()->raiseEvent(nullptr, "price", {}), Value(5));
  EXPECT_EQ(Kes::runDynamicMethod(item.get(), "_name", true, {}), Value("b"));
  EXPECT_FALSE(make<Item>("a")->bi()->hasMethod("price"));
}

}  // namespace
