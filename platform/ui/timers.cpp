#include "platform/ui/timers.h"

#include <algorithm>

#include "platform/base/platform.h"
#include "platform/ui/screen.h"

namespace ui {

std::uint64_t Timers::start(std::int64_t milliseconds, std::function<void()> due) {
  const auto now = platform::current().clock().monotonic();
  timers_.push_back({++lastId_, now + milliseconds, std::move(due)});
  screen_.requestTick(milliseconds);
  return lastId_;
}

void Timers::stop(std::uint64_t timer) {
  std::erase_if(timers_, [timer](const Timer& t) { return t.id == timer; });
}

std::optional<std::int64_t> Timers::nextDue() const {
  std::optional<std::int64_t> next;
  for (const auto& t : timers_)
    if (!next || t.due < *next) next = t.due;
  return next;
}

void Timers::runDue(std::int64_t now) {
  for (;;) {
    const auto it = std::min_element(timers_.begin(), timers_.end(), [](auto& a, auto& b) {
      return a.due != b.due ? a.due < b.due : a.id < b.id;
    });
    if (it == timers_.end() || it->due > now) return;
    const auto run = std::move(it->run);
    timers_.erase(it);
    run();
  }
}

}  // namespace ui
