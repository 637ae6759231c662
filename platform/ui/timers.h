// Timers that are no work in flight: a toast's end, a long press. Owned by the
// Application, which runs what is due in each tick. Main thread, milliseconds of the
// monotonic clock.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ui {

class Screen;

class Timers {
 public:
  explicit Timers(Screen& screen) : screen_(screen) {}

  // Never 0, which stands for no timer.
  std::uint64_t start(std::int64_t milliseconds, std::function<void()> due);
  void stop(std::uint64_t timer);
  std::optional<std::int64_t> nextDue() const;
  // In the order of their due times; a timer may start and stop others.
  void runDue(std::int64_t now);

 private:
  struct Timer {
    std::uint64_t id;
    std::int64_t due;
    std::function<void()> run;
  };
  Screen& screen_;
  std::vector<Timer> timers_;
  std::uint64_t lastId_ = 0;
};

}  // namespace ui
