// Work away from the main thread.
//
// SerialQueue runs its tasks one after the other on a thread of its own, started by
// the first post. Its destructor runs what was posted, then joins; on the queue's own
// thread (a task may drop the last owner) it runs the rest in place. Either way no
// task runs after it has returned.
// globalPost() runs a task on one of a few shared background threads; what has not
// run when the process ends is dropped.
// Both may be called from any thread. A task must not let an exception out: one that
// does is logged and dropped.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

class SerialQueue {
 public:
  using Task = std::function<void()>;
  explicit SerialQueue(std::string name);
  ~SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  void post(Task task);
  const std::string& name() const;
  bool isOwnThread() const;

 private:
  struct State;
  // Shared with the thread, which may outlast the queue by a moment.
  std::shared_ptr<State> state_;
};

void globalPost(std::function<void()> task);

}  // namespace platform
