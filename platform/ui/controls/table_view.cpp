#include "platform/ui/controls/table_view.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/controls/label.h"
#include "platform/ui/text_engine.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {
constexpr double kMargin = 12;
constexpr int kRowsBeyond = 2;  // made before they come into sight
}  // namespace

void TableView::setRows(int count, RowText text) {
  count_ = std::max(0, count);
  text_ = std::move(text);
  selected_ = -1;
  setOffset({});
  rebuild();
}

void TableView::setRows(std::vector<AttributedText> rows) {
  const auto count = static_cast<int>(rows.size());
  setRows(count, [rows = std::move(rows)](int row) { return rows[static_cast<std::size_t>(row)]; });
}

void TableView::setRowHeight(double height) {
  rowHeight_ = std::max(1.0, height);
  rebuild();
}

void TableView::setRowFont(const Font& font) {
  font_ = font;
  rebuild();
}

void TableView::setSelectedRow(int row) {
  if (row < -1 || row >= count_ || row == selected_) return;
  const auto paint = [this](int index, Color color) {
    if (const auto it = made_.find(index); it != made_.end()) it->second->setBackground(color);
  };
  paint(selected_, kClear);
  selected_ = row;
  paint(selected_, style::kSelection);
}

void TableView::layoutSubviews() {
  ScrollView::layoutSubviews();
  if (bounds().width != builtWidth_)
    rebuild();
  else
    makeRowsInSight();
}

double TableView::shownHeight() const { return textHeight(rowHeight_); }

void TableView::offsetChanged() { makeRowsInSight(); }

void TableView::rebuild() {
  builtWidth_ = bounds().width;
  made_.clear();
  content().removeAllSubviews();
  setContentSize({builtWidth_, count_ * shownHeight()});
  setOffset(offset());
  makeRowsInSight();
}

void TableView::makeRowsInSight() {
  const auto rowAt = [this](double y) { return static_cast<int>(std::floor(y / shownHeight())); };
  makeRows(rowAt(offset().y) - kRowsBeyond, rowAt(offset().y + bounds().height) + 1 + kRowsBeyond);
}

void TableView::makeRows(int first, int end) {
  for (int row = std::max(0, first); row < std::min(end, count_); ++row)
    if (!made_.contains(row)) content().addSubview(makeRow(row));
}

Ref<View> TableView::makeRow(int index) {
  auto row = makeShared<View>();
  const double high = shownHeight();
  row->setFrame({0, index * high, builtWidth_, high});
  row->setRole(Role::ListItem);
  if (index == selected_) row->setBackground(style::kSelection);
  row->setOnTap([this, index](View&) {
    Ref<View> pin(this);
    setSelectedRow(index);  // NOLINT(clang-analyzer-core.CallAndMessage): this is there
    if (const auto hook = onSelect) hook(index);
  });
  auto label = makeShared<Label>();
  label->setFont(font_);
  label->setAttributedText(text_(index));
  label->setFrame({kMargin, 0, std::max(0.0, builtWidth_ - 2 * kMargin), high});
  row->addSubview(label);
  made_[index] = row.get();
  return row;
}

}  // namespace ui
