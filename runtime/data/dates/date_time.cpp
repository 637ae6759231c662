#include "runtime/data/dates/date_time.h"

#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/base/platform.h"
#include "runtime/core/kes.h"
#include "runtime/data/dates/icu_text.h"
#include "runtime/data/dates/platform_date.h"

namespace kes {

namespace {

// What the calendar can count, either way: some 5.8 million years.
constexpr double kMaxMillis = 183882168921600000.0;

UDate toUDate(std::int64_t ticks) {
  return std::clamp(static_cast<double>(ticks), -kMaxMillis, kMaxMillis);
}

std::int64_t cutToTicks(double milliseconds) {
  if (std::isnan(milliseconds)) return 0;
  constexpr double kLimit = 9223372036854774784.0;  // the largest double below 2^63
  return static_cast<std::int64_t>(std::clamp(milliseconds, -kLimit, kLimit));
}

std::int32_t cutToInt(double d) {
  constexpr double kMin = std::numeric_limits<std::int32_t>::min();
  constexpr double kMax = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(d, kMin, kMax));
}

icu::Locale deviceLocale() {
  // The phone's names, with the plain calendar and plain digits whatever the phone's
  // own: texts made in the one place are read back in another.
  icu::Locale locale(platform::current().locale.c_str());
  UErrorCode status = U_ZERO_ERROR;
  locale.setKeywordValue("calendar", "gregorian", status);
  status = U_ZERO_ERROR;
  locale.setKeywordValue("numbers", "latn", status);
  return locale;
}

Text shortPattern(icu::DateFormat* made) {
  const std::unique_ptr<icu::DateFormat> format(made);
  icu::UnicodeString pattern;
  if (const auto* simple = dynamic_cast<icu::SimpleDateFormat*>(made)) simple->toPattern(pattern);
  return fromIcu(pattern);
}

// One pattern, strict when it parses.
class Formatter {
 public:
  Formatter(const icu::Locale& locale, const char* pattern, const icu::TimeZone& zone)
      : pattern_(pattern) {
    UErrorCode status = U_ZERO_ERROR;
    format_ = std::make_unique<icu::SimpleDateFormat>(toIcu(pattern), locale, status);
    if (U_FAILURE(status))
      throw KesException(formatText("No dates in this language: %@", {locale.getName()}));
    format_->setLenient(false);
    format_->setBooleanAttribute(UDAT_PARSE_PARTIAL_LITERAL_MATCH, false, status);
    format_->setBooleanAttribute(UDAT_PARSE_MULTIPLE_PATTERNS_FOR_MATCH, false, status);
    // Two-digit years mean those from 1950 on; the engine would ask the machine's clock.
    format_->set2DigitYearStart(-631152000000.0, status);
    setZone(zone);
  }

  const Text& pattern() const { return pattern_; }
  void setPattern(std::string_view pattern) {
    format_->applyPattern(toIcu(pattern));
    pattern_ = Text(pattern);
  }
  void setZone(const icu::TimeZone& zone) { format_->setTimeZone(zone); }

  Text format(std::int64_t ticks) const {
    icu::UnicodeString out;
    UErrorCode status = U_ZERO_ERROR;
    format_->format(toUDate(ticks), out, nullptr, status);
    return U_SUCCESS(status) ? fromIcu(out) : Text();
  }

  // Fields that the pattern leaves out are those of 1970-01-01 00:00:00 in the zone.
  std::optional<double> parse(std::string_view text) const {
    const auto source = toIcu(text);
    // The engine passes over blanks before a number; a strict reading does not.
    if (u_isWhitespace(source.char32At(0)) && !u_isWhitespace(toIcu(format(0)).char32At(0)))
      return std::nullopt;
    // The working calendar takes on the zone that a text names; the formatter's stays.
    const std::unique_ptr<icu::Calendar> calendar(format_->getCalendar()->clone());
    calendar->clear();
    icu::ParsePosition at(0);
    format_->parse(source, *calendar, at);
    if (at.getErrorIndex() >= 0 || at.getIndex() == 0 || at.getIndex() != source.length())
      return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    const UDate date = calendar->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    return date;
  }

