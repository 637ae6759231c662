// Switch, slider, stepper and segmented control: the toolkit's controls, showing the
// view's state and reporting what the user does through its user… functions. Keys reach
// them through the view tree, so none of them takes the keyboard focus.
#pragma once

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/controls.h"

namespace qt {

// Any view shown by one QML control that fills it.
class ControlItem : public ViewItem {
  Q_OBJECT
 public:
  ControlItem(Stage& stage, ui::View& view, const char* part);
  ~ControlItem() override;
  bool takesTouches() const override { return true; }
  bool ownsTaps() const override { return true; }

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  virtual void syncControl(QQuickItem& control, ui::View& view) = 0;
  QQuickItem* control() { return control_.get(); }
  // Runs with the view, if it still lives, and shows again what it then says.
  template <class View, class Act>
  void tell(Act act) {
    const auto held = view();
    if (!held) return;
    stage().guarded([&] { act(static_cast<View&>(*held)); });
    held->markChanged(ui::Change::State);
    stage().changed();
  }

 private:
  std::unique_ptr<QQuickItem> control_;
};

class SwitchItem final : public ControlItem {
  Q_OBJECT
 public:
  SwitchItem(Stage& stage, ui::View& view);

 private Q_SLOTS:
  void userSet(bool on) {
    tell<ui::Switch>([on](auto& v) { v.userSet(on); });
  }

 private:
  void syncControl(QQuickItem& control, ui::View& view) override;
};

class SliderItem final : public ControlItem {
  Q_OBJECT
 public:
  SliderItem(Stage& stage, ui::View& view);

 private Q_SLOTS:
  void userSet(double value) {
    tell<ui::Slider>([value](auto& v) { v.userSet(value); });
  }

 private:
  void syncControl(QQuickItem& control, ui::View& view) override;
};

class StepperItem final : public ControlItem {
  Q_OBJECT
 public:
  StepperItem(Stage& stage, ui::View& view);

 private Q_SLOTS:
  void stepped(int direction) {
    tell<ui::Stepper>([direction](auto& v) { v.userSet(v.value() + direction * v.step()); });
  }

 private:
  void syncControl(QQuickItem& control, ui::View& view) override;
};

class SegmentsItem final : public ControlItem {
  Q_OBJECT
 public:
  SegmentsItem(Stage& stage, ui::View& view);

 private Q_SLOTS:
  void chosen(int index) {
    tell<ui::SegmentedControl>([index](auto& v) { v.userSelect(index); });
  }

 private:
  void syncControl(QQuickItem& control, ui::View& view) override;
};

}  // namespace qt
