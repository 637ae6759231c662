// BackgroundEvent: the one event with which work in the background tells of its end.
//
// Made on the main thread with whatever the work needs and owned by the work, which calls
// raise() once, from its own thread. The handler runs later on the main thread, and there too ends
// what the event held, also when the event was never raised. When the main thread has left,
// nothing is raised and nothing ended. Throws nothing.
#pragma once

#include <memory>
#include <vector>

#include "runtime/core/kes.h"

namespace kes {

class BackgroundEvent {
 public:
  // `kept` is whatever has to live until the work is over.
  BackgroundEvent(Ref<Kes> bi, Ref<Shared> sender, Text event, std::shared_ptr<void> kept = {});
  BackgroundEvent(BackgroundEvent&&) = default;
  ~BackgroundEvent();

  void raise(std::vector<Value> params);

 private:
  struct Held {
    Ref<Kes> bi;
    Ref<Shared> sender;
    Text event;
    std::shared_ptr<void> kept;
  };
  std::shared_ptr<Held> held_;
};

}  // namespace kes