 private:
  Text pattern_;
  std::unique_ptr<icu::SimpleDateFormat> format_;
};

}  // namespace

struct KesDateTime::Engine {
  explicit Engine(const icu::Locale& locale)
      : locale(locale),
        timeZone(icu::TimeZone::createTimeZone(
            icu::UnicodeString(platform::current().timeZone.c_str(), -1, US_INV))),
        zeroTimeZone(0, icu::UnicodeString(u"GMT")),
        dateFormat(locale, "MM/dd/yyyy", *timeZone),
        timeFormat(locale, "HH:mm:ss", *timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    cal = std::make_unique<icu::GregorianCalendar>(*timeZone, icu::Locale("en", "US"), status);
    if (U_FAILURE(status)) throw KesException("No calendar");
  }

  void setTimeZone(std::unique_ptr<icu::TimeZone> zone) {
    timeZone = std::move(zone);
    cal->setTimeZone(*timeZone);
    dateFormat.setZone(*timeZone);
    timeFormat.setZone(*timeZone);
  }

  std::int32_t field(std::int64_t ticks, UCalendarDateFields which) const {
    UErrorCode status = U_ZERO_ERROR;
    cal->setTime(toUDate(ticks), status);
    return cal->get(which, status);
  }

  icu::Locale locale;
  std::unique_ptr<icu::TimeZone> timeZone;
  icu::SimpleTimeZone zeroTimeZone;
  std::unique_ptr<icu::GregorianCalendar> cal;
  Formatter dateFormat;
  Formatter timeFormat;
  mutable Text deviceDate;
  mutable Text deviceTime;
};

namespace {
Ref<KesDateTime>& slot() {
  static Ref<KesDateTime> only;
  return only;
}
}  // namespace

KesDateTime::KesDateTime() : engine_(std::make_unique<Engine>(deviceLocale())) {}
KesDateTime::~KesDateTime() = default;

KesDateTime& KesDateTime::shared() {
  auto& only = slot();
  if (!only) only = Ref<KesDateTime>(new KesDateTime());
  return *only;
}

void KesDateTime::restart() { slot() = nullptr; }

std::int64_t KesDateTime::Now() const { return platform::current().clock().now(); }
Text KesDateTime::Date(std::int64_t ticks) const { return engine_->dateFormat.format(ticks); }
Text KesDateTime::Time(std::int64_t ticks) const { return engine_->timeFormat.format(ticks); }
Text KesDateTime::DateFormat() const { return engine_->dateFormat.pattern(); }
Text KesDateTime::TimeFormat() const { return engine_->timeFormat.pattern(); }
void KesDateTime::setDateFormat(std::string_view pattern) {
  engine_->dateFormat.setPattern(pattern);
}
void KesDateTime::setTimeFormat(std::string_view pattern) {
  engine_->timeFormat.setPattern(pattern);
}

Text KesDateTime::DeviceDefaultDateFormat() const {
  auto& kept = engine_->deviceDate;
  if (kept.empty())
    kept =
        shortPattern(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, engine_->locale));
  return kept;
}

Text KesDateTime::DeviceDefaultTimeFormat() const {
  auto& kept = engine_->deviceTime;
  if (kept.empty())
    kept =
        shortPattern(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, engine_->locale));
  return kept;
}

std::int64_t KesDateTime::DateParse(std::string_view text) const {
  const auto date = engine_->dateFormat.parse(text);
  if (!date) throw KesException(formatText("Error parsing: %@", {text}));
  return cutToTicks(*date);
}

