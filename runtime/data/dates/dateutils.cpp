#include "runtime/data/dates/dateutils.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "runtime/data/dates/date_time.h"

namespace kes {

namespace {

constexpr auto kSecond = KesDateTime::TicksPerSecond;
constexpr auto kMinute = KesDateTime::TicksPerMinute;
constexpr auto kHour = KesDateTime::TicksPerHour;
constexpr auto kDay = KesDateTime::TicksPerDay;
// An instant before the year 1, whatever the zone.
constexpr std::int64_t kBeforeChrist = -137627932033025;

std::int32_t cut(std::int64_t n) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      n, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

// Sums of instants that no calendar holds stay at the ends of the range.
std::int64_t plus(std::int64_t a, std::int64_t b) {
  std::int64_t sum;
  if (!__builtin_add_overflow(a, b, &sum)) return sum;
  return b > 0 ? std::numeric_limits<std::int64_t>::max()
               : std::numeric_limits<std::int64_t>::min();
}

std::int64_t times(std::int64_t a, std::int64_t b) {
  std::int64_t product;
  if (!__builtin_mul_overflow(a, b, &product)) return product;
  return (a > 0) == (b > 0) ? std::numeric_limits<std::int64_t>::max()
                            : std::numeric_limits<std::int64_t>::min();
}

std::int64_t minus(std::int64_t a, std::int64_t b) {
  std::int64_t difference;
  if (!__builtin_sub_overflow(a, b, &difference)) return difference;
  return b < 0 ? std::numeric_limits<std::int64_t>::max()
               : std::numeric_limits<std::int64_t>::min();
}

class KeptTimeFormat {
 public:
  KeptTimeFormat() : pattern_(DateTime().TimeFormat()) {}
  ~KeptTimeFormat() { DateTime().setTimeFormat(pattern_); }
  KeptTimeFormat(const KeptTimeFormat&) = delete;
  KeptTimeFormat& operator=(const KeptTimeFormat&) = delete;

