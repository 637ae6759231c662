// The phone on the desk: one process with the app, a screen and, unless another host was
// named, the town's host on loopback.
//
// Made once at the start of the program; start() launches the app as the platform would.
// When it goes, the app's queue is closed, the host stopped and a temporary data folder
// removed. Main thread. The constructor throws std::runtime_error with one line that says
// what is wrong.
#pragma once

#include <atomic>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/base/end_signals.h"
#include "simulator/options.h"
#include "simulator/side.h"
#include "townhost/town_host.h"

namespace kes {
class KesAppDelegate;
}
namespace push {
class LocalLine;
}
namespace varlo {
class PushDelivery;
}

namespace sim {

class Phone {
 public:
  explicit Phone(const Options& options);
  ~Phone();

  void start();

  Side& side() { return *side_; }
  ui::Application& application() { return side_->application(); }
  ui::Window& window();

  // Work that a script waits for: jobs in flight and the progress overlay.
  bool busy() const;
  std::string whatIsGoingOn() const;
  bool logged(const std::string& text) const;

  // Sets or (with "none") clears faults of the embedded host; says what is wrong, if so.
  std::string setFaults(const std::string& json);
  // A push message arrives on the desk's own line; says what is wrong, if a broker has it.
  std::string push(const std::string& json);

  // The signal that asked the program to end, or 0.
  int endedBy() const { return signals_->came(); }

 private:
  struct Data;  // the data folder, removed at the end when it was made for this run

  // First of all, and so the last to go: it watches over the tidying up.
  std::unique_ptr<platform::EndSignals> signals_;
  std::atomic<bool> ending_{false};
  std::unique_ptr<platform::Clock> clock_;
  std::unique_ptr<Data> data_;
  std::unique_ptr<platform::Platform> platform_;
  std::unique_ptr<platform::PlatformScope> scope_;
  std::unique_ptr<town::TownHost> host_;
  std::string town_;
  const std::string broker_;
  std::unique_ptr<Side> side_;
  std::unique_ptr<kes::KesAppDelegate> delegate_;
  std::shared_ptr<push::LocalLine> localLine_;  // unless a broker was named
  std::unique_ptr<varlo::PushDelivery> delivery_;
  mutable std::mutex logMutex_;
  std::deque<std::string> log_;  // the latest lines
};

}  // namespace sim
