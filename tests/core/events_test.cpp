#include <thread>

#include "component_fixture.h"
#include "runtime/core/array.h"
#include "runtime/core/list.h"

using namespace kes;

namespace {

struct Point2 {
  float x, y;
};

// Answers to a few subs and writes down what reached it.
class Listener : public KesClass {
 public:
  void _initialize() { initializeClassModule(); }
  static void describe(ClassBuilder<Listener>& c) {
    c.name("kes_listener");
    c.sub<&Listener::_menu_itemclick>("menu_itemclick");
    c.sub<&Listener::_application_active>("application_active");
    c.sub<&Listener::_outer>("outer");
    c.sub<&Listener::_numbers>("numbers");
    c.sub<&Listener::_shape>("shape");
    c.sub<&Listener::_fails>("fails");
    c.sub<&Listener::_list>("list");
    c.sub<&Listener::_ends>("ends");
    c.sub<&Listener::_parks>("parks");
    c.sub<&Listener::_who>("who");
    c.sub<&Listener::returns<bool>>("bool");
    c.sub<&Listener::returns<signed char>>("signed_char");
    c.sub<&Listener::returns<unsigned char>>("unsigned_char");
    c.sub<&Listener::returns<short>>("short");
    c.sub<&Listener::returns<unsigned short>>("unsigned_short");
    c.sub<&Listener::returns<int>>("int");
    c.sub<&Listener::returns<unsigned>>("unsigned");
    c.sub<&Listener::returns<std::int64_t>>("int64");
    c.sub<&Listener::returns<std::uint64_t>>("uint64");
    c.sub<&Listener::returns<float>>("float");
    c.sub<&Listener::returns<double>>("double");
    c.field<&Listener::_name>("name");
    c.field<&Listener::_count>("count");
    c.field<&Listener::_open>("open");
  }
  int _menu_itemclick(int index, Value value) {
    trace.push_back("menu " + std::to_string(index) + " " + value.description().str());
    return index * 2;
  }
  void _application_active() { trace.push_back("active"); }
  void _outer() {
    trace.push_back("outer by " + Kes::sender().description().str());
    bi()->raiseEvent(nullptr, "application_active", {});
    trace.push_back("then by " + Kes::sender().description().str());
  }
  Value _numbers(bool b, signed char c, unsigned char uc, short s, unsigned short us, int i,
                 std::int64_t q, double d, float f) {
    trace.push_back((b ? "true " : "false ") + std::to_string(c) + " " + std::to_string(uc) + " " +
                    std::to_string(s) + " " + std::to_string(us) + " " + std::to_string(i) + " " +
                    std::to_string(q) + " " + Value(d).description().str() + " " +
                    Value(f).description().str());
    return {};
  }
  Point2 _shape(Point2 p) { return {p.y, p.x}; }
  void _fails() {
    if (senderRef) *senderRef = nullptr;
    throw KesException("broken");
  }
  KesList _list(KesList l) { return l; }
  template <class T>
  T returns() {
    return static_cast<T>(200.5);
  }
  // Lets the last reference to its own instance go and still asks for a call.
  void _ends() {
    *ownRef = nullptr;
    c().CallSubDelayed(bi(), self(), "application_active");
    trace.push_back("ended");
  }
  Resumable<> _parks() {
    co_await waitFor("wake");
    throw KesException("broken after the wait");
  }
  void _who() { trace.push_back("by " + Kes::sender().description().str()); }

  Trace trace;
  Ref<Shared>* senderRef = nullptr;  // let go by _fails
  Ref<Listener>* ownRef = nullptr;   // let go by _ends
  Text _name = "n";
  std::int32_t _count = 7;
  bool _open = true;
};

class EventsTest : public ComponentTest {
 protected:
  EventsTest() {
    ClassRegistry::instance().add<Listener>();
    listener = make<Listener>();
    listener->_initialize();
  }
  Value raise(std::string_view event, std::vector<Value> params = {}) {
    return listener->bi()->raiseEvent(nullptr, event, params);
  }
  Ref<Listener> listener;
};

}  // namespace

TEST_F(EventsTest, NamesSelectSubsByColonsAndMissingOnesAreNoError) {
  EXPECT_EQ(raise("menu_itemclick::", {3, "x"}), Value(6));
  EXPECT_TRUE(raise("menu_itemclick:", {3}).isNil());
  EXPECT_TRUE(raise("nobody").isNil());
  raise("application_active");
  EXPECT_EQ(listener->trace, (Trace{"menu 3 x", "active"}));
  EXPECT_TRUE(listener->bi()->hasMethod("menu_itemclick::"));
  EXPECT_FALSE(listener->bi()->hasMethod("menu_itemclick"));
  EXPECT_TRUE(phone.lines().empty() && faults.empty()) << "nobody is told of what is missing";
  EXPECT_EQ(thrownBy([&] { listener->bi()->errorIfMissingEvent("st", "_newdata:"); }),
            "st_newdata: event not found.");
}

