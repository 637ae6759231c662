#include "runtime/core/slab.h"

#include <algorithm>
#include <atomic>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace kes::detail {

static_assert(__STDCPP_DEFAULT_NEW_ALIGNMENT__ >= 16, "the heap's memory has to be told apart");

// While it is being filled a block counts far more than it holds, so that it outlives
// what dies meanwhile; closing it settles the count.
struct alignas(16) Slab::Block {
  static constexpr std::uint32_t kOpen = 1u << 30;
  std::atomic<std::uint32_t> live{kOpen};
};

Slab::~Slab() { close(); }

void Slab::open(std::size_t room) {
  close();
  const std::size_t bytes = std::max(next_, room + sizeof(Block));
  void* memory = std::malloc(bytes);
  if (!memory) throw std::bad_alloc();
  block_ = new (memory) Block;
  at_ = reinterpret_cast<char*>(block_ + 1);
  left_ = bytes - sizeof(Block);
  taken_ = 0;
  next_ = std::min(next_ * 2, kBlock);
}

void Slab::close() noexcept {
  if (!block_) return;
  const auto surplus = Block::kOpen - static_cast<std::uint32_t>(taken_);
  if (block_->live.fetch_sub(surplus, std::memory_order_acq_rel) == surplus) std::free(block_);
  block_ = nullptr;
  left_ = 0;
}

void Slab::giveBack(void* p) noexcept {
  auto* block = *reinterpret_cast<Block**>(static_cast<char*>(p) - 8);
#if defined(__SANITIZE_ADDRESS__)
  // What lies there is gone, though its block is not: let a use of it be seen.
  __asan_poison_memory_region(p, 8);
#endif
  if (block->live.fetch_sub(1, std::memory_order_acq_rel) == 1) std::free(block);
}

SlabScope::SlabScope(std::size_t expected)
    : slab_(std::clamp<std::size_t>(expected, 512, Slab::kBlock)), outer_(Slab::current_) {
  Slab::current_ = &slab_;
}

SlabScope::~SlabScope() { Slab::current_ = outer_; }

}  // namespace kes::detail
