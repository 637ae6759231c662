// kes_dateutils: calendar arithmetic and names on top of KesDateTime. A static module;
// main thread, since its subs change the shared date pattern for the length of a call.
//
// Instants are ticks. Values that make no date are logged ("Error: Invalid value: …")
// and throw "Cannot parse: invalid date". Names are in the phone's language and cached
// for the life of the process.
#pragma once

#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/data/dates/period.h"

namespace kes {

class kes_dateutils final : public Module<kes_dateutils> {
 public:
  static void describe(ClassBuilder<kes_dateutils>& c);
  void _process_globals() override;

  std::int64_t _addperiod(std::int64_t ticks, const Ref<Period>& period);
  Ref<Period> _periodbetween(std::int64_t start, std::int64_t end);
  Ref<Period> _periodbetweenindays(std::int64_t start, std::int64_t end);
  Ref<Period> _periodbetweenhelper(std::int64_t start, std::int64_t end, bool skipYearsAndMonths);

  // A year below 0 is one before Christ.
  std::int64_t _setdate(std::int32_t year, std::int32_t month, std::int32_t day);
  std::int64_t _setdateandtime(std::int32_t year, std::int32_t month, std::int32_t day,
                               std::int32_t hour, std::int32_t minute, std::int32_t second);
  std::int64_t _setdateandtime2(std::int32_t year, std::int32_t month, std::int32_t day,
                                std::int32_t hour, std::int32_t minute, std::int32_t second,
                                double zoneOffsetHours);
  std::int32_t _numberofdaysinmonth(std::int32_t month, std::int32_t year);
  bool _issameday(std::int64_t a, std::int64_t b);

  Text _getdayofweekname(std::int64_t ticks);
  Text _getmonthname(std::int64_t ticks);
  KesList _getdaysnames();    // Sunday first
  KesList _getmonthsnames();  // January first
  Text _getera(bool beforeChrist);

  Text _tickstostring(std::int64_t ticks);
  std::int64_t _tickstounixtime(std::int64_t ticks);  // seconds
  std::int64_t _unixtimetoticks(std::int64_t seconds);
  // At least so many integer digits, no grouping.
  Text _format(std::int64_t number, std::int32_t digits);

  KesList _dayslist;
  KesList _monthslist;
  Text _ad;
  Text _bc;

 private:
  // Era, year, month and day as one run of digits.
  Text dayText(std::int32_t year, std::int32_t month, std::int32_t day);
};

}  // namespace kes
