#include "platform/ui/controls/table_view.h"

#include "platform/ui/controls/label.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {
constexpr double kMargin = 12;
}

void TableView::setRows(std::vector<AttributedText> rows) {
  rows_ = std::move(rows);
  selected_ = -1;
  rebuild();
}

void TableView::setRowHeight(double height) {
  rowHeight_ = height;
  rebuild();
}

void TableView::setRowFont(const Font& font) {
  font_ = font;
  rebuild();
}

void TableView::setSelectedRow(int row) {
  if (row < -1 || row >= static_cast<int>(rows_.size()) || row == selected_) return;
  const auto paint = [this](int index, Color color) {
    if (index >= 0) content().children()[static_cast<std::size_t>(index)]->setBackground(color);
  };
  paint(selected_, kClear);
  selected_ = row;
  paint(selected_, style::kSelection);
}

void TableView::layoutSubviews() {
  ScrollView::layoutSubviews();
  if (bounds().width != builtWidth_) rebuild();
}

void TableView::rebuild() {
  builtWidth_ = bounds().width;
  content().removeAllSubviews();
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    auto row = makeShared<View>();
    row->setFrame({0, static_cast<double>(i) * rowHeight_, builtWidth_, rowHeight_});
    row->setRole(Role::ListItem);
    const int index = static_cast<int>(i);
    if (index == selected_) row->setBackground(style::kSelection);
    row->setOnTap([this, index](View&) {
      Ref<View> pin(this);
      setSelectedRow(index);  // NOLINT(clang-analyzer-core.CallAndMessage): this is there
      if (const auto hook = onSelect) hook(index);
    });
    auto label = makeShared<Label>();
    label->setFont(font_);
    label->setAttributedText(rows_[i]);
    label->setFrame({kMargin, 0, std::max(0.0, builtWidth_ - 2 * kMargin), rowHeight_});
    row->addSubview(label);
    content().addSubview(row);
  }
  setContentSize({builtWidth_, static_cast<double>(rows_.size()) * rowHeight_});
  setOffset(offset());
}

}  // namespace ui
