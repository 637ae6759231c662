// KesDateTime: clock, formatter, parser and calendar of the language. Reached as
// DateTime(); one instance, main thread.
//
// An instant is a number of ticks: milliseconds since 1970-01-01 00:00:00 UTC, signed.
// Fields and texts are those of the current zone, at first the phone's; patterns are
// Unicode date patterns, names come in the phone's language. Parsing is strict: the
// whole text has to fit and no field rolls over; else "Error parsing: %@". A pattern
// that means nothing formats as empty text and parses nothing.
#pragma once

#include <memory>

#include "runtime/core/object.h"

namespace kes {

class KesDateTime final : public Object {
 public:
  static constexpr std::int64_t TicksPerSecond = 1000;
  static constexpr std::int64_t TicksPerMinute = 60 * TicksPerSecond;
  static constexpr std::int64_t TicksPerHour = 60 * TicksPerMinute;
  static constexpr std::int64_t TicksPerDay = 24 * TicksPerHour;

  static KesDateTime& shared();
  // Begins anew from the platform in force: its zone, its language, the first patterns.
  static void restart();
  ~KesDateTime() override;
  std::string_view className() const override { return "KesDateTime"; }

  std::int64_t Now() const;
  Text Date(std::int64_t ticks) const;
  Text Time(std::int64_t ticks) const;
  Text DateFormat() const;  // "MM/dd/yyyy" at first
  Text TimeFormat() const;  // "HH:mm:ss" at first
  void setDateFormat(std::string_view pattern);
  void setTimeFormat(std::string_view pattern);
  Text DeviceDefaultDateFormat() const;
  Text DeviceDefaultTimeFormat() const;

  std::int64_t DateParse(std::string_view text) const;
  // A time that cannot be read: "Error parsing date string."
  std::int64_t DateTimeParse(std::string_view dateText, std::string_view timeText);

  // Hours from UTC, east positive.
  double TimeZoneOffset() const { return GetTimeZoneOffsetAt(Now()); }
  double GetTimeZoneOffsetAt(std::int64_t ticks) const;
  void SetTimeZone(double hours);
  // By name: "Europe/Rome", "GMT+05:30"; an unknown one is UTC.
  void setTimeZoneInternal(std::string_view zone);

  std::int32_t GetYear(std::int64_t ticks) const;  // within its era
  std::int32_t GetMonth(std::int64_t ticks) const;
  std::int32_t GetDayOfMonth(std::int64_t ticks) const;
  std::int32_t GetDayOfYear(std::int64_t ticks) const;
  std::int32_t GetDayOfWeek(std::int64_t ticks) const;  // 1 is Sunday
  std::int32_t GetHour(std::int64_t ticks) const;
  std::int32_t GetMinute(std::int64_t ticks) const;
  std::int32_t GetSecond(std::int64_t ticks) const;

  // Calendar units; the end of a short month clamps.
  std::int64_t Add(std::int64_t ticks, std::int32_t years, std::int32_t months,
                   std::int32_t days) const;

  // A PlatformDate; nil throws "Error parsing date string."
  static std::int64_t NSDateToTicks(const Value& date);
  static Value TicksToNSDate(std::int64_t ticks);

 private:
  struct Engine;
  KesDateTime();
  std::unique_ptr<Engine> engine_;
};

inline KesDateTime& DateTime() { return KesDateTime::shared(); }

// Restores the date pattern on every way out of a scope.
class KeptDateFormat {
 public:
  KeptDateFormat() : pattern_(DateTime().DateFormat()) {}
  ~KeptDateFormat() { DateTime().setDateFormat(pattern_); }
  KeptDateFormat(const KeptDateFormat&) = delete;
  KeptDateFormat& operator=(const KeptDateFormat&) = delete;

 private:
  Text pattern_;
};

}  // namespace kes
