#include "component_fixture.h"
#include "runtime/core/array.h"

using namespace kes;

namespace {

// Counts the locals of parked subs that are alive.
struct Local {
  explicit Local(int& n) : count(n) { ++count; }
  ~Local() { --count; }
  int& count;
};

class Worker : public KesClass {
 public:
  void _initialize() { initializeClassModule(); }
  static void describe(ClassBuilder<Worker>& c) {
    c.name("kes_worker");
    c.sub<&Worker::_jobdone>("jobdone");
    c.sub<&Worker::_start>("start");
    c.sub<&Worker::failsAtOnce>("failsatonce");
  }

  Trace trace;
  int alive = 0;

  void _jobdone(Value) { trace.push_back("unclaimed"); }
  Resumable<> _start() {
    trace.push_back("start");
    co_await sleep(10);
    trace.push_back("slept");
  }
  // The wait must be all that knows the sender, so it comes as a bare address.
  Resumable<> waitJob(std::string name, Shared* filter) {
    Local local(alive);
    const Value got = co_await waitFor<Value>("jobdone:", Value(Ref<Shared>(filter)));
    trace.push_back(name + " got " + got.description().str());
  }
  Resumable<Text> answer(Text text, int wait) {
    Local local(alive);
    if (wait >= 0) co_await sleep(wait);
    trace.push_back("answered");
    co_return text;
  }
  Resumable<Value> nothing() { co_return Value(); }
  Resumable<> ask(Text text, int wait) {
    auto got = co_await waitFor<Text>("complete:", answer(text, wait));
    trace.push_back("heard " + got.str());
  }
  Resumable<> askNothing() {
    const Value got = co_await waitFor<Value>("complete:", nothing());
    trace.push_back(got.isNil() ? "nil" : "something");
  }
  Resumable<> guarded() {
    try {
      const int n = co_await waitFor<int>("number:");
      trace.push_back("number " + std::to_string(n));
      co_await sleep(1);
      throw KesException("too late");
    } catch (const std::exception& e) {
      Kes::SetException(e);
      trace.push_back("caught " + c().LastException().Message().str());
    }
  }
  Resumable<> unguarded() {
    Local local(alive);
    co_await sleep(1);
    throw KesException("out of the task");
  }
  Resumable<> failsAtOnce() {
    Local local(alive);
    throw KesException("at once");
    co_return;
  }
  Resumable<> two() {
    auto [page, ok] = co_await waitFor<Text, bool>("page::");
    trace.push_back(page.str() + (ok ? " yes" : " no"));
  }
  // Raises an event of its own while it unwinds.
  Resumable<> alarmed() {
    struct Alarm {
      Worker& worker;
      ~Alarm() {
        worker.trace.push_back("unwound");
        worker.bi()->raiseEvent(nullptr, "number:", std::vector<Value>{7});
      }
    } alarm{*this};
    co_await waitFor<int>("number:");
  }
  Resumable<> number() {
    trace.push_back("number " + std::to_string(co_await waitFor<int>("number:")));
  }
  Resumable<> selfish() {
    co_await waitFor("first");
    trace.push_back("in");
    bi()->raiseEvent(nullptr, "second", {});
    trace.push_back("out");
  }
  Resumable<> insistent(Value completed) {
    try {
      co_await waitFor("complete:", completed);
    } catch (const KesException& e) {
      trace.push_back(e.reason().str());
    }
    co_await sleep(0);
    trace.push_back("went on");
  }
  Resumable<> ordered() {
    co_await sleep(0);
    trace.push_back("slept");
  }
  Resumable<> clicks(std::string name) {
    co_await waitFor("msg_click:");
    trace.push_back(name);
    co_await waitFor("msg_click:");
    trace.push_back(name + " again");
  }
};

class ResumableTest : public ComponentTest {
 protected:
  ResumableTest() {
    ClassRegistry::instance().add<Worker>();
    worker = make<Worker>();
    worker->_initialize();
  }
  ~ResumableTest() override {
    if (worker) worker->bi()->cancelWaits();
  }
  void raise(Ref<Shared> sender, std::string_view event, std::vector<Value> params) {
    worker->bi()->raiseEvent(sender, event, params);
  }
  Ref<Shared> token() { return KesArray::initBytes({1}); }
  Ref<Worker> worker;
};

}  // namespace

