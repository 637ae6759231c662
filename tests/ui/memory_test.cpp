// What a list row costs: counted at the allocator, for the whole program, so that no
// hidden allocation is missed.
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "phone.h"

namespace {
std::atomic<long long> g_live{0};

void* take(std::size_t size) {
  void* p = std::malloc(size);
  if (!p) std::abort();
  g_live += static_cast<long long>(malloc_usable_size(p));
  return p;
}
void give(void* p) noexcept {
  if (p) g_live -= static_cast<long long>(malloc_usable_size(p));
  std::free(p);
}
}  // namespace

void* operator new(std::size_t size) { return take(size); }
void* operator new[](std::size_t size) { return take(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void operator delete(void* p) noexcept { give(p); }
void operator delete[](void* p) noexcept { give(p); }
void operator delete(void* p, std::size_t) noexcept { give(p); }
void operator delete[](void* p, std::size_t) noexcept { give(p); }

namespace ui {
namespace {

TEST(Memory, ARowOfThreeViewsTakesUnderTwoKibibytesBesideItsText) {
  Phone phone;
  auto page = phone.plainPage();
  phone.pump.drain();
  const auto before = g_live.load();
  constexpr int kRows = 1000;
  for (int i = 0; i < kRows; ++i) {
    auto outer = place(page->view(), {0, i * 40.0, 320, 40});
    outer->setOnTap([](View&) {});
    auto inner = place(*outer, {0, 0, 320, 40});
    auto label = place<Label>(*inner, {0, 0, 320, 40});
    label->setFont(Font::named("FontAwesome", 20));
  }
  phone.pump.drain();
  phone.window->visitVisible([](const Visible&) { return true; });
  const auto row = (g_live.load() - before) / kRows;
  EXPECT_LT(row, 2048);
  EXPECT_GT(row, 3 * static_cast<long long>(sizeof(View)) / 2) << "the counter sees nothing";
  page->view().removeAllSubviews();
  phone.pump.drain();
  EXPECT_LT(g_live.load() - before, 64 * 1024) << "rows that are gone still take room";
}

}  // namespace
}  // namespace ui
