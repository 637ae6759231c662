#include "platform/base/work_queue.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <stdexcept>
#include <vector>

#include "tests/support/test_platform.h"

using namespace platform;

TEST(SerialQueues, RunWhatWasPostedInOrderBeforeTheyEnd) {
  testing_support::TestPlatform platform;
  std::vector<int> order;
  std::vector<std::thread::id> threads;
  {
    SerialQueue queue("numbers");
    for (int i = 0; i < 100; ++i)
      queue.post([&, i] {
        order.push_back(i);
        threads.push_back(std::this_thread::get_id());
        if (i == 50) throw std::runtime_error("fifty");
        if (i == 51) throw 51;
      });
  }
  std::vector<int> expected(100);
  for (int i = 0; i < 100; ++i) expected[i] = i;
  EXPECT_EQ(order, expected);
  for (auto id : threads) {
    EXPECT_EQ(id, threads.front());
    EXPECT_NE(id, std::this_thread::get_id());
  }
  EXPECT_EQ(platform.lines(),
            (std::vector<std::string>{"numbers: task failed: fifty", "numbers: task failed"}));
}

// Symptom: the thread went on reading the queue's members after a task had dropped
// the last owner.
TEST(SerialQueues, MayEndFromATaskOfTheirOwn) {
  std::vector<int> order;
  std::promise<void> done;
  {
    auto queue = std::make_shared<SerialQueue>("own");
    auto* raw = queue.get();
    auto gate = std::make_shared<std::promise<void>>();
    raw->post([&, gate, owner = std::move(queue)]() mutable {
      gate->get_future().wait();
      order.push_back(1);
      owner.reset();
      order.push_back(4);
      done.set_value();
    });
    raw->post([&] { order.push_back(2); });
    raw->post([&, raw] {
      EXPECT_TRUE(raw->isOwnThread());
      order.push_back(3);
    });
    gate->set_value();
  }
  done.get_future().wait();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST(GlobalQueue, RunsTasksBesideEachOther) {
  std::promise<void> first, second;
  auto firstSeen = first.get_future();
  std::promise<void> done;
  // Each waits for the other: on one thread neither would end.
  globalPost([&] {
    first.set_value();
    second.get_future().wait();
    done.set_value();
  });
  globalPost([&] {
    firstSeen.wait();
    second.set_value();
  });
  done.get_future().wait();
}
