// A synchronous hop from another thread to the main queue that the main thread can
// call off, so that an owner may end while a thread of its own waits for the hop.
//
// Owned by what the hopping thread serves. run() is called on any other thread,
// cancel() on the main thread. The task may outlive the waiting caller when the hop
// is called off from within it: let it capture values, not references.
#pragma once

#include <memory>

#include "platform/base/main_queue.h"

namespace platform {

class MainHop {
 public:
  explicit MainHop(MainQueue& queue);

  // Posts the task and waits. False when it did not run to its end while we waited:
  // the hop was called off, or the queue closed.
  bool run(MainQueue::Task task);
  // Lets whoever waits go. What has not begun never runs.
  void cancel();

 private:
  struct State;
  MainQueue& queue_;
  std::shared_ptr<State> state_;
};

}  // namespace platform
