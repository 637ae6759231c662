#include "platform/base/work_queue.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>

#include "platform/base/log.h"

namespace platform {

namespace {

// The tasks that one or several threads work off.
class TaskLine {
 public:
  explicit TaskLine(std::string name) : name_(std::move(name)) {}

  void push(std::function<void()> task) {
    if (!task) return;
    {
      std::lock_guard lock(mutex_);
      tasks_.push_back(std::move(task));
    }
    posted_.notify_one();
  }
  void end() {
    {
      std::lock_guard lock(mutex_);
      ended_ = true;
    }
    posted_.notify_all();
  }
  // Works the line off; returns when it is empty and ended.
  void work() {
    while (auto task = take()) {
      try {
        task();
      } catch (const std::exception& e) {
        log(name_ + ": task failed: " + e.what());
      } catch (...) {
        log(name_ + ": task failed");
      }
    }
  }
  const std::string& name() const { return name_; }

 private:
  std::function<void()> take() {
    std::unique_lock lock(mutex_);
    posted_.wait(lock, [&] { return ended_ || !tasks_.empty(); });
    if (tasks_.empty()) return nullptr;
    auto task = std::move(tasks_.front());
    tasks_.pop_front();
    return task;
  }

  const std::string name_;
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> tasks_;
  bool ended_ = false;
};

}  // namespace

struct SerialQueue::State {
  explicit State(std::string name) : line(std::move(name)) {}
  TaskLine line;
  std::once_flag started;
  std::thread thread;
  std::atomic<std::thread::id> id{};
};

SerialQueue::SerialQueue(std::string name) : state_(std::make_shared<State>(std::move(name))) {}

SerialQueue::~SerialQueue() {
  state_->line.end();
  if (isOwnThread()) {
    state_->line.work();
    state_->thread.detach();
  } else if (state_->thread.joinable()) {
    state_->thread.join();
  }
}

void SerialQueue::post(Task task) {
  state_->line.push(std::move(task));
  std::call_once(state_->started, [&] {
    state_->thread = std::thread([state = state_] {
      state->id = std::this_thread::get_id();
      state->line.work();
    });
  });
}

const std::string& SerialQueue::name() const { return state_->line.name(); }

bool SerialQueue::isOwnThread() const { return state_->id == std::this_thread::get_id(); }

void globalPost(std::function<void()> task) {
  constexpr int kThreads = 2;
  // Never destroyed: its threads may be in the middle of a task when main returns.
  static TaskLine* line = [] {
    auto* shared = new TaskLine("global");
    for (int i = 0; i < kThreads; ++i) std::thread([shared] { shared->work(); }).detach();
    return shared;
  }();
  line->push(std::move(task));
}

}  // namespace platform
