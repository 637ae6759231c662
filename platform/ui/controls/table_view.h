// A plain list of one-line rows with one selection, built on a scroll view.
//
// Rows are replaced as a whole and seen from the first. A row's view is made when the row
// comes near what is seen, so thousands cost what shows of them; whoever reads or
// searches the whole tree gets all of them (completeChildren). Main thread, points.
#pragma once

#include <unordered_map>

#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/values/rich_text.h"

namespace ui {

class TableView : public ScrollView {
 public:
  // The text of a row (from 0), asked for when its view is made.
  using RowText = std::function<AttributedText(int row)>;

  std::string_view className() const override { return "UITableView"; }

  void setRows(int count, RowText text);
  void setRows(std::vector<AttributedText> rows);
  int rowCount() const { return count_; }
  AttributedText rowText(int row) const { return text_(row); }
  double rowHeight() const { return rowHeight_; }  // at a text size of 100%
  void setRowHeight(double height);
  void setRowFont(const Font& font);

  int selectedRow() const { return selected_; }
  void setSelectedRow(int row);  // -1: none; the hook is not raised

  std::function<void(int row)> onSelect;  // the user's choice

  void completeChildren() override { makeRows(0, count_); }

 protected:
  void layoutSubviews() override;
  void offsetChanged() override;

 private:
  double shownHeight() const;
  void rebuild();
  void makeRowsInSight();
  void makeRows(int first, int end);
  Ref<View> makeRow(int row);

  int count_ = 0;
  RowText text_;
  double rowHeight_ = 44;
  Font font_;
  int selected_ = -1;
  double builtWidth_ = -1;
  std::unordered_map<int, View*> made_;  // the content's children, by row
};

}  // namespace ui
