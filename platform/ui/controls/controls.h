// Switch, slider, stepper and segmented control: plain state, and a hook for what the
// user does. Setters clamp and don't raise the hook; the user… functions, called by the
// screen's own control and by taps and keys, do. Main thread.
#pragma once

#include "platform/ui/tree/view.h"

namespace ui {

class Switch : public View {
 public:
  std::string_view className() const override { return "UISwitch"; }
  bool on() const { return on_; }
  void setOn(bool on);
  std::optional<Color> onColor, offColor, thumbColor;  // set before it is shown
  std::function<void(bool)> onChange;
  void userSet(bool on);
  bool takesTap() const override { return true; }
  bool holdsPress() const override { return true; }
  void tap(Point at) override;
  std::string accessibleValue() const override;

 protected:
  Role defaultRole() const override { return Role::Switch; }

 private:
  bool on_ = false;
};

// Base of the two that hold a number in a range.
class RangeControl : public View {
 public:
  double value() const { return value_; }
  void setValue(double value);
  double minimum() const { return minimum_; }
  double maximum() const { return maximum_; }
  void setRange(double minimum, double maximum);
  double step() const { return step_; }
  void setStep(double step);
  std::function<void(double)> onChange;
  void userSet(double value);
  bool adjust(int steps) override;
  bool canFocus() const override { return enabled(); }
  std::string accessibleValue() const override;

 private:
  double value_ = 0, minimum_ = 0, maximum_ = 1, step_ = 0.1;
};

class Slider : public RangeControl {
 public:
  std::string_view className() const override { return "UISlider"; }
  std::optional<Color> minimumTrackColor;
  bool continuous = true;  // report while dragging, not only at the end
  bool takesTap() const override { return true; }
  bool holdsPress() const override { return true; }
  void tap(Point at) override;  // goes to the place tapped

 protected:
  Role defaultRole() const override { return Role::Slider; }
};

class Stepper : public RangeControl {
 public:
  Stepper() {
    setRange(0, 100);
    setStep(1);
  }
  std::string_view className() const override { return "UIStepper"; }
  bool takesTap() const override { return true; }
  bool holdsPress() const override { return true; }
  void tap(Point at) override;  // left half less, right half more

 protected:
  Role defaultRole() const override { return Role::Stepper; }
};

class SegmentedControl : public View {
 public:
  std::string_view className() const override { return "UISegmentedControl"; }
  const std::vector<std::string>& items() const { return items_; }
  void setItems(std::vector<std::string> items);
  int selected() const { return selected_; }  // -1: none
  void setSelected(int index);
  bool momentary = false;  // a choice is reported and does not stay
  std::function<void(int)> onChange;
  void userSelect(int index);
  std::string displayText() const override;  // the items, joined with " | "
  bool takesTap() const override { return true; }
  bool holdsPress() const override { return true; }
  void tap(Point at) override;
  bool adjust(int steps) override;
  std::string accessibleValue() const override;

 protected:
  Role defaultRole() const override { return Role::SegmentedControl; }

 private:
  std::vector<std::string> items_;
  int selected_ = -1;
};

}  // namespace ui
