// KesTableView: a plain list of one-line rows in one section. Event: "_selectedchanged::"
// (section, row). Changes to rows are seen after ReloadAll. Conditions as for
// KesViewWrapper; a row outside the list throws the array's range exception.
#pragma once

#include "platform/ui/controls/table_view.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

// One row: its text, plain or rich, and whatever the application keeps with it (Tag).
class TableCell final : public Object {
 public:
  std::string_view className() const override { return "KesTableCell"; }
  ui::AttributedText text;
};

class KesTableCellWrapper final : public TypedWrapper<KesTableCellWrapper, TableCell> {
 public:
  static constexpr std::string_view kPlatformClass = "KesTableCell";
  std::string_view className() const override { return "KesTableCellWrapper"; }
  Text PlainText() const { return Text(native()->text.text()); }
  // A text, a KesCSBuilder, or what kes_richstring gives.
  void setText(const Value& text);
};

class TableViewWithCells final : public ui::TableView {
 public:
  std::vector<Ref<TableCell>> cells;
};

class KesTableView : public ViewWrapper<KesTableView, TableViewWithCells> {
 public:
  static constexpr std::string_view kPlatformClass = "UITableView";
  static constexpr std::string_view kName = "KesTableView";

  void Initialize(const Ref<Kes>& bi, const Text& eventName, bool sectionMode);
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;

  KesTableCellWrapper AddSingleLine(const Value& text);
  KesTableCellWrapper GetItem(std::int32_t section, std::int32_t row) const;
  std::int32_t Size() const { return static_cast<std::int32_t>(self().cells.size()); }
  void Clear() { self().cells.clear(); }
  void ReloadAll();
  void SetSelection(std::int32_t section, std::int32_t row);  // row -1: none
  double RowHeight() const { return self().rowHeight(); }
  void setRowHeight(double height) { self().setRowHeight(height); }
};

}  // namespace kes
