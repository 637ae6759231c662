// The one queue on which all application code runs: first in, first out, with a
// delayed post.
//
// post(), postAfter() and postAndWait() may be called from any thread. Tasks run
// on the thread that calls drain() or runOne(), the main thread; a side wakes that
// thread through the waker it sets. Due delayed tasks join the end of the queue in
// the order of their due times. A task that throws is reported to the fault
// handler (default: one log line) and the queue goes on. Delays are milliseconds of
// the clock given at construction. The thread that constructs the queue is the main
// thread; it also sets the fault handler and ends the queue.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <queue>
#include <thread>
#include <vector>

#include "platform/base/clock.h"

namespace platform {

class MainQueue {
 public:
  using Task = std::function<void()>;

  explicit MainQueue(const Clock& clock);
  ~MainQueue();
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  void post(Task task) { offer(task); }
  // The same, but leaves the task with the caller when the queue is closed, and says so.
  bool offer(Task& task);
  void postAfter(std::int64_t milliseconds, Task task);
  // Runs the task on the main thread and returns when it has run; called on the
  // main thread it runs in place. False when the queue was closed first: the task
  // then has not run and never will.
  bool postAndWait(Task task);

  // Runs one due task; false when there is none.
  bool runOne();
  // Runs tasks until none is due. Tasks posted meanwhile run as well.
  void drain();
  // Blocks until a task is due or the (real) time has passed; true when one is due.
  bool waitForTask(std::int64_t milliseconds);

  bool hasDueTask() const;
  // The clock's monotonic time at which the next delayed task is due, if any.
  std::optional<std::int64_t> nextDue() const;

  // Called (from any thread, outside the lock) when a task was posted.
  void setWaker(std::function<void()> waker);
  // An empty one restores the default.
  void setFaultHandler(std::function<void(std::exception_ptr)> handler);
  // Drops what waits and refuses what comes; waiting postAndWait() calls return false.
  void close();
  bool isClosed() const;

  bool isMainThread() const { return std::this_thread::get_id() == mainThread_; }
  // Whether this is the main thread of any queue: a check that costs next to nothing.
  static bool onMainThread() noexcept { return ownsQueue_; }

 private:
  struct Delayed {
    std::int64_t due;
    std::uint64_t order;
    mutable Task task;
    bool operator<(const Delayed& o) const { return due != o.due ? due > o.due : order > o.order; }
  };
  void collectDue() const;  // with the lock held
  void run(Task& task);

  const Clock& clock_;
  mutable std::mutex mutex_;
  std::condition_variable posted_;
  mutable std::deque<Task> ready_;
  mutable std::priority_queue<Delayed> delayed_;
  std::uint64_t order_ = 0;
  bool closed_ = false;
  std::shared_ptr<const std::function<void()>> waker_;
  std::function<void(std::exception_ptr)> fault_;
  const std::thread::id mainThread_ = std::this_thread::get_id();
  inline static constinit thread_local bool ownsQueue_ = false;
};

}  // namespace platform