 private:
  Text pattern_;
};

// What a caller with numbers that make no date gets: the failure of reading them as one.
[[noreturn]] void failInvalidDate(const Text& made) {
  KesCommon::Log(Text("Error: Invalid value: ") + made);
  Kes::ObjectToNumber("invalid date");
  std::abort();  // the text is no number
}

Text nameBy(std::string_view pattern, std::int64_t ticks) {
  const KeptDateFormat kept;
  DateTime().setDateFormat(pattern);
  return DateTime().Date(ticks);
}

// The farthest of the steps first, first + 1, … (or down from it, for a negative
// direction) that does not go past the end.
template <class Advance>
std::int32_t stepsBefore(std::int64_t end, int direction, std::int64_t first, int count,
                         Advance advance) {
  for (int i = 0; i < count; ++i) {
    const auto step = cut(first + direction * i);
    const auto reached = advance(step);
    if (direction > 0 ? reached > end : reached < end) return step - direction;
  }
  return 0;
}

}  // namespace

void kes_dateutils::describe(ClassBuilder<kes_dateutils>& c) {
  c.name("kes_dateutils");
  c.sub<&kes_dateutils::_process_globals>("process_globals");
  c.sub<&kes_dateutils::_addperiod>("addperiod");
  c.sub<&kes_dateutils::_periodbetween>("periodbetween");
  c.sub<&kes_dateutils::_periodbetweenindays>("periodbetweenindays");
  c.sub<&kes_dateutils::_periodbetweenhelper>("periodbetweenhelper");
  c.sub<&kes_dateutils::_setdate>("setdate");
  c.sub<&kes_dateutils::_setdateandtime>("setdateandtime");
  c.sub<&kes_dateutils::_setdateandtime2>("setdateandtime2");
  c.sub<&kes_dateutils::_numberofdaysinmonth>("numberofdaysinmonth");
  c.sub<&kes_dateutils::_issameday>("issameday");
  c.sub<&kes_dateutils::_getdayofweekname>("getdayofweekname");
  c.sub<&kes_dateutils::_getmonthname>("getmonthname");
  c.sub<&kes_dateutils::_getdaysnames>("getdaysnames");
  c.sub<&kes_dateutils::_getmonthsnames>("getmonthsnames");
  c.sub<&kes_dateutils::_getera>("getera");
  c.sub<&kes_dateutils::_tickstostring>("tickstostring");
  c.sub<&kes_dateutils::_tickstounixtime>("tickstounixtime");
  c.sub<&kes_dateutils::_unixtimetoticks>("unixtimetoticks");
  c.sub<&kes_dateutils::_format>("format");
  c.field<&kes_dateutils::_dayslist>("dayslist");
  c.field<&kes_dateutils::_monthslist>("monthslist");
  c.field<&kes_dateutils::_ad>("ad");
  c.field<&kes_dateutils::_bc>("bc");
}

void kes_dateutils::_process_globals() {
  _dayslist = KesList();
  _monthslist = KesList();
  _ad = Text();
  _bc = Text();
}

std::int64_t kes_dateutils::_addperiod(std::int64_t ticks, const Ref<Period>& period) {
  if (!period) throw KesException(formatText("Object was not initialized (%@)", {"_period"}));
  const auto moved = DateTime().Add(ticks, period->Years, period->Months, period->Days);
  return plus(moved, period->Hours * kHour + period->Minutes * kMinute + period->Seconds * kSecond);
}

Ref<Period> kes_dateutils::_periodbetween(std::int64_t start, std::int64_t end) {
  return _periodbetweenhelper(start, end, false);
}

Ref<Period> kes_dateutils::_periodbetweenindays(std::int64_t start, std::int64_t end) {
  return _periodbetweenhelper(start, end, true);
}

Ref<Period> kes_dateutils::_periodbetweenhelper(std::int64_t start, std::int64_t end,
                                                bool skipYearsAndMonths) {
  auto& dates = DateTime();
  auto p = platform::makeShared<Period>();
  p->Initialize();
  const int direction = end > start ? 1 : -1;
  const auto beyond = [&](std::int64_t t) { return direction > 0 ? t > end : t < end; };

  // Each step is tried from the start, with all that was found before it: as _addperiod will
  // add them. Step by step 29 February would lose its day on the way and not come to the end.
  std::int64_t days = 0;
  if (!skipYearsAndMonths) {
    const auto y = dates.GetYear(end) - dates.GetYear(start);
    p->Years = beyond(dates.Add(start, y, 0, 0)) ? y - direction : y;
    p->Months = stepsBefore(end, direction, direction, 13,
                            [&](std::int32_t m) { return dates.Add(start, p->Years, m, 0); });
  } else {
    const double span = static_cast<double>(minus(end, start)) / static_cast<double>(kDay);
    days = static_cast<std::int64_t>(span - 3.0 * direction);
  }
  p->Days = stepsBefore(end, direction, days + direction, 32,
                        [&](std::int32_t d) { return dates.Add(start, p->Years, p->Months, d); });

  const auto rest = minus(end, dates.Add(start, p->Years, p->Months, p->Days));
  p->Hours = cut(rest / kHour);
  p->Minutes = cut(rest % kHour / kMinute);
  p->Seconds = cut(rest % kMinute / kSecond);
  return p;
}

std::int64_t kes_dateutils::_setdate(std::int32_t year, std::int32_t month, std::int32_t day) {
  return _setdateandtime(year, month, day, 0, 0, 0);
}

std::int64_t kes_dateutils::_setdateandtime(std::int32_t year, std::int32_t month, std::int32_t day,
                                            std::int32_t hour, std::int32_t minute,
                                            std::int32_t second) {
  const Text date = dayText(year, month, day);
  const Text time = _format(hour, 2) + _format(minute, 2) + _format(second, 2);
  try {
    const KeptDateFormat keptDate;
    const KeptTimeFormat keptTime;
    DateTime().setDateFormat("GGyyyyMMdd");
    DateTime().setTimeFormat("HHmmss");
    return DateTime().DateTimeParse(date, time);
  } catch (const KesException&) {
  }
  failInvalidDate(date + Text(" ") + time);
}

std::int64_t kes_dateutils::_setdateandtime2(std::int32_t year, std::int32_t month,
                                             std::int32_t day, std::int32_t hour,
                                             std::int32_t minute, std::int32_t second,
                                             double zoneOffsetHours) {
  // Too far to be a zone, and so is what is no number.
  constexpr double kNowhere = 1e9;
  const auto minutes = static_cast<std::int64_t>(
      std::isnan(zoneOffsetHours) ? kNowhere : std::min(std::abs(zoneOffsetHours) * 60, kNowhere));
  const Text text = dayText(year, month, day) + _format(hour, 2) + _format(minute, 2) +
                    _format(second, 2) + Text(zoneOffsetHours < 0 ? "GMT-" : "GMT+") +
                    _format(minutes / 60, 2) + Text(":") + _format(minutes % 60, 2);
  try {
    const KeptDateFormat kept;
    DateTime().setDateFormat("GGyyyyMMddHHmmssz");
    return DateTime().DateParse(text);
  } catch (const KesException&) {
  }
  failInvalidDate(text);
}

Text kes_dateutils::dayText(std::int32_t year, std::int32_t month, std::int32_t day) {
  return _getera(year < 0) + _format(std::abs(std::int64_t{year}), 4) + _format(month, 2) +
         _format(day, 2);
}

std::int32_t kes_dateutils::_numberofdaysinmonth(std::int32_t month, std::int32_t year) {
  const auto first = _setdate(year, month, 1);
  const auto next = DateTime().Add(first, 0, 1, 0);
  return cut(KesCommon::Round(static_cast<double>(next - first) / static_cast<double>(kDay)));
}

bool kes_dateutils::_issameday(std::int64_t a, std::int64_t b) {
  auto& d = DateTime();
  return d.GetYear(a) == d.GetYear(b) && d.GetMonth(a) == d.GetMonth(b) &&
         d.GetDayOfMonth(a) == d.GetDayOfMonth(b);
}

Text kes_dateutils::_getdayofweekname(std::int64_t ticks) { return nameBy("EEEE", ticks); }
Text kes_dateutils::_getmonthname(std::int64_t ticks) { return nameBy("MMMM", ticks); }

KesList kes_dateutils::_getdaysnames() {
  if (_dayslist.IsInitialized()) return _dayslist;
  _dayslist.Initialize();
  auto& d = DateTime();
  const auto now = d.Now();
  const auto sunday = d.Add(now, 0, 0, -(d.GetDayOfWeek(now) - 1));
  for (int i = 0; i < 7; ++i) _dayslist.Add(_getdayofweekname(d.Add(sunday, 0, 0, i)));
  return _dayslist;
}

KesList kes_dateutils::_getmonthsnames() {
  if (_monthslist.IsInitialized()) return _monthslist;
  _monthslist.Initialize();
  auto& d = DateTime();
  const auto now = d.Now();
  const auto january = d.Add(now, 0, -(d.GetMonth(now) - 1), 0);
  for (int i = 0; i < 12; ++i) _monthslist.Add(_getmonthname(d.Add(january, 0, i, 0)));
  return _monthslist;
}

Text kes_dateutils::_getera(bool beforeChrist) {
  Text& kept = beforeChrist ? _bc : _ad;
  if (kept.empty()) kept = nameBy("GG", beforeChrist ? kBeforeChrist : 0);
  return kept;
}

Text kes_dateutils::_tickstostring(std::int64_t ticks) {
  return DateTime().Date(ticks) + Text(" ") + DateTime().Time(ticks);
}

std::int64_t kes_dateutils::_tickstounixtime(std::int64_t ticks) {
  return static_cast<std::int64_t>(static_cast<double>(ticks) / static_cast<double>(kSecond));
}

std::int64_t kes_dateutils::_unixtimetoticks(std::int64_t seconds) {
  return times(seconds, kSecond);
}

Text kes_dateutils::_format(std::int64_t number, std::int32_t digits) {
  return c().NumberFormat2(static_cast<double>(number), digits, 0, 0, false);
}

}  // namespace kes
