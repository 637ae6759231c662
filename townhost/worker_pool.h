// Threads for the connections: one each while it is open, kept for the next.
//
// A connection may stay open and idle for long, so a pool of a fixed small size
// would leave new ones waiting; this one grows as needed up to its limit and
// queues what is beyond. Owned by the server, which calls shutdown() once, after
// its last enqueue().
#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace town {

class WorkerPool final : public httplib::TaskQueue {
 public:
  explicit WorkerPool(std::size_t limit) : limit_(limit) {}
  ~WorkerPool() override { shutdown(); }

  void enqueue(std::function<void()> task) override;
  void shutdown() override;

 private:
  void work();

  const std::size_t limit_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
  std::size_t idle_ = 0;
  bool ending_ = false;
};

}  // namespace town
