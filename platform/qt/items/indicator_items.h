// The two that show that something is under way: the spinner, which turns by itself
// while it can be seen, and the progress bar.
#pragma once

#include <QTimer>

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/indicators.h"

namespace qt {

class SpinnerItem final : public ViewItem {
  Q_OBJECT
 public:
  SpinnerItem(Stage& stage, ui::View& view);

 protected:
  void sync(ui::View& view, ui::Change changed) override;

 private:
  QImage spokes(ui::Color color, double side) const;

  PaintedItem wheel_;
  QTimer turn_;
};

class ProgressItem final : public ViewItem {
  Q_OBJECT
 public:
  ProgressItem(Stage& stage, ui::View& view);

 protected:
  void sync(ui::View& view, ui::Change changed) override;

 private:
  PaintedItem track_, done_;
};

}  // namespace qt
