#include "platform/qt/items/control_item.h"

#include <QColor>
#include <QVariant>

#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/qt/items/qml_parts.h"
#include "platform/ui/values/style.h"

namespace qt {

namespace {

void set(QQuickItem& control, const char* name, const QVariant& value) {
  if (control.property(name) != value) control.setProperty(name, value);
}

}  // namespace

ControlItem::ControlItem(Stage& stage, ui::View& view, const char* part)
    : ViewItem(stage, view), control_(stage.parts.make(QLatin1String(part))) {
  if (control_) control_->setParentItem(this);
}

ControlItem::~ControlItem() {
  if (control_) control_->disconnect(this);
}

void ControlItem::sync(ui::View& view, ui::Change) {
  if (!control_) return;
  control_->setSize(size());
  control_->setEnabled(view.enabled() && view.userInteraction());
  syncControl(*control_, view);
}

SwitchItem::SwitchItem(Stage& stage, ui::View& view) : ControlItem(stage, view, "Toggle") {
  if (control()) connect(control(), SIGNAL(userSet(bool)), this, SLOT(userSet(bool)));
}

void SwitchItem::syncControl(QQuickItem& control, ui::View& view) {
  const auto& v = static_cast<ui::Switch&>(view);
  set(control, "activeColor", toQColor(v.onColor.value_or(v.tint())));
  set(control, "restColor", toQColor(v.offColor.value_or(ui::style::kSwitchOff)));
  set(control, "thumbColor", toQColor(v.thumbColor.value_or(ui::kWhite)));
  set(control, "checked", v.on());
  set(control, "ready", true);
}

SliderItem::SliderItem(Stage& stage, ui::View& view) : ControlItem(stage, view, "Track") {
  if (control()) connect(control(), SIGNAL(userSet(double)), this, SLOT(userSet(double)));
}

void SliderItem::syncControl(QQuickItem& control, ui::View& view) {
  const auto& v = static_cast<ui::Slider&>(view);
  set(control, "trackColor", toQColor(v.minimumTrackColor.value_or(v.tint())));
  set(control, "continuous", v.continuous);
  set(control, "from", v.minimum());
  set(control, "to", v.maximum());
  if (!control.property("pressed").toBool()) set(control, "value", v.value());
}

StepperItem::StepperItem(Stage& stage, ui::View& view) : ControlItem(stage, view, "Steps") {
  if (control()) connect(control(), SIGNAL(stepped(int)), this, SLOT(stepped(int)));
}

void StepperItem::syncControl(QQuickItem& control, ui::View& view) {
  const auto& v = static_cast<ui::Stepper&>(view);
  set(control, "accent", toQColor(v.tint()));
  set(control, "least", v.minimum());
  set(control, "most", v.maximum());
  set(control, "value", v.value());
}

SegmentsItem::SegmentsItem(Stage& stage, ui::View& view) : ControlItem(stage, view, "Segments") {
  if (control()) connect(control(), SIGNAL(chosen(int)), this, SLOT(chosen(int)));
}

void SegmentsItem::syncControl(QQuickItem& control, ui::View& view) {
  const auto& v = static_cast<ui::SegmentedControl&>(view);
  QVariantList items;
  for (const auto& item : v.items()) items << QString::fromStdString(item);
  set(control, "accent", toQColor(v.tint()));
  // White, as on the bars, unless the tint is too light for it.
  set(control, "accentText",
      toQColor(ui::contrast(ui::kWhite, v.tint()) >= 4.5 ? ui::kWhite : ui::readableOn(v.tint())));
  set(control, "textFont", toQFont(ui::Font::system(14)));
  set(control, "items", items);
  set(control, "selected", v.selected());
}

}  // namespace qt
