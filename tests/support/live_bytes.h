// What the whole program holds on the heap, and what it asks for, counted at the allocator so
// that nothing is missed.
// Replaces operator new and delete: for one source of a test program only. Any thread.
#pragma once

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace testing_support {

inline std::atomic<long long> liveBytes{0};
inline std::atomic<std::size_t> requestedBytes{0}, largestRequest{0};

inline void* counted(std::size_t size) {
  requestedBytes += size;
  for (auto seen = largestRequest.load(); size > seen;)
    if (largestRequest.compare_exchange_weak(seen, size)) break;
  void* p = std::malloc(size);
  if (!p) std::abort();
  liveBytes += static_cast<long long>(malloc_usable_size(p));
  return p;
}
inline void uncounted(void* p) noexcept {
  if (p) liveBytes -= static_cast<long long>(malloc_usable_size(p));
  std::free(p);
}

}  // namespace testing_support

void* operator new(std::size_t size) { return testing_support::counted(size); }
void* operator new[](std::size_t size) { return testing_support::counted(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return testing_support::counted(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return testing_support::counted(size);
}
void operator delete(void* p) noexcept { testing_support::uncounted(p); }
void operator delete[](void* p) noexcept { testing_support::uncounted(p); }
void operator delete(void* p, std::size_t) noexcept { testing_support::uncounted(p); }
void operator delete[](void* p, std::size_t) noexcept { testing_support::uncounted(p); }