TEST_F(ResumableTest, ReturnsAtTheFirstWaitAndGoesOnInALaterTask) {
  worker->_start();
  worker->trace.push_back("returned");
  phone.drain();
  EXPECT_EQ(worker->trace, (Trace{"start", "returned"}));
  phone.advance(9);
  EXPECT_EQ(worker->trace.size(), 2u);
  phone.advance(1);
  EXPECT_EQ(worker->trace, (Trace{"start", "returned", "slept"}));
}

TEST_F(ResumableTest, EachWaiterWakesByItsOwnSenderBeforeOneThatTakesAny) {
  auto a = token(), b = token(), stranger = token();
  worker->waitJob("any", nullptr);
  worker->waitJob("a", a.get());
  worker->waitJob("b", b.get());
  raise(b, "jobdone:", {2});
  raise(stranger, "jobdone:", {3});
  raise(stranger, "jobdone:", {4});
  raise(a, "jobdone:", {1});
  EXPECT_EQ(worker->trace, (Trace{"b got 2", "any got 3", "unclaimed", "a got 1"}));
  EXPECT_EQ(worker->alive, 0);
}

TEST_F(ResumableTest, ARepeatedWaitDropsTheFirstSubAndUnwindsItsLocals) {
  auto a = token();
  worker->waitJob("first", a.get());
  EXPECT_EQ(worker->alive, 1);
  worker->waitJob("second", a.get());
  EXPECT_EQ(worker->alive, 1) << "the first sub's locals are unwound";
  raise(a, "jobdone:", {1});
  EXPECT_EQ(worker->trace, (Trace{"second got 1"}));
}

TEST_F(ResumableTest, WaitsOfDeadSendersAreSweptByTheNextWait) {
  auto a = token();
  worker->waitJob("a", a.get());
  a = nullptr;
  EXPECT_EQ(worker->alive, 1);
  EXPECT_EQ(worker->bi()->parkedCount(), 1u);
  worker->waitJob("any", nullptr);
  EXPECT_EQ(worker->alive, 1);
  EXPECT_EQ(worker->bi()->parkedCount(), 1u);
}

TEST_F(ResumableTest, ACalledSubThatFinishesAtOnceIsStillHeard) {
  worker->ask("now", -1);
  EXPECT_EQ(worker->trace, (Trace{"answered"}));
  phone.drain();
  EXPECT_EQ(worker->trace, (Trace{"answered", "heard now"}));
  worker->ask("later", 5);
  phone.advance(5);
  EXPECT_EQ(worker->trace.back(), "heard later");
  worker->askNothing();
  phone.drain();
  EXPECT_EQ(worker->trace.back(), "nil");
  EXPECT_EQ(worker->alive, 0);
}

TEST_F(ResumableTest, ATryAroundWaitsCatchesWhatComesAfterThem) {
  worker->guarded();
  raise(nullptr, "number:", {5});
  phone.advance(1);
  EXPECT_EQ(worker->trace, (Trace{"number 5", "caught too late"}));
}

TEST_F(ResumableTest, WithoutATryTheErrorReachesWhoeverResumed) {
  worker->unguarded();
  EXPECT_EQ(worker->alive, 1);
  phone.advance(1);
  EXPECT_EQ(faults, (Trace{"out of the task"}));
  EXPECT_EQ(worker->alive, 0);
}

TEST_F(ResumableTest, AnErrorBeforeTheFirstWaitIsNeverLost) {
  EXPECT_THROW(worker->failsAtOnce().orThrow(), KesException);
  EXPECT_THROW(worker->bi()->raiseEvent(nullptr, "failsatonce", {}), KesException);
  worker->failsAtOnce();
  phone.drain();
  EXPECT_EQ(faults, (Trace{"at once"}));
  EXPECT_EQ(worker->alive, 0);
}

TEST_F(ResumableTest, ParametersArriveByTypeAndPosition) {
  worker->two();
  raise(nullptr, "page::", {"home", 1});
  EXPECT_EQ(worker->trace, (Trace{"home yes"}));
}

