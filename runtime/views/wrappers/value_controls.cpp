#include "runtime/views/wrappers/value_controls.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

void tint(ui::View& view, const Dictionary& properties) {
  if (const auto color = props::buildColor(properties, "tintColor")) view.setTint(*color);
}

std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> parts;
  for (std::size_t start = 0;;) {
    const auto comma = text.find(',', start);
    parts.emplace_back(text.substr(start, comma - start));
    if (comma == std::string_view::npos) return parts;
    start = comma + 1;
  }
}

}  // namespace

void KesSwitchWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::Switch& control = self();
  if (hasMethod(control, "_valuechanged:"))
    control.onChange = [&control](bool on) { raiseUIEvent(control, "_valuechanged:", {on}); };
}

Ref<ui::View> KesSwitchWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                      bool bridge) const {
  auto control = ensure(view);
  control->setOn(props::flag(properties, "value"));
  control->onColor = props::buildColor(properties, "onColor");
  control->offColor = props::buildColor(properties, "offColor");
  control->thumbColor = props::buildColor(properties, "thumbColor");
  return KesControlWrapper::build(control, properties, bridge);
}

void KesSliderWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::Slider& control = self();
  if (hasMethod(control, "_valuechanged:"))
    control.onChange = [&control](double value) {
      raiseUIEvent(control, "_valuechanged:", {static_cast<float>(value)});
    };
}

Ref<ui::View> KesSliderWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                      bool bridge) const {
  auto control = ensure(view);
  control->setRange(props::number(properties, "minimumValue"),
                    props::number(properties, "maximumValue"));
  control->setValue(props::number(properties, "value"));
  control->minimumTrackColor = props::buildColor(properties, "minimumTrackTintColor");
  control->continuous = props::flag(properties, "continuous");
  return KesControlWrapper::build(control, properties, bridge);
}

void KesStepperWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::Stepper& control = self();
  if (hasMethod(control, "_valuechanged:"))
    control.onChange = [&control](double value) {
      raiseUIEvent(control, "_valuechanged:", {value});
    };
}

Ref<ui::View> KesStepperWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                       bool bridge) const {
  auto control = ensure(view);
  tint(*control, properties);
  control->setRange(props::number(properties, "minimumValue"),
                    props::number(properties, "maximumValue"));
  control->setStep(props::number(properties, "stepValue"));
  return KesControlWrapper::build(control, properties, bridge);
}

void KesSegmentedControlWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName,
                                                 bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::SegmentedControl& control = self();
  if (hasMethod(control, "_indexchanged:"))
    control.onChange = [&control](int index) {
      raiseUIEvent(control, "_indexchanged:", {static_cast<std::int32_t>(index)});
    };
}

Ref<ui::View> KesSegmentedControlWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                                bool bridge) const {
  auto control = ensure(view);
  control->setItems(split(props::string(properties, "items")));
  tint(*control, properties);
  control->momentary = props::flag(properties, "momentary");
  return KesControlWrapper::build(control, properties, bridge);
}

KesList KesSegmentedControlWrapper::GetItems() const {
  return KesList::of({self().items().begin(), self().items().end()});
}

void KesSegmentedControlWrapper::SetItems(const KesList& items) {
  std::vector<std::string> texts;
  for (const kes::Value& item : items) texts.push_back(textForm(item));
  self().setItems(std::move(texts));
}

}  // namespace kes
