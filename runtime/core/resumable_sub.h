// KesResumableSub: a sub that can park at a wait, as the waiting table and the queue see
// it. Owned by whatever it waits for; runtime/core/resumable.h tells how one is written.
// Main thread. resume() passes on what the sub throws.
#pragma once

#include "runtime/core/object.h"

namespace kes {

class Kes;

class KesResumableSub : public Object {
 public:
  std::int32_t state = 0;  // 0 running or parked, -1 finished
  WeakRef<Kes> bi;         // of the last resume
  Ref<Kes> waitForKes;     // of whoever waits for this sub
  bool completed = false;  // set by the completion task

  KesResumableSub();
  ~KesResumableSub() override;
  std::string_view className() const override { return "KesResumableSub"; }
  // Goes on after the wait with the event's parameters; empty for a sleep.
  virtual void resume(Kes* bi, Args params) = 0;

  // The references by which the waiting table held a sub: of the sub itself and of the
  // sender it waited for. While a sub is being woken it may take them over for its next
  // wait, which is most often for the same sender: making them anew is half of a wait's cost.
  struct Held {
    Ref<KesResumableSub> self;
    WeakRef<Shared> sender;
  };
  Held take() {
    if (Held* const former = std::exchange(held, nullptr)) return std::move(*former);
    return {Ref<KesResumableSub>(this), {}};
  }
  Held* held = nullptr;  // of whoever wakes it, until they are taken
};

}  // namespace kes
