#include "runtime/core/background_event.h"

#include "platform/base/platform.h"

namespace kes {

BackgroundEvent::BackgroundEvent(Ref<Kes> bi, Ref<Shared> sender, Text event,
                                 std::shared_ptr<void> kept)
    : held_(std::make_shared<Held>(
          Held{std::move(bi), std::move(sender), std::move(event), std::move(kept)})) {}

BackgroundEvent::~BackgroundEvent() {
  if (held_) platform::current().mainQueue().post([held = std::move(held_)] {});
}

void BackgroundEvent::raise(std::vector<Value> params) {
  if (held_->bi)
    held_->bi->raiseEventFromDifferentThread(held_->sender, held_->event, std::move(params));
}

}  // namespace kes
