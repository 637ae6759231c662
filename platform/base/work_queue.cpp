#include "platform/base/work_queue.h"

#include <array>
#include <atomic>
#include <exception>
#include <memory>

#include "platform/base/log.h"

namespace platform {

SerialQueue::~SerialQueue() {
  {
    std::lock_guard lock(mutex_);
    ending_ = true;
  }
  posted_.notify_all();
  if (!thread_.joinable()) return;
  // The last owner may be a task of this very queue.
  if (thread_.get_id() == std::this_thread::get_id())
    thread_.detach();
  else
    thread_.join();
}

void SerialQueue::post(Task task) {
  std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
  posted_.notify_one();
}

void SerialQueue::loop() {
  for (;;) {
    Task task;
    {
      std::unique_lock lock(mutex_);
      posted_.wait(lock, [&] { return ending_ || !tasks_.empty(); });
      if (tasks_.empty()) return;
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    try {
      task();
    } catch (const std::exception& e) {
      log(name_ + ": task failed: " + e.what());
    } catch (...) {
      log(name_ + ": task failed");
    }
  }
}

void globalPost(std::function<void()> task) {
  static std::array<std::unique_ptr<SerialQueue>, 2> workers = {
      std::make_unique<SerialQueue>("global 1"), std::make_unique<SerialQueue>("global 2")};
  static std::atomic<unsigned> next{0};
  workers[next++ % workers.size()]->post(std::move(task));
}

}  // namespace platform
