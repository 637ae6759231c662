#include "townhost/worker_pool.h"

#include <utility>

namespace town {

void WorkerPool::enqueue(std::function<void()> task) {
  std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  // A woken thread counts as idle until it runs, hence the comparison.
  if (tasks_.size() > idle_ && threads_.size() < limit_) threads_.emplace_back([this] { work(); });
  wake_.notify_one();
}

void WorkerPool::shutdown() {
  {
    std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake_.notify_all();
  for (auto& thread : threads_) thread.join();
  threads_.clear();
}

void WorkerPool::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    wake_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
    --idle_;
    if (tasks_.empty()) return;
    auto task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
    task = nullptr;
    lock.lock();
  }
}

}  // namespace town
