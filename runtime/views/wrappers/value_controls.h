// Switch, slider, stepper and segmented control. Each raises its event, with the new
// value, for what the user does only. Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/controls.h"
#include "runtime/core/list.h"
#include "runtime/views/base/control_wrapper.h"

namespace kes {

// "_valuechanged:" (Boolean)
class KesSwitchWrapper : public ViewWrapper<KesSwitchWrapper, ui::Switch, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UISwitch";
  static constexpr std::string_view kName = "KesSwitchWrapper";
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  bool Value() const { return self().on(); }
  void setValue(bool on) { self().setOn(on); }
};

// "_valuechanged:" (float)
class KesSliderWrapper : public ViewWrapper<KesSliderWrapper, ui::Slider, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UISlider";
  static constexpr std::string_view kName = "KesSliderWrapper";
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  float Value() const { return static_cast<float>(self().value()); }
  void setValue(float value) { self().setValue(value); }
  float MinValue() const { return static_cast<float>(self().minimum()); }
  float MaxValue() const { return static_cast<float>(self().maximum()); }
  void setMinValue(float value) { self().setRange(value, self().maximum()); }
  void setMaxValue(float value) { self().setRange(self().minimum(), value); }
};

// "_valuechanged:" (double)
class KesStepperWrapper : public ViewWrapper<KesStepperWrapper, ui::Stepper, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UIStepper";
  static constexpr std::string_view kName = "KesStepperWrapper";
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  double Value() const { return self().value(); }
  void setValue(double value) { self().setValue(value); }
  double StepValue() const { return self().step(); }
  void setStepValue(double step) { self().setStep(step); }
  double MinValue() const { return self().minimum(); }
  double MaxValue() const { return self().maximum(); }
  void setMinValue(double value) { self().setRange(value, self().maximum()); }
  void setMaxValue(double value) { self().setRange(self().minimum(), value); }
};

// "_indexchanged:" (integer)
class KesSegmentedControlWrapper
    : public ViewWrapper<KesSegmentedControlWrapper, ui::SegmentedControl, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UISegmentedControl";
  static constexpr std::string_view kName = "KesSegmentedControlWrapper";
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  std::int32_t SelectedIndex() const { return self().selected(); }
  void setSelectedIndex(std::int32_t index) { self().setSelected(index); }
  KesList GetItems() const;
  void SetItems(const KesList& items);
};

}  // namespace kes
