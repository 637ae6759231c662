#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/base/main_queue.h"
#include "tests/support/test_platform.h"

using namespace platform;
using Order = std::vector<std::string>;

namespace {

class MainQueueTest : public testing::Test {
 protected:
  MainQueue::Task say(std::string what) {
    return [this, what] { order.push_back(what); };
  }
  VirtualClock clock;
  MainQueue queue{clock};
  Order order;
};

}  // namespace

TEST_F(MainQueueTest, RunsInTheOrderOfPostingIncludingWhatTasksPost) {
  queue.post([&] {
    order.push_back("first");
    queue.post(say("nested"));
  });
  queue.post(say("second"));
  queue.drain();
  EXPECT_EQ(order, (Order{"first", "second", "nested"}));
}

TEST_F(MainQueueTest, DelayedTasksJoinInTheOrderOfTheirTimes) {
  queue.postAfter(20, say("20"));
  queue.postAfter(10, say("10"));
  queue.postAfter(10, say("10 again"));
  queue.postAfter(30, say("30"));
  queue.postAfter(-5, say("at once"));
  queue.post(say("posted"));
  queue.drain();
  EXPECT_EQ(order, (Order{"at once", "posted"})) << "a delay of nothing must not be overtaken";
  EXPECT_EQ(queue.nextDue(), 10);

  order.clear();
  clock.advance(9);
  EXPECT_FALSE(queue.hasDueTask());
  clock.advance(11);
  queue.post(say("posted at 20"));
  clock.advance(10);
  queue.drain();
  EXPECT_EQ(order, (Order{"10", "10 again", "20", "posted at 20", "30"}));
  EXPECT_EQ(queue.nextDue(), std::nullopt);
}

TEST_F(MainQueueTest, GoesOnAfterATaskThatThrows) {
  std::vector<std::string> faults;
  queue.setFaultHandler([&](std::exception_ptr fault) {
    try {
      std::rethrow_exception(fault);
    } catch (const std::runtime_error& e) {
      faults.push_back(e.what());
    } catch (...) {
      faults.push_back("unknown");
    }
  });
  queue.post([] { throw std::runtime_error("broken"); });
  queue.post([] { throw 1; });
  queue.post(say("after"));
  queue.drain();
  EXPECT_EQ(faults, (Order{"broken", "unknown"}));
  EXPECT_EQ(order, Order{"after"});
  testing_support::TestPlatform platform;
  queue.setFaultHandler({});
  queue.post([] { throw std::runtime_error("rotto"); });
  queue.post([] { throw 1; });
  queue.drain();
  EXPECT_EQ(platform.lines(),
            (Order{"Unhandled error: rotto", "Unhandled error of an unknown kind"}));
}

TEST_F(MainQueueTest, PostAndWaitReturnsWhenTheTaskHasRun) {
  EXPECT_TRUE(queue.postAndWait(say("in place")));
  queue.setFaultHandler([](std::exception_ptr) {});
  bool ran = false, thrown = false, hopSeen = false, ended = false;
  std::thread other([&] {
    ran = queue.postAndWait([&] { order.push_back("hop"); });
    hopSeen = order.size() == 2;
    thrown = queue.postAndWait([] { throw std::runtime_error("in a hop"); });
    queue.post([&] { ended = true; });
  });
  while (!ended) {
    queue.waitForTask(10000);
    queue.runOne();
  }
  other.join();
  EXPECT_TRUE(ran);
  EXPECT_TRUE(hopSeen) << "it returned before the task had run";
  EXPECT_TRUE(thrown) << "a task that threw has run all the same";
  EXPECT_EQ(order, (Order{"in place", "hop"}));
}

TEST_F(MainQueueTest, ClosingLetsWaitingCallersGoAndRefusesNewTasks) {
  bool ran = true;
  std::thread waiting([&] { ran = queue.postAndWait(say("never")); });
  EXPECT_TRUE(queue.waitForTask(10000));
  queue.postAfter(5, say("never either"));
  auto kept = std::make_shared<int>(1);
  queue.post([kept] {});
  queue.close();
  waiting.join();
  EXPECT_FALSE(ran);
  EXPECT_EQ(kept.use_count(), 1) << "a dropped task must give back what it holds";
  queue.post(say("late"));
  EXPECT_FALSE(queue.postAndWait(say("late too")));
  clock.advance(10);
  queue.drain();
  EXPECT_EQ(order, Order{});
}

TEST_F(MainQueueTest, TellsTheWakerOfEachPost) {
  int woken = 0;
  queue.setWaker([&] { ++woken; });
  queue.post([] {});
  queue.postAfter(1, [] {});
  std::thread([&] { queue.post([] {}); }).join();
  EXPECT_EQ(woken, 3);
}

// Symptom: a wait of a second slept through a task that was due after 5 ms.
TEST(MainQueueOnTheRealClock, WaitsNoLongerThanTheNextDelayedTask) {
  SystemClock clock;
  MainQueue queue(clock);
  const auto start = clock.monotonic();
  queue.postAfter(5, [] {});
  EXPECT_TRUE(queue.waitForTask(60000));
  EXPECT_LT(clock.monotonic() - start, 30000);
  EXPECT_GE(clock.monotonic() - start, 5);
}
