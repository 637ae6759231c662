// The main loop of a process without a screen: runs the queue, frames, page loads and
// the virtual clock.
//
// The clock moves only here, and only when nothing is left to do at its present time.
// While work is under way elsewhere (threads, the network) the pump waits really, for
// the queue to be posted to, and the clock keeps pace with the real time it waits. Owned by the
// test or the simulator. Main thread; milliseconds.
#pragma once

#include <functional>

#include "platform/base/clock.h"
#include "platform/base/platform.h"
#include "platform/headless/headless_screen.h"
#include "platform/ui/application.h"

namespace headless {

class HeadlessPump {
 public:
  HeadlessPump(platform::Platform& platform, platform::VirtualClock& clock, HeadlessScreen& screen,
               ui::Application& application)
      : platform_(platform), clock_(clock), screen_(screen), app_(application) {}

  // What is due now: tasks, frame, page loads. False when there was nothing.
  bool turn();
  // Turns until nothing is due; the clock stands still.
  void drain();
  // Lets so much virtual time pass, stopping at everything that falls due.
  void advance(std::int64_t milliseconds);
  // Turns, moving the clock on to what is due next, until the queue is empty (delayed
  // tasks too), nothing is animated and isBusy() answers false; a toast may remain.
  // isBusy: work is in flight outside. False after `timeout` of time, real and virtual
  // counted apart.
  bool settle(const std::function<bool()>& isBusy = {}, std::int64_t timeout = 30000);
  // The same until the condition holds.
  bool until(const std::function<bool()>& condition, std::int64_t timeout = 30000,
             const std::function<bool()>& isBusy = {});

 private:
  bool loadPages();
  void moveTo(std::int64_t time);
  bool run(const std::function<bool()>& condition, const std::function<bool()>& isBusy,
           std::int64_t timeout, bool untilIdle);
  std::optional<std::int64_t> nextDue(bool withTimers) const;

  platform::Platform& platform_;
  platform::VirtualClock& clock_;
  HeadlessScreen& screen_;
  ui::Application& app_;
  std::int64_t lastFrame_ = -1;
};

}  // namespace headless
