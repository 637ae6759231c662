// What a row of a list costs.
#include "phone.h"
#include "tests/support/live_bytes.h"

namespace ui {
namespace {

using testing_support::liveBytes;

TEST(Memory, ARowOfThreeViewsTakesUnderTwoKibibytesBesideItsText) {
  Phone phone;
  auto page = phone.plainPage();
  phone.pump.drain();
  const auto before = liveBytes.load();
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
  const auto row = (liveBytes.load() - before) / kRows;
  EXPECT_LT(row, 2048);
  EXPECT_GT(row, 3 * static_cast<long long>(sizeof(View)) / 2) << "the counter sees nothing";
  page->view().removeAllSubviews();
  phone.pump.drain();
  EXPECT_LT(liveBytes.load() - before, 64 * 1024) << "rows that are gone still take room";
}

}  // namespace
}  // namespace ui
