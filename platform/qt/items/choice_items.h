// Picker and date picker: wheels of choices. The date picker's wheels are those of its
// mode, in the phone's time zone.
#pragma once

#include <QDateTime>
#include <QTimeZone>

#include "platform/qt/items/control_item.h"
#include "platform/ui/controls/pickers.h"

namespace qt {

class PickerItem final : public ControlItem {
  Q_OBJECT
 public:
  PickerItem(Stage& stage, ui::View& view);
  bool ownsTaps() const override { return false; }

 private Q_SLOTS:
  void chosen(int column, int row);

 private:
  void syncControl(QQuickItem& control, ui::View& view) override;
  QVariantList shown_;
};

class DateItem final : public ControlItem {
  Q_OBJECT
 public:
  DateItem(Stage& stage, ui::View& view);
  bool ownsTaps() const override { return false; }

 private Q_SLOTS:
  void chosen(int column, int row);

 private:
  enum class Wheel { Day, Month, Year, Date, Hour, Minute };
  void syncControl(QQuickItem& control, ui::View& view) override;
  QVariantMap columnOf(Wheel wheel, const QDateTime& at, int minuteInterval) const;

  QTimeZone zone_;
  QDate anchor_;  // the middle of the wheel of dates
  std::vector<Wheel> wheels_;
  QVariantList shown_;
};

}  // namespace qt
