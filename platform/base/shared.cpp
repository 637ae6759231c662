#include "platform/base/shared.h"

#include <mutex>

namespace platform {

namespace detail {

// Outlives its object for as long as a WeakRef points at it.
class WeakBlock {
 public:
  explicit WeakBlock(const Shared* object) : object_(object) {}

  std::mutex mutex_;
  std::atomic<const Shared*> object_;
  std::atomic<std::uint32_t> weak_{1};  // the object itself holds one
};

void addWeak(WeakBlock* b) noexcept { b->weak_.fetch_add(1, std::memory_order_relaxed); }

void dropWeak(WeakBlock* b) noexcept {
  if (b->weak_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete b;
}

const Shared* lockWeak(WeakBlock* b) noexcept {
  // The object's memory stays valid while the lock is held and object_ is set:
  // whoever drops the last reference clears object_ under this lock first.
  std::lock_guard lock(b->mutex_);
  const Shared* object = b->object_.load(std::memory_order_acquire);
  if (!object) return nullptr;
  auto& refs = object->refs_;
  auto n = refs.load(std::memory_order_relaxed);
  // Without a reference it is about to end, unless a scope of this very thread keeps it.
  while (n != 0 || Keep::of(object))
    if (refs.compare_exchange_weak(n, n + 1, std::memory_order_acq_rel)) return object;
  return nullptr;
}

const Shared* peekWeak(const WeakBlock* b) noexcept {
  return b->object_.load(std::memory_order_acquire);
}

WeakBlock* weakBlockOf(const Shared& s) noexcept {
  auto* block = s.weak_.load(std::memory_order_acquire);
  if (!block) {
    auto* fresh = new WeakBlock(&s);
    if (s.weak_.compare_exchange_strong(block, fresh, std::memory_order_acq_rel))
      block = fresh;
    else
      delete fresh;
  }
  addWeak(block);
  return block;
}

}  // namespace detail

constinit thread_local Keep* Keep::innermost_ = nullptr;

Keep* Keep::of(const Shared* object) noexcept {
  Keep* outermost = nullptr;
  for (Keep* k = innermost_; k; k = k->outer_)
    if (k->object_ == object) outermost = k;
  return outermost;
}

void Keep::finish() noexcept {
  // Taken up again meanwhile: it ends with that reference.
  if (object_->refs_.load(std::memory_order_acquire) == 0) object_->end();
}

void Shared::lastReleased() const noexcept {
  if (auto* keep = Keep::of(this))
    keep->ended_ = true;
  else
    end();
}

void Shared::end() const noexcept {
  if (auto* block = weak_.load(std::memory_order_acquire)) {
    std::lock_guard lock(block->mutex_);
    block->object_ = nullptr;
  }
  dispose();
}

Shared::~Shared() {
  if (auto* block = weak_.load(std::memory_order_acquire)) {
    {
      std::lock_guard lock(block->mutex_);
      block->object_ = nullptr;
    }
    detail::dropWeak(block);
  }
}

}  // namespace platform
