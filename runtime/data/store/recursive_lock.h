// RecursiveLock: a lock that its thread may take again, and that is waited for only so
// long. It knows the thread that holds it, so giving back what one does not hold is an
// answer and no accident. Shared by all that it guards together; any thread; throws
// nothing.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace kes {

class RecursiveLock {
 public:
  // False when another thread still holds it after that (real) time.
  bool tryLockFor(std::chrono::milliseconds limit);
  // Gives one taking back; false when this thread does not hold it.
  bool unlock();
  bool isMine() const;

 private:
  mutable std::mutex mutex_;
  std::condition_variable freed_;
  std::thread::id owner_;
  int taken_ = 0;
};

}  // namespace kes
