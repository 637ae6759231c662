#include "runtime/views/wrappers/table_view_wrapper.h"

#include "runtime/views/richtext/attributed_string.h"

namespace kes {

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
  self().cells.push_back(cell);
  return KesTableCellWrapper::fromBoxed(cell);
}

KesTableCellWrapper KesTableView::GetItem(std::int32_t section, std::int32_t row) const {
  const auto& cells = self().cells;
  if (section != 0 || row < 0 || static_cast<std::size_t>(row) >= cells.size())
    throw KesException("NSRangeException",
                       formatText("Row %@ is not in a table of %@ rows",
                                  {std::to_string(row), std::to_string(cells.size())}));
  return KesTableCellWrapper::fromBoxed(cells[static_cast<std::size_t>(row)]);
}

void KesTableView::ReloadAll() {
  std::vector<ui::AttributedText> rows;
  rows.reserve(self().cells.size());
  for (const auto& cell : self().cells) rows.push_back(cell->text);
  self().setRows(std::move(rows));
}

void KesTableView::SetSelection(std::int32_t section, std::int32_t row) {
  self().setSelectedRow(section == 0 ? row : -1);
}

}  // namespace kes
