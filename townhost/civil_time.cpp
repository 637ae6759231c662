#include "townhost/civil_time.h"

#include <cstddef>
#include <cstdio>

namespace town {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::sys_time;

sys_time<milliseconds> timeOf(Instant instant) {
  return sys_time<milliseconds>(milliseconds(instant));
}

sys_time<milliseconds> changeover(std::chrono::year year, month of) {
  return sys_days(year / of / std::chrono::Sunday[std::chrono::last]) + hours(1);
}

// Takes exactly `width` digits off the front.
std::optional<int> digits(std::string_view& text, std::size_t width) {
  if (text.size() < width) return std::nullopt;
  int value = 0;
  for (char c : text.substr(0, width)) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  text.remove_prefix(width);
  return value;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

Instant machineTime() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<milliseconds>(since).count();
}

minutes offsetAt(Instant instant) {
  const auto time = timeOf(instant);
  const auto year = std::chrono::year_month_day(std::chrono::floor<days>(time)).year();
  const bool summer =
      time >= changeover(year, std::chrono::March) && time < changeover(year, std::chrono::October);
  return hours(summer ? 2 : 1);
}

CivilDay dayAt(Instant instant) {
  const auto local = timeOf(instant) + offsetAt(instant);
  return CivilDay(std::chrono::floor<days>(local).time_since_epoch());
}

std::string isoDate(CivilDay day) {
  const std::chrono::year_month_day date(day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::optional<Instant> parseInstant(std::string_view text) {
  const auto year = digits(text, 4);
  if (!year || !take(text, '-')) return std::nullopt;
  const auto mon = digits(text, 2);
  if (!mon || !take(text, '-')) return std::nullopt;
  const auto day = digits(text, 2);
  if (!day) return std::nullopt;
  const auto date = std::chrono::year(*year) / *mon / *day;
  if (!date.ok()) return std::nullopt;

  int hour = 0, minute = 0, second = 0;
  if (take(text, 'T') || take(text, ' ')) {
    const auto h = digits(text, 2);
    if (!h || *h > 23 || !take(text, ':')) return std::nullopt;
    const auto m = digits(text, 2);
    if (!m || *m > 59) return std::nullopt;
    hour = *h, minute = *m;
    if (take(text, ':')) {
      const auto s = digits(text, 2);
      if (!s || *s > 59) return std::nullopt;
      second = *s;
    }
  }
  const auto wall =
      std::chrono::duration_cast<milliseconds>(sys_days(date).time_since_epoch() + hours(hour) +
                                               minutes(minute) + std::chrono::seconds(second));

  if (take(text, 'Z')) return text.empty() ? std::optional(wall.count()) : std::nullopt;
  if (!text.empty()) {
    const int sign = text.front() == '-' ? -1 : text.front() == '+' ? 1 : 0;
    if (sign == 0) return std::nullopt;
    text.remove_prefix(1);
    const auto h = digits(text, 2);
    if (!h || *h > 18) return std::nullopt;
    take(text, ':');
    const auto m = digits(text, 2);
    if (!m || *m > 59 || !text.empty()) return std::nullopt;
    return (wall - sign * (hours(*h) + minutes(*m))).count();
  }
  const Instant asSummer = (wall - hours(2)).count();
  if (offsetAt(asSummer) == hours(2)) return asSummer;
  return (wall - hours(1)).count();
}

}  // namespace town