TEST_F(EventsTest, ParametersAreCutToTheDeclaredTypes) {
  raise("numbers:::::::::", {2, 300, 200, 70000, 70000, std::int64_t{1} << 33, 5.9, 7, 0.5});
  EXPECT_EQ(listener->trace, (Trace{"true 1 200 4464 4464 0 5 7 0.5"}))
      << "a signed char is the platform's Boolean";
  EXPECT_EQ(thrownBy([&] {
              raise("menu_itemclick::", {Value::null(), 1});
            }),
            "Invalid object type|Expected: NSNumber, object type: <null>");
  raise("menu_itemclick::", {1, Value::null()});
  EXPECT_EQ(listener->trace.back(), "menu 1 null") << "the null object arrives as nil";
}

TEST_F(EventsTest, ResultsAreBoxedByTheDeclaredType) {
  struct {
    const char* sub;
    NumberType type;
    double value;
  } cases[] = {
      {"bool", NumberType::Bool, 1},
      {"signed_char", NumberType::Bool, 1},
      {"unsigned_char", NumberType::UnsignedChar, 200},
      {"short", NumberType::Short, 200},
      {"unsigned_short", NumberType::UnsignedShort, 200},
      {"int", NumberType::Int, 200},
      {"unsigned", NumberType::Int, 200},
      {"int64", NumberType::LongLong, 200},
      {"uint64", NumberType::LongLong, 200},
      {"float", NumberType::Float, 200.5},
      {"double", NumberType::Double, 200.5},
  };
  for (const auto& [sub, type, value] : cases) {
    const Value result = raise(sub);
    EXPECT_EQ(static_cast<char>(result.numberType()), static_cast<char>(type)) << sub;
    EXPECT_EQ(result.asDouble(), value) << sub;
  }
}

TEST_F(EventsTest, StructuresTravelAsByteBuffers) {
  const Point2 p{1, 2};
  const Value swapped = raise("shape:", {detail::bytesValue(&p, sizeof p)});
  Point2 back{};
  ASSERT_TRUE(detail::bytesOf(swapped, &back, sizeof back));
  EXPECT_EQ(back.x, 2);
  EXPECT_EQ(thrownBy([&] { raise("shape:", {1}); }), "Unsupported type|Unsupported type Point2");
}

TEST_F(EventsTest, SenderIsThatOfTheInnermostEventAndNullAfterIt) {
  listener->bi()->raiseEvent(listener->self(), "outer", {});
  EXPECT_EQ(listener->trace,
            (Trace{"outer by [name=n, count=7, open=1]", "active", "then by <null>"}));
  EXPECT_TRUE(Kes::sender().isNull());
}

// Symptom: the sender was read after it had ended when what it had raised threw.
TEST_F(EventsTest, AnEventThatThrowsLeavesItsSenderSetUntilTheNextOne) {
  const Ref<Kes> orphan = platform::makeShared<Kes>();
  listener->_parks();
  struct {
    const char* event;
    Kes& bi;
    const char* error;
  } cases[] = {
      {"fails", *listener->bi(), "broken"},
      {"wake", *listener->bi(), "broken after the wait"},
      {"who", *orphan, "null object|Target is null. Method called: _who"},
  };
  for (const auto& [event, bi, error] : cases) {
    SCOPED_TRACE(event);
    Ref<Shared> sender = KesArray::initObjectsWithData({event});
    const WeakRef<Shared> watched(sender);
    if (event == std::string_view("fails")) listener->senderRef = &sender;  // goes in the handler
    EXPECT_EQ(thrownBy([&, &bi = bi, &event = event] { bi.raiseEvent(sender, event, {}); }), error);
    sender = nullptr;
    EXPECT_EQ(Kes::sender().description(), "[" + std::string(event) + "]");
    raise("who");
    EXPECT_EQ(listener->trace.back(), "by <null>");
    EXPECT_TRUE(watched.expired()) << "kept for nothing";
  }
}

