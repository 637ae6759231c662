#include "platform/base/platform.h"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <utility>

#include "platform/base/log.h"

namespace platform {

namespace {
std::atomic<Platform*> installed{nullptr};

// The queue of the platform in force, for other threads: it may end while they use it.
struct InstalledQueue {
  std::mutex mutex;
  std::shared_ptr<MainQueue> queue;

  std::shared_ptr<MainQueue> get() {
    std::lock_guard lock(mutex);
    return queue;
  }
  std::shared_ptr<MainQueue> exchange(std::shared_ptr<MainQueue> other) {
    std::lock_guard lock(mutex);
    return std::exchange(queue, std::move(other));
  }
};
// Never destroyed: background threads may use it until the process is gone.
InstalledQueue& installedQueue() {
  static auto& only = *new InstalledQueue;
  return only;
}
}  // namespace

Platform& current() {
  auto* p = installed.load(std::memory_order_acquire);
  if (!p) {
    log("No platform is installed.");
    std::abort();
  }
  return *p;
}

bool offerToMain(MainQueue::Task& task) {
  if (MainQueue::onMainThread()) {
    auto* p = installed.load(std::memory_order_acquire);
    return p && p->mainQueue().offer(task);
  }
  const auto queue = installedQueue().get();
  return queue && queue->offer(task);
}

void postToMain(MainQueue::Task task) { offerToMain(task); }

PlatformScope::PlatformScope(Platform& p)
    : former_(installed.exchange(&p)), formerQueue_(installedQueue().exchange(p.queue_)) {}

PlatformScope::~PlatformScope() {
  installed.store(former_);
  installedQueue().exchange(std::move(formerQueue_));
}

}  // namespace platform
