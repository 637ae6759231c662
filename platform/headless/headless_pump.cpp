#include "platform/headless/headless_pump.h"

#include <algorithm>
#include <chrono>

#include "platform/ui/controls/map_view.h"
#include "platform/ui/controls/web_view.h"

namespace headless {

namespace {

std::optional<std::int64_t> earlier(std::optional<std::int64_t> a, std::optional<std::int64_t> b) {
  if (!a) return b;
  return b ? std::min(*a, *b) : a;
}

std::int64_t realNow() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// With nothing due but work under way elsewhere: how long to wait before looking again.
constexpr std::int64_t kPatience = 50;

}  // namespace

bool HeadlessPump::turn() {
  bool did = false;
  while (platform_.mainQueue().runOne()) did = true;
  const auto now = clock_.monotonic();
  const auto timer = app_.timers().nextDue();
  const bool move = app_.animator().isAnimating() && now != lastFrame_;
  if (screen_.frameWanted() || move || (timer && *timer <= now)) {
    screen_.frameTaken();
    lastFrame_ = now;
    app_.frame();
    did = true;
  }
  return loadPages() || did;
}

void HeadlessPump::drain() {
  while (turn()) {
  }
}

// A page is there as soon as its view can be seen, and a map knows where the phone is.
bool HeadlessPump::loadPages() {
  std::vector<ui::Ref<ui::View>> loading;
  std::vector<ui::Ref<ui::MapView>> maps;
  for (const auto& window : app_.windows())
    if (!window->hidden())
      window->visitVisible([&](const ui::Visible& seen) {
        if (auto* web = dynamic_cast<ui::WebView*>(&seen.view); web && web->loading())
          loading.emplace_back(web);
        if (auto* map = dynamic_cast<ui::MapView*>(&seen.view); map && map->showsHere())
          maps.emplace_back(map);
        return true;
      });
  if (screen_.position)
    for (const auto& map : maps) map->located(*screen_.position);
  for (const auto& view : loading) {
    auto& web = static_cast<ui::WebView&>(*view);
    const auto request = web.request();
    if (!request.isHtml && !web.navigationAllowed(request.url))
      web.stopLoading();
    else
      web.finished(request.serial, request.isHtml || ui::WebView::isAddress(request.url),
                   request.url);
  }
  return !loading.empty();
}

std::optional<std::int64_t> HeadlessPump::nextDue(bool withTimers) const {
  auto next = platform_.mainQueue().nextDue();
  if (app_.animator().isAnimating()) next = earlier(next, clock_.monotonic() + ui::style::kFrame);
  next = earlier(next, app_.input().settledAt());
  if (withTimers) next = earlier(next, app_.timers().nextDue());
  return next;
}

void HeadlessPump::moveTo(std::int64_t time) {
  // A toast or a long press on the way is not passed over.
  if (const auto timer = app_.timers().nextDue()) time = std::min(time, *timer);
  clock_.advance(std::max<std::int64_t>(0, time - clock_.monotonic()));
}

void HeadlessPump::advance(std::int64_t milliseconds) {
  const auto end = clock_.monotonic() + milliseconds;
  for (;;) {
    drain();
    const auto next = nextDue(true);
    if (!next || *next > end) break;
    moveTo(*next);
  }
  clock_.advance(std::max<std::int64_t>(0, end - clock_.monotonic()));
  drain();
}

bool HeadlessPump::settle(const std::function<bool()>& isBusy, std::int64_t timeout) {
  return run([] { return false; }, isBusy, timeout, true);
}

bool HeadlessPump::until(const std::function<bool()>& condition, std::int64_t timeout,
                         const std::function<bool()>& isBusy) {
  return run(condition, isBusy, timeout, false);
}

bool HeadlessPump::run(const std::function<bool()>& condition, const std::function<bool()>& isBusy,
                       std::int64_t timeout, bool untilIdle) {
  const auto virtualEnd = clock_.monotonic() + timeout, realEnd = realNow() + timeout;
  for (;;) {
    drain();
    if (condition()) return true;
    const bool busy = isBusy && isBusy();
    const auto next = nextDue(!untilIdle);
    if (!busy && !next) return untilIdle;
    if (realNow() >= realEnd || (next && *next > virtualEnd)) return false;
    if (busy) {
      // The clock keeps pace with the real one, so that what is under way elsewhere has
      // the time it would have had.
      const auto wait = next ? *next - clock_.monotonic() : kPatience;
      if (platform_.mainQueue().waitForTask(std::min(std::max<std::int64_t>(0, wait), kPatience)))
        continue;
      if (next && wait > kPatience) {
        moveTo(clock_.monotonic() + kPatience);
        continue;
      }
    }
    if (next) moveTo(*next);
  }
}

}  // namespace headless
