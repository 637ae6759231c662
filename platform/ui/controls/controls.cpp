#include "platform/ui/controls/controls.h"

#include <algorithm>
#include <cstdio>

#include "platform/ui/values/branding.h"

namespace ui {

void Switch::setOn(bool on) {
  if (on == on_) return;
  on_ = on;
  markChanged(Change::State);
}

void Switch::userSet(bool on) {
  if (!enabled() || on == on_) return;
  Ref<View> pin(this);
  setOn(on);
  if (const auto hook = onChange) hook(on_);
}

void Switch::tap(Point) { userSet(!on_); }

std::string Switch::accessibleValue() const { return on_ ? words().on : words().off; }

void RangeControl::setValue(double value) {
  value = std::clamp(value, minimum_, maximum_);
  if (value == value_) return;
  value_ = value;
  markChanged(Change::State);
}

void RangeControl::setRange(double minimum, double maximum) {
  minimum_ = minimum;
  maximum_ = std::max(minimum, maximum);
  markChanged(Change::State);
  setValue(value_);
}

void RangeControl::setStep(double step) {
  if (step > 0) step_ = step;
}

void RangeControl::userSet(double value) {
  if (!enabled()) return;
  Ref<View> pin(this);
  const double former = value_;
  setValue(value);
  if (value_ == former) return;
  if (const auto hook = onChange) hook(value_);
}

bool RangeControl::adjust(int steps) {
  userSet(value_ + steps * step_);
  return true;
}

std::string RangeControl::accessibleValue() const {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value_);
  return text;
}

void Slider::tap(Point at) {
  if (bounds().width > 0)
    userSet(minimum() + (maximum() - minimum()) * std::clamp(at.x / bounds().width, 0.0, 1.0));
}

void Stepper::tap(Point at) { adjust(at.x < bounds().width / 2 ? -1 : 1); }

void SegmentedControl::setItems(std::vector<std::string> items) {
  items_ = std::move(items);
  if (selected_ >= static_cast<int>(items_.size())) selected_ = -1;
  markChanged(Change::Content);
}

void SegmentedControl::setSelected(int index) {
  if (index < -1 || index >= static_cast<int>(items_.size()) || index == selected_) return;
  selected_ = index;
  markChanged(Change::State);
}

void SegmentedControl::userSelect(int index) {
  if (!enabled() || index < 0 || index >= static_cast<int>(items_.size())) return;
  if (!momentary && index == selected_) return;
  Ref<View> pin(this);
  if (!momentary) setSelected(index);
  if (const auto hook = onChange) hook(index);
}

std::string SegmentedControl::displayText() const {
  std::string all;
  for (const auto& item : items_) all += (all.empty() ? "" : " | ") + item;
  return all;
}

void SegmentedControl::tap(Point at) {
  if (bounds().width > 0)
    userSelect(static_cast<int>(at.x / bounds().width * static_cast<double>(items_.size())));
}

bool SegmentedControl::adjust(int steps) {
  userSelect(std::clamp(selected_ + steps, 0, static_cast<int>(items_.size()) - 1));
  return true;
}

std::string SegmentedControl::accessibleValue() const {
  return selected_ < 0 ? "" : items_[static_cast<std::size_t>(selected_)];
}

}  // namespace ui
