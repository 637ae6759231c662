// Ctrl+C and SIGTERM end the program in good order, and in bounded time.
//
// At the first signal `politely` runs, on a thread of this class: it asks the main loop to
// end (MainQueue::post is for that). If this object is still there `patience` milliseconds
// later, or at a second signal, `atLast` runs on that thread too, puts away what must not
// stay behind, and the process ends with status 128 plus the signal's number. One at a
// time; made on the main thread, before what may take long to end.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>

namespace platform {

class EndSignals {
 public:
  EndSignals(std::function<void()> politely, std::function<void()> atLast,
             std::int64_t patience = 2000);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // The signal that came, or 0. Any thread.
  int came() const { return came_; }

 private:
  void watch();

  std::function<void()> politely_, atLast_;
  std::int64_t patience_;
  int reading_ = -1, writing_ = -1;
  std::atomic<int> came_{0};
  std::thread thread_;
};

}  // namespace platform
