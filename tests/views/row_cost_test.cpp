// What a row of a list costs.
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "tests/support/live_bytes.h"
#include "views_fixture.h"

namespace kes {
namespace {

using testing_support::liveBytes;

class RowOwner final : public EventNotes {
 public:
  static void describe(ClassBuilder<RowOwner>& c) {
    c.name("RowOwner");
    c.sub<&RowOwner::note<"click">>("panel_click");
  }
};

TEST(ListRows, TakeUnderTwoKibibytesBesideTheirTextAndGiveItBack) {
  RuntimePhone phone;
  ClassRegistry::instance().add<RowOwner>();
  auto owner = make<RowOwner>(0);
  auto page = phone.showPage(owner->bi(), "page");
  const auto addRow = [&](double top) {
    auto outer = KesXUI::CreatePanel(owner->bi(), "Panel");
    auto inner = KesXUI::CreatePanel(owner->bi(), "");
    auto label = fresh<KesLabelWrapper>(owner->bi());
    label.setFont(KesFont::CreateNew(17));
    inner.AddView(label, 5, 2, 310, 50);
    outer.AddView(inner, 0, 0, 320, 52);
    outer.setTag(static_cast<std::int32_t>(top));
    page.RootPanel().AddView(outer, 0, top, 320, 52);
  };
  addRow(0);
  phone.pump.drain();
  page.RootPanel().RemoveAllViews();
  phone.pump.drain();
  const auto before = liveBytes.load();
  constexpr int kRows = 1000;
  for (int i = 0; i < kRows; ++i) addRow(i * 52.0);
  phone.pump.drain();
  phone.window->visitVisible([](const ui::Visible&) { return true; });
  const auto row = (liveBytes.load() - before) / kRows;
  EXPECT_LT(row, 2048);
  EXPECT_GT(row, 3 * static_cast<long long>(sizeof(ui::View)) / 2) << "the counter sees nothing";
  RecordProperty("bytes", static_cast<int>(row));
  page.RootPanel().RemoveAllViews();
  phone.pump.drain();
  EXPECT_LT(liveBytes.load() - before, 64 * 1024) << "rows that are gone still take room";
}

}  // namespace
}  // namespace kes
