#include "platform/url/url_teller.h"

#include <gmock/gmock.h>

#include <deque>

#include "tests/support/test_platform.h"

using namespace platform;

// A delegate queue that a test turns by hand, and a delegate that writes down what it is
// told and posts something of its own each time.
TEST(UrlTellerTurns, TellOneTaskEachAndThenWhatItsDelegatePosted) {
  struct Recorder final : UrlSessionDelegate {
    void finishedDownload(const UrlTask& task, const std::shared_ptr<const UrlResponse>&,
                          const std::shared_ptr<UrlBody>& body) override {
      order.push_back("body of " + task.description);
      kept = body;
      queue.push_back([this, name = task.description] { order.push_back("after " + name); });
      if (task.description == "b") throw std::runtime_error("in the delegate");
    }
    void completed(const UrlTask& task, const std::shared_ptr<const UrlResponse>&,
                   const std::string* error) override {
      EXPECT_FALSE(kept && kept->bytes()) << "the body goes before completed()";
      order.push_back("end of " + task.description + (error ? ": " + *error : ""));
    }
    std::optional<UrlCredential> credential(const UrlTask&) override { return {}; }
    void turn() {
      auto task = std::move(queue.front());
      queue.pop_front();
      task();
    }
    std::deque<std::function<void()>> queue;
    std::vector<std::string> order;
    std::shared_ptr<UrlBody> kept;
  };
  testing_support::TestPlatform place;
  auto delegate = std::make_shared<Recorder>();
  auto teller = std::make_shared<UrlTeller>(
      delegate, [&](auto task) { delegate->queue.push_back(std::move(task)); });
  const auto memory = std::make_shared<UrlBodyMemory>(1000);
  const auto downloads = std::make_shared<DownloadFolder>(place.folders().temporary);
  const auto end = [&](const char* name, std::optional<std::string> error = {}) {
    teller->added();
    std::vector<UrlOutcome> outcome{
        {std::make_shared<UrlTask>(UrlTask{{}, name}), std::make_shared<UrlResponse>(), error,
         error ? nullptr : std::make_shared<UrlBody>(downloads, memory)}};
    teller->ended(outcome);
  };
  end("a");
  end("b");
  end("c", "no connection");
  EXPECT_EQ(delegate->queue.size(), 1u) << "one turn at a time";
  delegate->turn();
  delegate->turn();
  EXPECT_THROW(delegate->turn(), std::runtime_error);
  end("d");
  while (!delegate->queue.empty()) delegate->turn();
  EXPECT_EQ(teller->underWay(), 0u);
  end("e");
  teller->end();
  delegate->turn();
  EXPECT_THAT(delegate->order,
              testing::ElementsAre("body of a", "end of a", "after a", "body of b", "end of b",
                                   "after b", "end of c: no connection", "body of d", "end of d",
                                   "after d", "end of e: cancelled"));
  EXPECT_EQ(teller->underWay(), 0u);
}
