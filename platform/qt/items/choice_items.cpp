#include "platform/qt/items/choice_items.h"

#include <QColor>
#include <QLocale>
#include <algorithm>

#include "platform/base/platform.h"
#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/ui/values/style.h"

namespace qt {

namespace {

constexpr int kFirstYear = 1900, kYears = 201, kDates = 365;

QVariantMap column(const QStringList& items, int selected, double width) {
  return {{QStringLiteral("items"), items},
          {QStringLiteral("selected"), selected},
          {QStringLiteral("width"), width}};
}

QStringList numbers(int from, int count, int step, int digits) {
  QStringList list;
  for (int i = 0; i < count; ++i)
    list << QStringLiteral("%1").arg(from + i * step, digits, 10, QLatin1Char('0'));
  return list;
}

// Only another choice of items rebuilds the wheels; a new selection turns them.
void showWheels(QQuickItem& control, QVariantList& shown, const QVariantList& wanted) {
  const auto itemsOf = [](const QVariantList& list) {
    QVariantList items;
    for (const auto& c : list) items << c.toMap().value(QStringLiteral("items"));
    return items;
  };
  control.setProperty("textFont", toQFont(ui::Font::system(17)));
  control.setProperty("textColor", toQColor(ui::style::kText));
  if (shown.isEmpty() || itemsOf(shown) != itemsOf(wanted)) control.setProperty("columns", wanted);
  shown = wanted;
  for (qsizetype i = 0; i < wanted.size(); ++i)
    QMetaObject::invokeMethod(&control, "select", Q_ARG(QVariant, static_cast<int>(i)),
                              Q_ARG(QVariant, wanted[i].toMap().value(QStringLiteral("selected"))));
}

}  // namespace

PickerItem::PickerItem(Stage& stage, ui::View& view) : ControlItem(stage, view, "Wheels") {
  if (control()) connect(control(), SIGNAL(chosen(int, int)), this, SLOT(chosen(int, int)));
}

void PickerItem::syncControl(QQuickItem& control, ui::View& view) {
  const auto& picker = static_cast<ui::PickerView&>(view);
  QVariantList wanted;
  for (int c = 0; c < picker.columns(); ++c) {
    QStringList items;
    for (const auto& item : picker.items(c)) items << QString::fromStdString(item);
    wanted << column(items, picker.selected(c), 1);
  }
  showWheels(control, shown_, wanted);
}

void PickerItem::chosen(int column, int row) {
  tell<ui::PickerView>([&](auto& v) {
    if (column < v.columns()) v.userSelect(column, row);
  });
}

DateItem::DateItem(Stage& stage, ui::View& view)
    : ControlItem(stage, view, "Wheels"),
      zone_(QByteArray::fromStdString(platform::current().timeZone)) {
  if (!zone_.isValid()) zone_ = QTimeZone::utc();
  if (control()) connect(control(), SIGNAL(chosen(int, int)), this, SLOT(chosen(int, int)));
}

QVariantMap DateItem::columnOf(Wheel wheel, const QDateTime& at, int interval) const {
  const QLocale locale(QString::fromStdString(platform::current().locale));
  const QDate date = at.date();
  switch (wheel) {
    case Wheel::Day:
      return column(numbers(1, date.daysInMonth(), 1, 1), date.day() - 1, 1);
    case Wheel::Month: {
      QStringList names;
      for (int m = 1; m <= 12; ++m) names << locale.standaloneMonthName(m);
      return column(names, date.month() - 1, 2);
    }
    case Wheel::Year:
      return column(numbers(kFirstYear, kYears, 1, 4), date.year() - kFirstYear, 1.3);
    case Wheel::Date: {
      QStringList days;
      for (int i = -kDates; i <= kDates; ++i)
        days << locale.toString(anchor_.addDays(i), QStringLiteral("ddd d MMM"));
      return column(days, static_cast<int>(anchor_.daysTo(date)) + kDates, 2.5);
    }
    case Wheel::Hour:
      return column(numbers(0, 24, 1, 2), at.time().hour(), 1);
    case Wheel::Minute:
      return column(numbers(0, 60 / interval, interval, 2), at.time().minute() / interval, 1);
  }
  return {};
}

void DateItem::syncControl(QQuickItem& control, ui::View& view) {
  const auto& picker = static_cast<ui::DatePicker&>(view);
  const auto at = QDateTime::fromMSecsSinceEpoch(picker.ticks(), zone_);
  switch (picker.mode()) {
    case ui::DatePicker::Mode::Date:
      wheels_ = {Wheel::Day, Wheel::Month, Wheel::Year};
      break;
    case ui::DatePicker::Mode::DateAndTime:
      wheels_ = {Wheel::Date, Wheel::Hour, Wheel::Minute};
      break;
    default:
      wheels_ = {Wheel::Hour, Wheel::Minute};
      break;
  }
  if (!anchor_.isValid() || qAbs(anchor_.daysTo(at.date())) > kDates) anchor_ = at.date();
  const int interval = std::clamp(picker.minuteInterval(), 1, 30);
  QVariantList wanted;
  for (const auto wheel : wheels_) wanted << columnOf(wheel, at, interval);
  showWheels(control, shown_, wanted);
}

void DateItem::chosen(int column, int row) {
  if (column < 0 || static_cast<std::size_t>(column) >= wheels_.size()) return;
  const Wheel wheel = wheels_[static_cast<std::size_t>(column)];
  tell<ui::DatePicker>([&](ui::DatePicker& picker) {
    auto at = QDateTime::fromMSecsSinceEpoch(picker.ticks(), zone_);
    QDate date = at.date();
    QTime time = at.time();
    const auto onDay = [](int year, int month, int day) {
      return QDate(year, month, std::min(day, QDate(year, month, 1).daysInMonth()));
    };
    switch (wheel) {
      case Wheel::Day:
        date = onDay(date.year(), date.month(), row + 1);
        break;
      case Wheel::Month:
        date = onDay(date.year(), row + 1, date.day());
        break;
      case Wheel::Year:
        date = onDay(kFirstYear + row, date.month(), date.day());
        break;
      case Wheel::Date:
        date = anchor_.addDays(row - kDates);
        break;
      case Wheel::Hour:
        time.setHMS(row, time.minute(), 0);
        break;
      case Wheel::Minute:
        time.setHMS(time.hour(), row * std::clamp(picker.minuteInterval(), 1, 30), 0);
        break;
    }
    picker.userSet(QDateTime(date, time, zone_).toMSecsSinceEpoch());
  });
}

}  // namespace qt
