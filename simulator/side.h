// A side of the simulated phone: a screen, its text engine and its event loop, seen
// alike whether they draw or not. Owned by the program; main thread. Points,
// milliseconds.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/base/platform.h"
#include "platform/ui/application.h"
#include "simulator/options.h"

namespace sim {

class Side {
 public:
  virtual ~Side() = default;

  virtual ui::Application& application() = 0;

  // Runs until the queue is empty, nothing is animated and isBusy() answers false.
  // False when it does not come to rest in time.
  virtual bool settle(const std::function<bool()>& isBusy, std::int64_t timeout) = 0;
  virtual void pass(std::int64_t milliseconds) = 0;

  // What a finger and a keyboard do.
  virtual void tap(ui::Point at) = 0;
  virtual void drag(ui::Point from, ui::Point to) = 0;
  virtual void press(ui::Key key) = 0;
  virtual void type(const std::string& text) = 0;

  // Writes a picture; false where the side draws none or the file can't be written.
  virtual bool shot(const std::string& path) = 0;
  // Runs until the window is closed.
  virtual int run() = 0;
  virtual void quit() = 0;  // ends run()
};

std::unique_ptr<Side> makeHeadlessSide(platform::Platform& platform, platform::VirtualClock& clock,
                                       const Options& options);

}  // namespace sim
