#include "platform/base/clock.h"

#include <chrono>

namespace platform {

namespace {
Ticks wall() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}
}  // namespace

SystemClock::SystemClock(Ticks startAt) : shift_(startAt - wall()) {}

Ticks SystemClock::now() const { return wall() + shift_; }

std::int64_t SystemClock::monotonic() const {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace platform
