// A plain list of one-line rows with one selection, built on a scroll view. Rows are
// replaced as a whole. Main thread.
#pragma once

#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/values/rich_text.h"

namespace ui {

class TableView : public ScrollView {
 public:
  std::string_view className() const override { return "UITableView"; }

  void setRows(std::vector<AttributedText> rows);
  const std::vector<AttributedText>& rows() const { return rows_; }
  double rowHeight() const { return rowHeight_; }
  void setRowHeight(double height);
  Font rowFont() const { return font_; }
  void setRowFont(const Font& font);

  int selectedRow() const { return selected_; }
  void setSelectedRow(int row);  // -1: none; the hook is not raised

  std::function<void(int row)> onSelect;  // the user's choice

 protected:
  void layoutSubviews() override;

 private:
  void rebuild();

  std::vector<AttributedText> rows_;
  double rowHeight_ = 44;
  Font font_;
  int selected_ = -1;
  double builtWidth_ = -1;
};

}  // namespace ui
