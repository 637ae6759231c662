#include "platform/base/main_queue.h"

#include "platform/base/log.h"

namespace platform {

namespace {

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
  explicit Ticket(std::shared_ptr<Rendezvous> m) : meeting(std::move(m)) {}
  ~Ticket() { meeting->end(false); }
};

}  // namespace

MainQueue::MainQueue(const Clock& clock) : clock_(clock), fault_(logFault) {}

MainQueue::~MainQueue() { close(); }

void MainQueue::post(Task task) {
  {
    std::lock_guard lock(mutex_);
    if (closed_) return;
    ready_.push_back(std::move(task));
  }
  wake();
}

void MainQueue::postAfter(std::int64_t milliseconds, Task task) {
  {
    std::lock_guard lock(mutex_);
    if (closed_) return;
    const auto delay = milliseconds > 0 ? milliseconds : 0;
    delayed_.push({clock_.monotonic() + delay, order_++, std::move(task)});
  }
  wake();
}

bool MainQueue::postAndWait(Task task) {
  if (isMainThread()) {
    run(task);
    return true;
  }
  auto meeting = std::make_shared<Rendezvous>();
  auto ticket = std::make_shared<Ticket>(meeting);
  post([this, task = std::move(task), ticket]() mutable {
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
  std::unique_lock lock(mutex_);
  posted_.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] {
    collectDue();
    return !ready_.empty();
  });
  return !ready_.empty();
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
  waker_ = std::move(waker);
}

void MainQueue::setFaultHandler(std::function<void(std::exception_ptr)> handler) {
  fault_ = std::move(handler);
}

void MainQueue::wake() {
  std::function<void()> waker;
  {
    std::lock_guard lock(mutex_);
    waker = waker_;
  }
  posted_.notify_all();
  if (waker) waker();
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