TEST_F(EventsTest, AnInstanceMayEndItselfInItsOwnHandlerAndStillFinish) {
  auto* raw = listener.get();
  raw->ownRef = &listener;
  Trace* trace = &raw->trace;
  Trace seen;
  const Ref<Kes> bi = raw->bi();
  bi->raiseEvent(nullptr, "ends", {});
  EXPECT_FALSE(listener);
  EXPECT_TRUE(phone.lines().empty()) << "the call that it asked for keeps it";
  phone.platform().mainQueue().post([&] { seen = phone.lines(); });
  EXPECT_EQ(*trace, (Trace{"ended"}));
  phone.drain();
  EXPECT_EQ(seen, (Trace{"Class (kes_listener) instance released."}));
  EXPECT_FALSE(bi->eventsTarget());
  EXPECT_TRUE(faults.empty());
}

TEST_F(EventsTest, OnlyTheQueueBringsEventsFromOtherThreadsInTheirOrder) {
  std::string error;
  std::thread([&] {
    error = thrownBy([&] { raise("application_active"); });
    listener->bi()->raiseUIEvent(nullptr, "application_active", {});
  }).join();
  EXPECT_EQ(error, "application_active was raised off the main thread");
  listener->bi()->raiseEventFromDifferentThread(nullptr, "menu_itemclick::", {1, "a"});
  listener->bi()->raiseUIEvent(nullptr, "application_active", {});
  EXPECT_TRUE(listener->trace.empty()) << "later, even from the main thread";
  phone.drain();
  EXPECT_EQ(listener->trace, (Trace{"active", "menu 1 a", "active"}));
}

TEST_F(EventsTest, SizesFollowThePanelThatWasLaidOutLastThenTheWindow) {
  struct Panel : Object, PageSized {
    double pageWidth() const override { return 320; }
    double pageHeight() const override { return 500; }
  };
  auto& c = KesCommon::shared();
  const auto former = std::exchange(c.windowSize, [] { return std::pair(100.0, 200.0); });
  auto panel = platform::makeShared<Panel>();
  Kes& bi = *listener->bi();
  bi.raiseEvent(panel, "home_appear", {});
  bi.raiseEvent(listener, "home_resize::", {});
  EXPECT_EQ(c.PerXToCurrent(50), 50);
  bi.raiseEvent(panel, "home_resize::", {});
  EXPECT_EQ(c.PerXToCurrent(50), 160);
  EXPECT_EQ(c.PerYToCurrent(10), 50);
  panel = nullptr;
  EXPECT_EQ(c.PerYToCurrent(10), 20);
  c.windowSize = former;
}

TEST_F(EventsTest, WhatDiedBeforeItsTurnIsDroppedAndFaultsDoNotStopTheQueue) {
  auto other = make<Listener>();
  other->_initialize();
  other->bi()->raiseUIEvent(nullptr, "application_active", {});
  other = nullptr;
  listener->bi()->raiseUIEvent(nullptr, "fails", {});
  listener->bi()->raiseUIEvent(nullptr, "application_active", {});
  phone.drain();
  EXPECT_EQ(faults, (Trace{"broken"}));
  EXPECT_EQ(listener->trace, (Trace{"active"}));
  EXPECT_EQ(phone.lines(), (Trace{"Class (kes_listener) instance released."}));
}

TEST_F(EventsTest, CallSubReachesComponentsOnly) {
  auto& c = KesCommon::shared();
  EXPECT_EQ(c.CallSub3(listener->bi(), listener, "Menu_ItemClick", 4, "y"), Value(8));
  EXPECT_TRUE(c.SubExists(listener->bi(), listener, "MENU_ItemClick", 2));
  EXPECT_FALSE(c.SubExists(listener->bi(), listener, "menu_itemclick", 1));
  EXPECT_EQ(thrownBy([&] { c.CallSub(listener->bi(), KesMap(), "x"); }).substr(0, 18),
            "Invalid component:");
  EXPECT_EQ(c.CallSub2(listener->bi(), listener, "list", KesList::of({1})).as<ArrayStore>()->size(),
            1u)
      << "what a wrapper holds comes back, not the wrapper";
  EXPECT_TRUE(c.CallSub(listener->bi(), make<Listener>(), "who").isNil()) << "not initialised";
  c.CallSub(listener->bi(), listener, "Who");
  EXPECT_EQ(listener->trace.back(), "by " + listener->description().str());
  listener->trace.pop_back();
  c.CallSubDelayed2(listener->bi(), listener, "application_active", 1);
  c.CallSubDelayed(listener->bi(), listener, "application_active");
  EXPECT_EQ(listener->trace.size(), 1u);
  phone.drain();
  EXPECT_EQ(listener->trace, (Trace{"menu 4 y", "active"}));
}