std::int64_t KesDateTime::DateTimeParse(std::string_view dateText, std::string_view timeText) {
  struct BackToZone {
    Engine& engine;
    ~BackToZone() {
      engine.dateFormat.setZone(*engine.timeZone);
      engine.timeFormat.setZone(*engine.timeZone);
    }
  } const back{*engine_};
  engine_->dateFormat.setZone(engine_->zeroTimeZone);
  engine_->timeFormat.setZone(engine_->zeroTimeZone);

  const auto d = DateParse(dateText);
  const auto time = engine_->timeFormat.parse(timeText);
  const auto t = NSDateToTicks(time ? TicksToNSDate(cutToTicks(*time)) : Value());
  const auto sum = d + t;
  const auto offsetAt = [&](std::int64_t ticks) {
    return cutToInt(GetTimeZoneOffsetAt(ticks) * static_cast<double>(TicksPerHour));
  };
  const std::int32_t o1 = offsetAt(sum);
  const std::int32_t o2 = offsetAt(sum - o1);
  return (sum - o1) + (o1 - o2);
}

double KesDateTime::GetTimeZoneOffsetAt(std::int64_t ticks) const {
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t raw = 0;
  std::int32_t daylight = 0;
  engine_->timeZone->getOffset(toUDate(ticks), false, raw, daylight, status);
  const auto seconds = (raw + daylight) / 1000;
  return seconds / 3600.0;
}

void KesDateTime::SetTimeZone(double hours) {
  // Further than a day from UTC no zone can be; what is no number is UTC.
  const double kept = std::isnan(hours) ? 0 : std::clamp(hours, -24.0, 24.0);
  const auto seconds = static_cast<std::int32_t>(kept * 3600);
  engine_->setTimeZone(
      std::make_unique<icu::SimpleTimeZone>(seconds * 1000, icu::UnicodeString(u"Fixed")));
}

void KesDateTime::setTimeZoneInternal(std::string_view zone) {
  engine_->setTimeZone(std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(toIcu(zone))));
}

std::int32_t KesDateTime::GetYear(std::int64_t t) const { return engine_->field(t, UCAL_YEAR); }
std::int32_t KesDateTime::GetMonth(std::int64_t t) const {
  return engine_->field(t, UCAL_MONTH) + 1;
}
std::int32_t KesDateTime::GetDayOfMonth(std::int64_t t) const {
  return engine_->field(t, UCAL_DAY_OF_MONTH);
}
std::int32_t KesDateTime::GetDayOfYear(std::int64_t t) const {
  return engine_->field(t, UCAL_DAY_OF_YEAR);
}
std::int32_t KesDateTime::GetDayOfWeek(std::int64_t t) const {
  return engine_->field(t, UCAL_DAY_OF_WEEK);
}
std::int32_t KesDateTime::GetHour(std::int64_t t) const {
  return engine_->field(t, UCAL_HOUR_OF_DAY);
}
std::int32_t KesDateTime::GetMinute(std::int64_t t) const { return engine_->field(t, UCAL_MINUTE); }
std::int32_t KesDateTime::GetSecond(std::int64_t t) const { return engine_->field(t, UCAL_SECOND); }

std::int64_t KesDateTime::Add(std::int64_t ticks, std::int32_t years, std::int32_t months,
                              std::int32_t days) const {
  UErrorCode status = U_ZERO_ERROR;
  auto& cal = *engine_->cal;
  cal.setTime(toUDate(ticks), status);
  // Years and months together, so that a short month cuts the day off once and not twice.
  const auto allMonths = cutToInt(static_cast<double>(years) * 12 + months);
  const std::pair<UCalendarDateFields, std::int32_t> units[] = {{UCAL_MONTH, allMonths},
                                                                {UCAL_DAY_OF_MONTH, days}};
  for (const auto& [field, amount] : units)
    if (amount != 0) cal.add(field, amount, status);
  const UDate sum = cal.getTime(status);
  return U_SUCCESS(status) ? cutToTicks(sum) : ticks;
}

std::int64_t KesDateTime::NSDateToTicks(const Value& date) {
  const auto platformDate = date.as<PlatformDate>();
  if (!platformDate) throw KesException("Error parsing date string.");
  return cutToTicks(platformDate->secondsSince1970() * 1000);
}

Value KesDateTime::TicksToNSDate(std::int64_t ticks) {
  return platform::makeShared<PlatformDate>(static_cast<double>(ticks) / 1000.0);
}

}  // namespace kes
