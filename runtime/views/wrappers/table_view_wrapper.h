// KesTableView: a plain list of one-line rows in one section. Event: "_selectedchanged::"
// (section, row). Added and changed rows are seen after ReloadAll, Clear at once.
// Conditions as for KesViewWrapper; a row outside the list throws the array's range
// exception.
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
  using Filler = std::function<void(std::int32_t row, TableCell& cell)>;

  std::int32_t size() const { return static_cast<std::int32_t>(cells_.size()); }
  void add(Ref<TableCell> cell) { cells_.push_back(std::move(cell)); }
  void addLater(std::int32_t count, Filler fill);
  void clear();
  const Ref<TableCell>& cell(std::int32_t row);  // makes it if need be; within the list

 private:
  struct Later {
    std::int32_t first;
    Filler fill;
  };
  std::vector<Ref<TableCell>> cells_;  // null for one that nobody has looked at
  std::vector<Later> later_;           // in the order of their rows
};

class KesTableView : public ViewWrapper<KesTableView, TableViewWithCells> {
 public:
  static constexpr std::string_view kPlatformClass = "UITableView";
  static constexpr std::string_view kName = "KesTableView";

  void Initialize(const Ref<Kes>& bi, const Text& eventName, bool sectionMode);
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;

  KesTableCellWrapper AddSingleLine(const Value& text);
  // So many rows that are filled one by one, each when somebody looks at it: `fill` gets
  // the number among these (from 0) and the row.
  void AddSingleLines(std::int32_t count,
                      std::function<void(std::int32_t, KesTableCellWrapper)> fill);
  KesTableCellWrapper GetItem(std::int32_t section, std::int32_t row) const;
  std::int32_t Size() const { return self().size(); }
  void Clear() { self().clear(); }
  void ReloadAll();
  void SetSelection(std::int32_t section, std::int32_t row);  // row -1: none
  double RowHeight() const { return self().rowHeight(); }
  void setRowHeight(double height) { self().setRowHeight(height); }
};

}  // namespace kes
