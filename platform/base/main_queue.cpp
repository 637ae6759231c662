#include "platform/base/main_queue.h"

#include <algorithm>
#include <string>

#include "platform/base/log.h"

namespace platform {

namespace {

constexpr std::int64_t kLongestDelay = std::int64_t{1} << 40;

void logFault(std::exception_ptr fault) {
  try {
    std::rethrow_exception(fault);
  } catch (const std::exception& e) {
    log(std::string("Unhandled error: ") + e.what());
  } catch (...) {
    log("Unhandled error of an unknown kind");
  }
}

// What a postAndWait() caller and its queued task share. The task that is dropped
// instead of run releases the caller as well.
struct Rendezvous {
  std::mutex mutex;
  std::condition_variable over;
  bool ended = false;
  bool ran = false;

  void end(bool did) {
    std::lock_guard lock(mutex);
    if (ended) return;
    ended = true;
    ran = did;
    over.notify_all();
  }
};

struct Ticket {
  std::shared_ptr<Rendezvous> meeting;
  bool started = false;  // it ran, even if the fault handler threw
  explicit Ticket(std::shared_ptr<Rendezvous> m) : meeting(std::move(m)) {}
  ~Ticket() { meeting->end(started); }
};

}  // namespace

MainQueue::MainQueue(const Clock& clock) : clock_(clock), fault_(logFault) { ownsQueue_ = true; }

MainQueue::~MainQueue() { close(); }

bool MainQueue::offer(Task& task) {
  std::shared_ptr<const std::function<void()>> waker;
  {
    std::lock_guard lock(mutex_);
    if (closed_) return false;
    // What became due before this was posted runs before it.
    collectDue();
    ready_.push_back(std::move(task));
    waker = waker_;
    // Under the lock: once it is free the main thread may run the task and end the queue.
    posted_.notify_all();
  }
  if (waker && *waker) (*waker)();
  return true;
}

void MainQueue::postAfter(std::int64_t milliseconds, Task task) {
  std::shared_ptr<const std::function<void()>> waker;
  {
    std::lock_guard lock(mutex_);
    if (closed_) return;
    const auto delay = std::clamp<std::int64_t>(milliseconds, 0, kLongestDelay);
    delayed_.push({clock_.monotonic() + delay, order_++, std::move(task)});
    waker = waker_;
    posted_.notify_all();
  }
  if (waker && *waker) (*waker)();
}

bool MainQueue::postAndWait(Task task) {
  if (isMainThread()) {
    if (isClosed()) return false;
    run(task);
    return true;
  }
  auto meeting = std::make_shared<Rendezvous>();
  auto ticket = std::make_shared<Ticket>(meeting);
  post([this, task = std::move(task), ticket]() mutable {
    ticket->started = true;
    run(task);
    ticket->meeting->end(true);
  });
  ticket.reset();
  std::unique_lock lock(meeting->mutex);
  meeting->over.wait(lock, [&] { return meeting->ended; });
  return meeting->ran;
}

void MainQueue::collectDue() const {
  if (delayed_.empty()) return;
  const auto now = clock_.monotonic();
  while (!delayed_.empty() && delayed_.top().due <= now) {
    ready_.push_back(std::move(delayed_.top().task));
    delayed_.pop();
  }
}

bool MainQueue::runOne() {
  Task task;
  {
    std::lock_guard lock(mutex_);
    collectDue();
    if (ready_.empty()) return false;
    task = std::move(ready_.front());
    ready_.pop_front();
  }
  run(task);
  return true;
}

void MainQueue::drain() {
  while (runOne()) {
  }
}

void MainQueue::run(Task& task) {
  try {
    task();
  } catch (...) {
    fault_(std::current_exception());
  }
}

bool MainQueue::waitForTask(std::int64_t milliseconds) {
  using namespace std::chrono;
  const auto end =
      steady_clock::now() + std::chrono::milliseconds(std::min(milliseconds, kLongestDelay));
  std::unique_lock lock(mutex_);
  for (;;) {
    collectDue();
    if (!ready_.empty()) return true;
    const auto left = end - steady_clock::now();
    if (left <= left.zero()) return false;
    // A delayed task comes due by the clock, with nobody to tell of it.
    auto nap = left;
    if (!delayed_.empty())
      nap = std::min<decltype(nap)>(
          left, std::chrono::milliseconds(delayed_.top().due - clock_.monotonic()));
    posted_.wait_for(lock, nap);
  }
}

bool MainQueue::hasDueTask() const {
  std::lock_guard lock(mutex_);
  collectDue();
  return !ready_.empty();
}

std::optional<std::int64_t> MainQueue::nextDue() const {
  std::lock_guard lock(mutex_);
  if (delayed_.empty()) return std::nullopt;
  return delayed_.top().due;
}

void MainQueue::setWaker(std::function<void()> waker) {
  std::lock_guard lock(mutex_);
  waker_ = std::make_shared<const std::function<void()>>(std::move(waker));
}

void MainQueue::setFaultHandler(std::function<void(std::exception_ptr)> handler) {
  fault_ = handler ? std::move(handler) : logFault;
}

bool MainQueue::isClosed() const {
  std::lock_guard lock(mutex_);
  return closed_;
}

void MainQueue::close() {
  std::deque<Task> dropped;
  std::priority_queue<Delayed> droppedLater;
  {
    std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(ready_);
    droppedLater.swap(delayed_);
  }
}

}  // namespace platform
