// Room for the many small things that a parsed document is made of.
//
// While a SlabScope is open, objects that are SlabMade and long texts made on the same
// thread lie side by side in shared blocks instead of each in memory of its own. Each is
// still freed by itself, on any thread; a block goes when the last of what lies in it has
// gone, so whatever is kept of a document keeps a block of at most kBlock bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace kes::detail {

class Slab {
 public:
  static constexpr std::size_t kBlock = 16 * 1024;

  // Memory aligned to 8 bytes, from the slab in scope or else from the heap.
  static void* allocate(std::size_t bytes) {
    if (current_ && bytes <= kMost) return current_->take(bytes);
    if (void* p = std::malloc(bytes)) return p;
    throw std::bad_alloc();
  }
  static void free(void* p) noexcept {
    // What the heap gives is aligned to 16 bytes, what a slab gives never is.
    if (reinterpret_cast<std::uintptr_t>(p) & 8)
      giveBack(p);
    else
      std::free(p);
  }

 private:
  friend class SlabScope;
  struct Block;
  static constexpr std::size_t kMost = 1024;  // larger things stand alone
  inline static constinit thread_local Slab* current_ = nullptr;

  explicit Slab(std::size_t first) : next_(first) {}
  ~Slab();
  void* take(std::size_t bytes) {
    const std::size_t room = (bytes + 8 + 15) & ~std::size_t{15};
    if (room > left_) open(room);
    char* const p = at_;
    at_ += room;
    left_ -= room;
    ++taken_;
    *reinterpret_cast<Block**>(p) = block_;
    return p + 8;
  }
  void open(std::size_t room);
  void close() noexcept;
  static void giveBack(void* p) noexcept;

  Block* block_ = nullptr;
  char* at_ = nullptr;
  std::size_t left_ = 0;
  std::size_t taken_ = 0;
  std::size_t next_;
};

// Opens a slab for its own lifetime; inside another scope it does nothing new.
class SlabScope {
 public:
  // The memory that is expected to be needed in all, in bytes.
  explicit SlabScope(std::size_t expected);
  ~SlabScope();
  SlabScope(const SlabScope&) = delete;
  SlabScope& operator=(const SlabScope&) = delete;

 private:
  Slab slab_;
  Slab* outer_;
};

// Gives a container room in a slab.
template <class T>
struct SlabAllocator {
  using value_type = T;
  SlabAllocator() = default;
  template <class U>
  SlabAllocator(const SlabAllocator<U>&) noexcept {}
  T* allocate(std::size_t n) {
    static_assert(alignof(T) <= 8);
    if (n > SIZE_MAX / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(Slab::allocate(n * sizeof(T)));
  }
  void deallocate(T* p, std::size_t) noexcept { Slab::free(p); }
  bool operator==(const SlabAllocator&) const = default;
};

// Base of the classes whose objects may lie in a slab.
struct SlabMade {
  static void* operator new(std::size_t bytes) { return Slab::allocate(bytes); }
  static void operator delete(void* p) noexcept { Slab::free(p); }
};

}  // namespace kes::detail
