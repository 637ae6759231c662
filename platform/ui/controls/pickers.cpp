#include "platform/ui/controls/pickers.h"

#include <algorithm>
#include <ctime>

#include "platform/base/platform.h"

namespace ui {

namespace {
constexpr platform::Ticks kMinute = 60'000, kDay = 86'400'000;
}

DatePicker::DatePicker() : ticks_(platform::current().clock().now()) {}

void DatePicker::setTicks(platform::Ticks ticks) {
  if (earliest_) ticks = std::max(ticks, *earliest_);
  if (latest_) ticks = std::min(ticks, *latest_);
  if (ticks == ticks_) return;
  ticks_ = ticks;
  markChanged(Change::State);
}

void DatePicker::setLimits(std::optional<platform::Ticks> earliest,
                           std::optional<platform::Ticks> latest) {
  earliest_ = earliest;
  latest_ = latest;
  setTicks(ticks_);
}

void DatePicker::setMode(Mode mode) {
  if (mode == mode_) return;
  mode_ = mode;
  markChanged(Change::Content);
}

void DatePicker::setMinuteInterval(int minutes) {
  minuteInterval_ = std::max(1, minutes);
  markChanged(Change::Content);
}

void DatePicker::userSet(platform::Ticks ticks) {
  if (!enabled()) return;
  Ref<View> pin(this);
  const auto former = ticks_;
  setTicks(ticks);
  if (ticks_ == former) return;
  if (const auto hook = onChange) hook(ticks_);
}

bool DatePicker::adjust(int steps) {
  const bool byDay = mode_ == Mode::Date || mode_ == Mode::DateAndTime;
  userSet(ticks_ + steps * (byDay ? kDay : kMinute * minuteInterval_));
  return true;
}

std::string DatePicker::accessibleValue() const {
  const auto seconds = static_cast<std::time_t>(ticks_ / 1000);
  std::tm local{};
  if (!::localtime_r(&seconds, &local)) return {};
  const char* const pattern = mode_ == Mode::Date          ? "%d/%m/%Y"
                              : mode_ == Mode::DateAndTime ? "%d/%m/%Y %H:%M"
                                                           : "%H:%M";
  char text[32];
  return {text, std::strftime(text, sizeof text, pattern, &local)};
}

void PickerView::setColumns(int count) {
  columns_.resize(static_cast<std::size_t>(std::max(1, count)));
  markChanged(Change::Content);
}

void PickerView::setItems(int column, std::vector<std::string> items) {
  auto& c = columns_.at(static_cast<std::size_t>(column));
  c.items = std::move(items);
  c.selected = std::clamp(c.selected, 0, std::max(0, static_cast<int>(c.items.size()) - 1));
  markChanged(Change::Content);
}

void PickerView::setSelected(int column, int row) {
  auto& c = columns_.at(static_cast<std::size_t>(column));
  if (row < 0 || row >= static_cast<int>(c.items.size()) || row == c.selected) return;
  c.selected = row;
  markChanged(Change::State);
}

void PickerView::userSelect(int column, int row) {
  if (!enabled() || column < 0 || column >= columns()) return;
  Ref<View> pin(this);
  const int former = selected(column);
  setSelected(column, row);
  if (selected(column) == former) return;
  if (const auto hook = onChange) hook(column, row);
}

std::string PickerView::displayText() const {
  std::string all;
  for (const auto& c : columns_)
    if (!c.items.empty())
      all += (all.empty() ? "" : " ") + c.items[static_cast<std::size_t>(c.selected)];
  return all;
}

bool PickerView::adjust(int steps) {
  userSelect(0, selected(0) + steps);
  return true;
}

}  // namespace ui
