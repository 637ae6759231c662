#include "runtime/core/background_event.h"

#include <functional>
#include <mutex>

#include "platform/base/platform.h"

namespace kes {

namespace {
struct Stranded {
  std::mutex mutex;
  std::vector<std::function<void()>> kept;
};
}  // namespace

BackgroundEvent::BackgroundEvent(Ref<Kes> bi, Ref<Shared> sender, Text event,
                                 std::shared_ptr<void> kept)
    : held_(std::make_shared<Held>(
          Held{std::move(bi), std::move(sender), std::move(event), std::move(kept)})) {}

BackgroundEvent::~BackgroundEvent() {
  if (!held_) return;
  std::function<void()> end = [held = std::move(held_)] {};
  if (platform::offerToMain(end)) return;
  // The main thread has left: what is its own can end nowhere any more, and the process is
  // about to. On this thread the application's code would run after its world has gone.
  static auto& stranded = *new Stranded;
  std::lock_guard lock(stranded.mutex);
  stranded.kept.push_back(std::move(end));
}

void BackgroundEvent::raise(std::vector<Value> params) {
  if (held_->bi)
    held_->bi->raiseEventFromDifferentThread(held_->sender, held_->event, std::move(params));
}

}  // namespace kes
