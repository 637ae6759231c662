#include "runtime/views/wrappers/table_view_wrapper.h"

#include <algorithm>

#include "runtime/views/richtext/attributed_string.h"

namespace kes {

void TableViewWithCells::addLater(std::int32_t count, Filler fill) {
  later_.push_back({size(), std::move(fill)});
  cells_.resize(cells_.size() + static_cast<std::size_t>(std::max(0, count)));
}

void TableViewWithCells::clear() {
  cells_.clear();
  later_.clear();
  setRows(0, {});
}

// A row that was only announced gets its cell when somebody looks at it, from the last batch
// that begins at it or before.
const Ref<TableCell>& TableViewWithCells::cell(std::int32_t row) {
  auto& cell = cells_[static_cast<std::size_t>(row)];
  if (cell) return cell;
  cell = platform::makeShared<TableCell>();
  const auto after = std::upper_bound(later_.begin(), later_.end(), row,
                                      [](std::int32_t r, const Later& l) { return r < l.first; });
  const Later& batch = *std::prev(after);
  batch.fill(row - batch.first, *cell);
  return cell;
}

void KesTableCellWrapper::setText(const Value& text) {
  native()->text = AttributedString::from(text);
}

void KesTableView::Initialize(const Ref<Kes>& bi, const Text& eventName, bool) {
  innerInitialize(bi, eventName, false);
}

void KesTableView::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::TableView& table = self();
  if (hasMethod(table, "_selectedchanged::"))
    table.onSelect = [&table](int row) {
      raiseUIEvent(table, "_selectedchanged::", {0, static_cast<std::int32_t>(row)});
    };
}

KesTableCellWrapper KesTableView::AddSingleLine(const Value& text) {
  auto cell = platform::makeShared<TableCell>();
  cell->text = AttributedString::from(text);
  self().add(cell);
  return KesTableCellWrapper::fromBoxed(cell);
}

void KesTableView::AddSingleLines(std::int32_t count,
                                  std::function<void(std::int32_t, KesTableCellWrapper)> fill) {
  self().addLater(count, [fill = std::move(fill)](std::int32_t row, TableCell& cell) {
    fill(row, KesTableCellWrapper::fromBoxed(Ref<TableCell>(&cell)));
  });
}

KesTableCellWrapper KesTableView::GetItem(std::int32_t section, std::int32_t row) const {
  if (section != 0 || row < 0 || row >= Size())
    throw KesException("NSRangeException",
                       formatText("Row %@ is not in a table of %@ rows",
                                  {std::to_string(row), std::to_string(Size())}));
  return KesTableCellWrapper::fromBoxed(self().cell(row));
}

void KesTableView::ReloadAll() {
  TableViewWithCells& table = self();
  table.setRows(table.size(), [&table](int row) { return table.cell(row)->text; });
}

void KesTableView::SetSelection(std::int32_t section, std::int32_t row) {
  self().setSelectedRow(section == 0 ? row : -1);
}

}  // namespace kes
