#include "runtime/data/store/recursive_lock.h"

namespace kes {

bool RecursiveLock::tryLockFor(std::chrono::milliseconds limit) {
  const auto me = std::this_thread::get_id();
  std::unique_lock lock(mutex_);
  const auto mayTake = [&] { return taken_ == 0 || owner_ == me; };
  if (!mayTake() && !freed_.wait_for(lock, limit, mayTake)) return false;
  owner_ = me;
  ++taken_;
  return true;
}

bool RecursiveLock::unlock() {
  {
    std::lock_guard lock(mutex_);
    if (taken_ == 0 || owner_ != std::this_thread::get_id()) return false;
    if (--taken_ > 0) return true;
  }
  freed_.notify_one();
  return true;
}

bool RecursiveLock::isMine() const {
  std::lock_guard lock(mutex_);
  return taken_ > 0 && owner_ == std::this_thread::get_id();
}

}  // namespace kes
