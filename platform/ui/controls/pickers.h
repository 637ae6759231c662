// Date picker and wheel picker: plain state and a hook for what the user does. Times
// are ticks (milliseconds since 1970 UTC). Setters don't raise the hooks. Main thread.
#pragma once

#include "platform/base/clock.h"
#include "platform/ui/tree/view.h"

namespace ui {

class DatePicker : public View {
 public:
  enum class Mode { Time = 0, Date = 1, DateAndTime = 2, CountDown = 3 };

  DatePicker();  // shows the present moment
  std::string_view className() const override { return "UIDatePicker"; }
  platform::Ticks ticks() const { return ticks_; }
  void setTicks(platform::Ticks ticks);
  void setLimits(std::optional<platform::Ticks> earliest, std::optional<platform::Ticks> latest);
  Mode mode() const { return mode_; }
  void setMode(Mode mode);
  int minuteInterval() const { return minuteInterval_; }
  void setMinuteInterval(int minutes);
  std::function<void(platform::Ticks)> onChange;
  void userSet(platform::Ticks ticks);
  bool canFocus() const override { return enabled(); }
  bool adjust(int steps) override;               // days, or minute intervals
  std::string accessibleValue() const override;  // in the phone's zone: "20/11/2026 10:05"

 protected:
  Role defaultRole() const override { return Role::DatePicker; }

 private:
  platform::Ticks ticks_ = 0;
  std::optional<platform::Ticks> earliest_, latest_;
  Mode mode_ = Mode::DateAndTime;
  int minuteInterval_ = 1;
};

class PickerView : public View {
 public:
  std::string_view className() const override { return "UIPickerView"; }
  int columns() const { return static_cast<int>(columns_.size()); }
  void setColumns(int count);
  const std::vector<std::string>& items(int column) const { return columns_.at(column).items; }
  void setItems(int column, std::vector<std::string> items);
  int selected(int column) const { return columns_.at(column).selected; }
  void setSelected(int column, int row);
  std::function<void(int column, int row)> onChange;
  void userSelect(int column, int row);
  std::string displayText() const override;  // the chosen items
  bool canFocus() const override { return enabled(); }
  bool adjust(int steps) override;  // the first column

 protected:
  Role defaultRole() const override { return Role::Picker; }

 private:
  struct Column {
    std::vector<std::string> items;
    int selected = 0;
  };
  std::vector<Column> columns_{1};
};

}  // namespace ui