TEST_F(EventsTest, WrappersShareTheirObjectItsTagAndItsEquality) {
  KesList a, b;
  EXPECT_FALSE(a.IsInitialized());
  EXPECT_EQ(thrownBy([&] { a.object(); }), "Object was not initialized (NSArray)");
  EXPECT_TRUE(a.isEqual(Value(b))) << "both empty";
  a.Initialize();
  b.Initialize2(a);
  a.setTag("t");
  EXPECT_EQ(b.Tag(), Value("t"));
  b.setTag(nullptr);
  EXPECT_TRUE(a.Tag().isNil());
  EXPECT_TRUE(Value(a).isEqual(Value(b)));
  EXPECT_EQ(thrownBy([&] { a.setObject(listener); }),
            "Invalid object type|Expected: NSArray, object type: kes_listener");
  EXPECT_EQ(thrownBy([&] { a.setObject(Value::null()); }),
            "Invalid object type|Expected: NSArray, object type: NSNull");
  EXPECT_TRUE(a.IsInitialized()) << "what was refused changes nothing";
  a.setObject(nullptr);
  EXPECT_FALSE(a.IsInitialized());
  EXPECT_EQ(thrownBy([&] { a.setTag(1); }), "Object was not initialized (NSArray)");

  KesList sent;
  sent.Initialize();
  const Value returned = raise("list:", {Value(sent)});
  KesList::fromBoxed(returned).Add(5);
  EXPECT_EQ(sent.Size(), 1) << "a list by value is a view of the same store";
}

TEST_F(EventsTest, NativeObjectsReadAndWriteFieldsByName) {
  KesNativeObject native;
  native.setObject(listener);
  native.SetField("_count", 9);
  EXPECT_EQ(listener->_count, 9);
  EXPECT_EQ(native.GetField("_name").object(), Value("n"));
  EXPECT_EQ(native.RunMethod("_menu_itemclick::", KesArray::initObjectsWithData({5, "z"})).object(),
            Value(10));
  native.SetField("Open", false);
  EXPECT_FALSE(listener->_open) << "by the application's name";
  EXPECT_TRUE(Kes::runDynamicMethod(listener.get(), "_x:", false, {}).isNil());
  struct {
    const char* name;
    std::function<void()> act;
    const char* error;
  } cases[] = {
      {"method", [&] { native.RunMethod("fly:", nullptr); },
       "method not found|Method not found: fly:, target: [name=n, count=9, open=0]"},
      {"nothing", [] { Kes::runDynamicMethod(nullptr, "_x:", false, {}); },
       "null object|Target is null. Method called: _x:"},
      {"read", [&] { native.GetField("wings"); },
       "method not found|Method not found: wings, target: [name=n, count=9, open=0]"},
      {"write", [&] { native.SetField("wings", 2); },
       "method not found|Method not found: wings, target: [name=n, count=9, open=0]"},
      {"text", [&] { native.GetField("_name").RunMethod("fly:", nullptr); },
       "method not found|Method not found: fly:, target: n"},
      {"no class", [&] { native.Initialize("Nobody").RunMethod("new", nullptr); },
       "Object was not initialized (NSObject)"},
  };
  for (const auto& [name, act, error] : cases) EXPECT_EQ(thrownBy(act), error) << name;
  native.Initialize("kes_listener");
  EXPECT_EQ(native.object().description(), "kes_listener");
  const auto one = native.RunMethod("new", nullptr), two = native.RunMethod("new", nullptr);
  EXPECT_TRUE(one.object().as<Listener>());
  EXPECT_NE(one.object(), two.object());
}

TEST_F(EventsTest, AttachedEventsOfObjectsWhoseKesHasGoneAreSilent) {
  KesList owner;
  owner.Initialize();
  Shared& object = *owner.object().object();
  KesObjectWrapper::setBIAndEventName(object, listener->bi(), "MENU");
  EXPECT_TRUE(KesObjectWrapper::hasMethod(object, "_itemclick::"));
  owner.setTag(7);
  auto& map = KesObjectWrapper::getMap(object);
  map.set("delegate", "d");
  EXPECT_EQ(map.get("bi"), Value(listener->bi()));
  EXPECT_EQ(map.get("eventName"), Value("menu"));
  EXPECT_EQ(map.get("tag"), Value(7));
  EXPECT_EQ(map.get("delegate"), Value("d"));
  const Value params[] = {1, "v"};
  EXPECT_EQ(KesObjectWrapper::raiseEvent(object, "_itemclick::", params), Value(2));
  listener = nullptr;
  EXPECT_TRUE(map.get("bi").isNil());
  EXPECT_TRUE(KesObjectWrapper::raiseEvent(object, "_itemclick::", params).isNil());
  KesObjectWrapper::raiseUIEvent(object, "_itemclick::", {1, "v"});
  phone.drain();
  EXPECT_TRUE(faults.empty());
}