TEST_F(ResumableTest, OneEventWakesOneSub) {
  worker->clicks("a");
  worker->clicks("b");
  EXPECT_EQ(worker->bi()->parkedCount(), 1u) << "the same wait again drops the earlier sub";
  raise(nullptr, "msg_click:", {"OK"});
  EXPECT_EQ(worker->trace, (Trace{"b"}));
  raise(nullptr, "msg_click:", {"OK"});
  EXPECT_EQ(worker->trace, (Trace{"b", "b again"}));
}

// Symptom: a sub was entered again while it ran.
TEST_F(ResumableTest, OnlyAParkedSubIsWoken) {
  const auto sub = worker->selfish().sub();
  WaitFor("second", *worker->bi(), sub, Value());
  WaitFor("third", *worker->bi(), sub, Value());
  raise(nullptr, "first", {});
  raise(nullptr, "third", {});
  EXPECT_EQ(worker->trace, (Trace{"in", "out"}));
  EXPECT_EQ(sub->state, -1);
  EXPECT_EQ(worker->bi()->parkedCount(), 0u);
}

TEST_F(ResumableTest, AReplacedSubMayWakeItsSuccessorWhileItUnwinds) {
  worker->alarmed();
  worker->number();
  EXPECT_EQ(worker->trace, (Trace{"unwound", "number 7"}));
  EXPECT_EQ(worker->bi()->parkedCount(), 0u);
}

TEST_F(ResumableTest, ASubThatCouldNotBeParkedGoesOnWithTheError) {
  auto completed = worker->answer("x", -1).intoValue();
  phone.drain();
  EXPECT_TRUE(completed.as<KesResumableSubWrapper>()->Completed());
  worker->insistent(completed);
  phone.drain();
  EXPECT_EQ(worker->trace, (Trace{"answered", "Resumable sub already completed", "went on"}));
  const auto blank = make<Worker>();
  EXPECT_EQ(thrownBy([&] { blank->number().orThrow(); }),
            "Object was not initialized (kes_worker)");
}

// Everything that is to happen later stands in one line.
TEST_F(ResumableTest, PostedCallsSleepsAndCompletionsKeepTheirOrder) {
  worker->ordered();
  worker->c().CallSubDelayed2(worker->bi(), worker, "jobdone", 1);
  worker->ask("second", -1);
  worker->bi()->raiseUIEvent(nullptr, "jobdone:", {2});
  worker->ordered();
  EXPECT_EQ(worker->trace, (Trace{"answered"}));
  phone.drain();
  EXPECT_EQ(worker->trace,
            (Trace{"answered", "slept", "unclaimed", "heard second", "unclaimed", "slept"}));
}

TEST_F(ResumableTest, WhatCompletesAfterItsWaiterHasGoneIsHeardByNobody) {
  const Ref<Worker> other = std::exchange(worker, nullptr);
  auto asker = make<Worker>();
  asker->_initialize();
  auto call = other->answer("late", 5).intoValue();
  asker->insistent(call);
  asker->bi()->cancelWaits();
  asker = nullptr;
  EXPECT_EQ(phone.lines(), (Trace{"Class (kes_worker) instance released."}));
  call = Value();
  phone.advance(5);
  EXPECT_EQ(other->trace, (Trace{"answered"}));
  EXPECT_TRUE(faults.empty());
}

TEST_F(ResumableTest, CancelsAcrossEverySuspension) {
  auto a = token();
  worker->waitJob("parked", a.get());
  worker->answer("asleep", 100);
  EXPECT_EQ(worker->alive, 2);
  worker->bi()->cancelWaits();
  EXPECT_EQ(worker->bi()->parkedCount(), 0u);
  EXPECT_EQ(worker->alive, 1);
  phone.platform().mainQueue().close();
  EXPECT_EQ(worker->alive, 0);
}

TEST_F(ResumableTest, ASubKeepsItsOwnerAlive) {
  worker->_start();
  WeakRef<Worker> weak(worker);
  worker = nullptr;
  EXPECT_TRUE(weak.lock());
  phone.advance(10);
  EXPECT_FALSE(weak.lock());
}
