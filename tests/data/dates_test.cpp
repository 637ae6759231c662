#include "data_fixture.h"
#include "runtime/core/class_table.h"
#include "runtime/core/language/common.h"
#include "runtime/data/dates/platform_date.h"

using kes::DateTime;
using kes::kes_dateutils;
using kes::KesDateTime;
using kes::Period;

namespace {

constexpr std::int64_t kSecond = KesDateTime::TicksPerSecond;
constexpr std::int64_t kMinute = KesDateTime::TicksPerMinute;
constexpr std::int64_t kHour = KesDateTime::TicksPerHour;
constexpr std::int64_t kDay = KesDateTime::TicksPerDay;
// The clock of the fixture: Wednesday 2017-11-15 09:30:00 in the town.
constexpr std::int64_t kNow = TestPlatform::kStart;

class DatesTest : public DataTest {
 protected:
  static kes_dateutils& utils() { return kes_dateutils::instance(); }

  // An instant of the current zone in a form that sorts and shows everything.
  static std::string shown(std::int64_t ticks) {
    const kes::KeptDateFormat kept;
    DateTime().setDateFormat("yyyy-MM-dd HH:mm:ss");
    return DateTime().Date(ticks).str();
  }
  static std::int64_t instant(std::string_view text) {
    const kes::KeptDateFormat kept;
    DateTime().setDateFormat("yyyy-MM-dd HH:mm:ss");
    return DateTime().DateParse(text);
  }
  static std::vector<int> fields(const Ref<Period>& p) {
    return {p->Years, p->Months, p->Days, p->Hours, p->Minutes, p->Seconds};
  }
};

TEST_F(DatesTest, StartsWithThePhonesZoneAndTheGivenPatterns) {
  auto& d = DateTime();
  EXPECT_EQ(d.Now(), kNow);
  EXPECT_EQ(d.DateFormat(), "MM/dd/yyyy");
  EXPECT_EQ(d.TimeFormat(), "HH:mm:ss");
  EXPECT_EQ(d.Date(kNow), "11/15/2017");
  EXPECT_EQ(d.Time(kNow), "09:30:00");
  EXPECT_EQ(d.TimeZoneOffset(), 1.0);
  EXPECT_EQ(d.DeviceDefaultDateFormat(), "dd/MM/yy");
  EXPECT_EQ(d.DeviceDefaultTimeFormat(), "HH:mm");
  phone.clock().advance(90 * kSecond);
  EXPECT_EQ(d.Time(d.Now()), "09:31:30");
  EXPECT_EQ(utils()._tickstostring(kNow), "11/15/2017 09:30:00");
  EXPECT_EQ(kes::KesCommon::shared().SmartStringFormatter("datetime", kNow), "11/15/2017 09:30:00");
}

TEST_F(DatesTest, FieldsOfAnInstant) {
  const struct {
    std::string_view instant;
    int year, month, day, ofYear, ofWeek, hour, minute, second;
  } cases[] = {
      {"2017-11-15 09:30:05", 2017, 11, 15, 319, 4, 9, 30, 5},
      {"2017-12-31 23:59:59", 2017, 12, 31, 365, 1, 23, 59, 59},
      {"2016-12-31 00:00:00", 2016, 12, 31, 366, 7, 0, 0, 0},
      {"1969-12-31 23:00:01", 1969, 12, 31, 365, 4, 23, 0, 1},
      {"1582-10-15 12:00:00", 1582, 10, 15, 278, 6, 12, 0, 0},
  };
  auto& d = DateTime();
  for (const auto& c : cases) {
    const auto t = instant(c.instant);
    EXPECT_THAT(
        (std::vector<int>{d.GetYear(t), d.GetMonth(t), d.GetDayOfMonth(t), d.GetDayOfYear(t),
                          d.GetDayOfWeek(t), d.GetHour(t), d.GetMinute(t), d.GetSecond(t)}),
        ElementsAre(c.year, c.month, c.day, c.ofYear, c.ofWeek, c.hour, c.minute, c.second))
        << c.instant;
    EXPECT_EQ(shown(t), c.instant);
  }
}

TEST_F(DatesTest, ParsingIsStrict) {
  const struct {
    const char *pattern, *text;
    const char* read;  // null when it is refused
  } cases[] = {
      {"dd/MM/yyyy", "28/02/2017", "2017-02-28 00:00:00"},
      {"dd/MM/yyyy", "29/02/2016", "2016-02-29 00:00:00"},
      {"dd/MM/yyyy", "29/02/2017", nullptr},
      {"dd/MM/yyyy", "31/02/2017", nullptr},
      {"dd/MM/yyyy", "00/01/2017", nullptr},
      {"dd/MM/yyyy", "01/13/2017", nullptr},
      {"dd/MM/yyyy", "28/02/2017x", nullptr},
      {"dd/MM/yyyy", "28/02/2017 ", nullptr},
      {"dd/MM/yyyy", " 28/02/2017", nullptr},
      {"dd/MM/yyyy", "28-02-2017", nullptr},
      {"dd/MM/yyyy", "28/02", nullptr},
      {"dd/MM/yyyy", "", nullptr},
      {"dd/MM/yyyy", "città", nullptr},
      // Two letters of a day want two digits; one takes either.
      {"dd/MM/yyyy", "1/02/2017", nullptr},
      {"d/M/yyyy", "1/2/2017", "2017-02-01 00:00:00"},
      {"d/M/yyyy", "01/02/2017", "2017-02-01 00:00:00"},
      {"yyyy-MM-dd HH:mm", "2017-06-01 23:59", "2017-06-01 23:59:00"},
      {"yyyy-MM-dd HH:mm", "2017-06-01 24:00", nullptr},
      {"yyyy-MM-dd'T'HH:mm:ssZ", "2017-06-01T10:00:00+0000", "2017-06-01 12:00:00"},
      {"yyyy-MM-dd'T'HH:mm:ssZ", "2017-06-01T10:00:00-0530", "2017-06-01 17:30:00"},
      {"EEEE d MMMM yyyy", "mercoledì 15 novembre 2017", "2017-11-15 00:00:00"},
      {"EEEE d MMMM yyyy", "Wednesday 15 November 2017", nullptr},
      {"dd/MM/yy", "01/01/49", "2049-01-01 00:00:00"},
      {"dd/MM/yy", "01/01/51", "1951-01-01 00:00:00"},
      {"", "", nullptr},
      {"'only words'", "only words", "1970-01-01 00:00:00"},
      {"bjp~", "1", nullptr},
  };
  auto& d = DateTime();
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.pattern) + " | " + c.text);
    d.setDateFormat(c.pattern);
    std::int64_t t = 0;
    const auto failure = thrownBy([&] { t = d.DateParse(c.text); });
    if (c.read) {
      EXPECT_EQ(failure, "");
      EXPECT_EQ(shown(t), c.read);
    } else {
      EXPECT_EQ(failure, "Error parsing: " + std::string(c.text));
    }
    EXPECT_EQ(d.DateFormat(), c.pattern);
  }
  // A zone that a text names is that text's alone.
  d.setDateFormat("yyyy-MM-dd'T'HH:mm:ssZ");
  d.DateParse("2017-06-01T10:00:00-0530");
  d.setDateFormat("HH:mm Z");
  EXPECT_EQ(d.Date(kNow), "09:30 +0100");
}

// Patterns come with documents: any of them formats to something, and in bounded space.
TEST_F(DatesTest, AnyPatternFormats) {
  auto& d = DateTime();
  const std::string endless(5000, 'y');
  for (const std::string& pattern :
       {std::string("dd 'unfinished"), std::string("''''"), std::string("%s%n%d"),
        std::string("\xF0\x9F\x98\x80 dd"), std::string("abcdefghijklmnopqrstuvwxyz"),
        std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), std::string("VVVV zzzz OOOO XXXXX"), endless,
        std::string("dd\0MM", 5)}) {
    d.setDateFormat(pattern);
    EXPECT_LE(d.Date(kNow).view().size(), 6000u) << pattern;
    thrownBy([&] { d.DateParse(d.Date(kNow)); });
  }
  for (const std::int64_t t : {INT64_MIN, INT64_MAX, std::int64_t{0}, std::int64_t{-1}}) {
    d.setDateFormat("GG yyyy-MM-dd");
    EXPECT_FALSE(d.Date(t).empty()) << t;
    EXPECT_GE(d.GetMonth(t), 1) << t;
    d.Add(t, INT32_MAX, INT32_MIN, INT32_MAX);
    utils()._periodbetween(t, -t / 2);
    utils()._periodbetweenindays(INT64_MIN, t);
  }
}

TEST_F(DatesTest, DateAndTimeMeetInTheZone) {
  auto& d = DateTime();
  d.setDateFormat("yyyy-MM-dd");
  d.setTimeFormat("HH:mm:ss");
  const struct {
    const char *date, *time;
    const char* utc;
  } cases[] = {
      {"2017-11-15", "09:30:00", "2017-11-15T08:30:00"},
      {"2017-07-15", "00:00:00", "2017-07-14T22:00:00"},
      {"1970-01-01", "00:00:00", "1969-12-31T23:00:00"},
      // The town skips from 02:00 to 03:00 on 2017-03-26.
      {"2017-03-26", "01:59:59", "2017-03-26T00:59:59"},
      {"2017-03-26", "02:30:00", "2017-03-26T01:30:00"},
      {"2017-03-26", "03:00:00", "2017-03-26T01:00:00"},
      // And has the hour from 02:00 twice on 2017-10-29.
      {"2017-10-29", "01:59:59", "2017-10-28T23:59:59"},
      {"2017-10-29", "02:30:00", "2017-10-29T01:30:00"},
      {"2017-10-29", "03:00:00", "2017-10-29T02:00:00"},
  };
  for (const auto& c : cases) {
    const auto t = d.DateTimeParse(c.date, c.time);
    d.SetTimeZone(0);
    d.setDateFormat("yyyy-MM-dd'T'HH:mm:ss");
    EXPECT_EQ(d.Date(t), c.utc) << c.date << " " << c.time;
    d.setTimeZoneInternal("Europe/Rome");
    d.setDateFormat("yyyy-MM-dd");
  }

  const std::pair<std::pair<const char*, const char*>, const char*> failures[] = {
      {{"2017-02-29", "09:30:00"}, "Error parsing: 2017-02-29"},
      {{"2017-02-28", "25:00:00"}, "Error parsing date string."},
      {{"2017-02-28", "9.30"}, "Error parsing date string."},
      {{"", ""}, "Error parsing: "},
  };
  for (const auto& [texts, message] : failures) {
    EXPECT_EQ(thrownBy([&, texts = texts] { d.DateTimeParse(texts.first, texts.second); }),
              message);
    // Both formatters are back in the zone.
    EXPECT_EQ(d.Time(kNow), "09:30:00");
    EXPECT_EQ(d.Date(kNow - 10 * kHour), "2017-11-14");
    EXPECT_EQ(d.Date(kNow - 9 * kHour), "2017-11-15");
  }
}

TEST_F(DatesTest, ZonesByHoursAndByName) {
  auto& d = DateTime();
  EXPECT_EQ(d.GetTimeZoneOffsetAt(instant("2017-03-26 01:59:59")), 1.0);
  EXPECT_EQ(d.GetTimeZoneOffsetAt(instant("2017-03-26 03:00:00")), 2.0);
  EXPECT_EQ(d.GetTimeZoneOffsetAt(instant("2017-10-29 03:00:00")), 1.0);
  const std::pair<double, const char*> zones[] = {
      {0, "08:30:00"},   {-3.5, "05:00:00"}, {5.75, "14:15:00"},         {1.0001, "09:30:00"},
      {100, "08:30:00"}, {-24, "08:30:00"},  {std::nan(""), "08:30:00"}, {0.99999, "09:29:59"},
  };
  for (const auto& [hours, time] : zones) {
    d.SetTimeZone(hours);
    EXPECT_EQ(d.Time(kNow), time) << hours;
    EXPECT_EQ(d.Time(d.DateTimeParse(d.Date(kNow), d.Time(kNow))), time) << hours;
  }
  d.SetTimeZone(-3.5);
  EXPECT_EQ(d.TimeZoneOffset(), -3.5);
  EXPECT_EQ(d.GetHour(kNow), 5);
  d.setTimeZoneInternal("America/New_York");
  EXPECT_EQ(d.Time(kNow), "03:30:00");
  d.setTimeZoneInternal("Nowhere/Atlantis");
  EXPECT_EQ(d.TimeZoneOffset(), 0.0);
}

TEST_F(DatesTest, AddsCalendarUnits) {
  const struct {
    const char* start;
    int years, months, days;
    const char* end;
  } cases[] = {
      {"2017-03-31 10:00:00", 0, -1, 0, "2017-02-28 10:00:00"},
      {"2016-02-29 10:00:00", -1, -1, -1, "2015-01-28 10:00:00"},
      {"2016-01-31 10:00:00", 1, 1, 1, "2017-03-01 10:00:00"},
      {"2017-12-31 10:00:00", 1, 2, 3, "2019-03-03 10:00:00"},
      {"2017-01-01 00:00:00", 0, -13, -1, "2015-11-30 00:00:00"},
      // A day is a day on the clock, whatever its length.
      {"2017-03-25 10:00:00", 0, 0, 1, "2017-03-26 10:00:00"},
      {"2017-10-28 10:00:00", 0, 0, 2, "2017-10-30 10:00:00"},
      {"2017-10-28 10:00:00", 0, 0, 0, "2017-10-28 10:00:00"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(shown(DateTime().Add(instant(c.start), c.years, c.months, c.days)), c.end)
        << c.start << " " << c.years << " " << c.months << " " << c.days;
}

TEST_F(DatesTest, PeriodsAreFoundByStepping) {
  using P = std::vector<int>;
  const struct {
    const char *start, *end;
    P period, inDays;
  } cases[] = {
      {"2017-01-31 00:00:00", "2017-01-31 00:00:00", {0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}},
      {"2017-01-31 00:00:00", "2017-03-01 00:00:00", {0, 1, 1, 0, 0, 0}, {0, 0, 29, 0, 0, 0}},
      {"2016-01-31 00:00:00", "2016-03-01 00:00:00", {0, 1, 1, 0, 0, 0}, {0, 0, 30, 0, 0, 0}},
      {"2016-02-29 12:00:00", "2017-02-28 12:00:00", {1, 0, 0, 0, 0, 0}, {0, 0, 365, 0, 0, 0}},
      {"2016-02-29 12:00:00", "2017-03-29 12:00:00", {1, 1, 0, 0, 0, 0}, {0, 0, 394, 0, 0, 0}},
      {"2016-02-29 12:00:00", "2014-12-29 12:00:00", {-1, -2, 0, 0, 0, 0}, {0, 0, -427, 0, 0, 0}},
      {"2016-02-29 12:00:00",
       "2017-02-28 11:59:59",
       {0, 11, 29, 23, 59, 59},
       {0, 0, 364, 23, 59, 59}},
      {"2015-11-15 08:30:00", "2017-11-15 09:31:02", {2, 0, 0, 1, 1, 2}, {0, 0, 731, 1, 1, 2}},
      {"2017-11-15 09:30:00", "2017-11-15 09:29:58", {0, 0, 0, 0, 0, -2}, {0, 0, 0, 0, 0, -2}},
      {"2017-11-15 09:31:02",
       "2015-11-15 08:30:00",
       {-2, 0, 0, -1, -1, -2},
       {0, 0, -731, -1, -1, -2}},
      {"2017-03-01 00:00:00", "2017-01-31 00:00:00", {0, -1, -1, 0, 0, 0}, {0, 0, -29, 0, 0, 0}},
      {"2018-01-01 00:00:00", "2016-12-31 23:00:00", {-1, 0, 0, -1, 0, 0}, {0, 0, -365, -1, 0, 0}},
      // Across a change of the clock: the days are days, the rest is time that passed.
      {"2017-03-25 12:00:00", "2017-03-26 12:00:00", {0, 0, 1, 0, 0, 0}, {0, 0, 1, 0, 0, 0}},
      {"2017-03-25 23:00:00", "2017-03-26 04:00:00", {0, 0, 0, 4, 0, 0}, {0, 0, 0, 4, 0, 0}},
      {"2016-10-01 10:00:00", "2017-11-15 13:00:00", {1, 1, 14, 3, 0, 0}, {0, 0, 410, 3, 0, 0}},
      {"2017-11-15 13:00:00",
       "2016-07-01 10:00:00",
       {-1, -4, -14, -3, 0, 0},
       {0, 0, -502, -3, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.start) + " to " + c.end);
    const auto start = instant(c.start), end = instant(c.end);
    const auto period = utils()._periodbetween(start, end);
    const auto inDays = utils()._periodbetweenindays(start, end);
    EXPECT_TRUE(period->IsInitialized);
    EXPECT_EQ(fields(period), c.period);
    EXPECT_EQ(fields(inDays), c.inDays);
    EXPECT_EQ(shown(utils()._addperiod(start, period)), c.end);
    EXPECT_EQ(shown(utils()._addperiod(start, inDays)), c.end);
  }
}

// Whatever the two instants, adding the period between them leads from the one to the
// other, and its fields agree in sign.
TEST_F(DatesTest, PeriodsAddUp) {
  std::uint64_t seed = 42;
  const auto random = [&](std::int64_t below) {
    seed = seed * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::int64_t>(seed >> 33) % below;
  };
  for (int i = 0; i < 400; ++i) {
    const auto start =
        i % 8 == 0
            ? DateTime().Add(instant("1992-02-29 10:00:00"), static_cast<int>(random(9)) * 4, 0, 0)
            : instant("1990-01-01 00:00:00") + random(20000) * kDay + random(86400) * kSecond;
    const auto end = i % 3 ? start + (random(4000) - 2000) * kDay + random(86400) * kSecond
                           : start + (random(172800) - 86400) * kSecond;
    for (const bool inDays : {false, true}) {
      const auto p = utils()._periodbetweenhelper(start, end, inDays);
      EXPECT_EQ(utils()._addperiod(start, p), end)
          << shown(start) << " to " << shown(end) << (inDays ? " in days" : "");
      for (const int f : fields(p))
        EXPECT_TRUE(end > start ? f >= 0 : f <= 0) << shown(start) << " to " << shown(end);
      if (inDays) {
        EXPECT_EQ(p->Years, 0);
        EXPECT_EQ(p->Months, 0);
      }
    }
  }
}

TEST_F(DatesTest, MakesInstantsFromNumbers) {
  auto& u = utils();
  EXPECT_EQ(shown(u._setdate(2017, 11, 15)), "2017-11-15 00:00:00");
  EXPECT_EQ(shown(u._setdateandtime(2016, 2, 29, 23, 59, 58)), "2016-02-29 23:59:58");
  EXPECT_EQ(shown(u._setdate(1, 1, 1)), "0001-01-01 00:00:00");
  EXPECT_EQ(u._setdateandtime2(1970, 1, 1, 0, 0, 0, 0), 0);
  EXPECT_EQ(u._setdateandtime2(2017, 11, 15, 9, 30, 0, 1), kNow);
  EXPECT_EQ(u._setdateandtime2(2017, 11, 15, 5, 0, 0, -3.5), kNow);
  EXPECT_EQ(u._setdateandtime2(2017, 11, 15, 14, 15, 0, 5.75), kNow);
  EXPECT_EQ(u._setdateandtime2(2017, 11, 15, 8, 0, 0, -0.5), kNow);
  // In the given offset, not in the zone.
  DateTime().SetTimeZone(-8);
  EXPECT_EQ(u._setdateandtime2(2017, 11, 15, 9, 30, 0, 1), kNow);
  EXPECT_EQ(u._setdateandtime(2017, 11, 15, 0, 30, 0), kNow);
}

TEST_F(DatesTest, ErasAreInThePhonesLanguageAndReadBack) {
  auto& u = utils();
  EXPECT_EQ(u._getera(true), "a.C.");
  EXPECT_EQ(u._getera(false), "d.C.");
  const auto ides = u._setdate(-44, 3, 15);
  const kes::KeptDateFormat kept;
  DateTime().setDateFormat("d MMMM y GG");
  EXPECT_EQ(DateTime().Date(ides), "15 marzo 44 a.C.");
  EXPECT_EQ(DateTime().GetYear(ides), 44);
  EXPECT_EQ(DateTime().Date(u._setdateandtime2(-1, 12, 31, 23, 0, 0, 1)), "31 dicembre 1 a.C.");
  // The next day is in the year 1: there is no year 0.
  EXPECT_EQ(DateTime().Date(DateTime().Add(u._setdate(-1, 12, 31), 0, 0, 1)), "1 gennaio 1 d.C.");
  EXPECT_EQ(DateTime().DateFormat(), "d MMMM y GG");
}

TEST_F(DatesTest, NumbersThatMakeNoDate) {
  auto& u = utils();
  auto& d = DateTime();
  d.setDateFormat("dd-MM");
  d.setTimeFormat("mm");
  const struct {
    std::function<void()> call;
    const char* logged;
  } cases[] = {
      {[&] { u._setdate(2017, 2, 29); }, "Error: Invalid value: d.C.20170229 000000"},
      {[&] { u._setdate(2017, 13, 1); }, "Error: Invalid value: d.C.20171301 000000"},
      {[&] { u._setdate(12345, 6, 7); }, "Error: Invalid value: d.C.123450607 000000"},
      {[&] { u._setdate(0, 1, 1); }, "Error: Invalid value: d.C.00000101 000000"},
      {[&] { u._setdate(2017, -1, 1); }, "Error: Invalid value: d.C.2017-0101 000000"},
      {[&] { u._setdateandtime(2017, 1, 1, 24, 0, 0); },
       "Error: Invalid value: d.C.20170101 240000"},
      // Digits in excess must not pass to the neighbours and make another date.
      {[&] { u._setdate(2017, 1, 112); }, "Error: Invalid value: d.C.201701112 000000"},
      {[&] { u._setdateandtime(2017, 1, 1, 1, 0, 112); },
       "Error: Invalid value: d.C.20170101 0100112"},
      {[&] { u._setdateandtime2(2017, 2, 29, 1, 2, 3, -3.5); },
       "Error: Invalid value: d.C.20170229010203GMT-03:30"},
      {[&] { u._setdateandtime2(2017, 2, 1, 1, 2, 3, 99); },
       "Error: Invalid value: d.C.20170201010203GMT+99:00"},
  };
  for (const auto& c : cases) {
    phone.clearLog();
    EXPECT_EQ(thrownBy(c.call), "Cannot parse: invalid date") << c.logged;
    EXPECT_THAT(phone.lines(), ElementsAre(c.logged));
    EXPECT_EQ(d.DateFormat(), "dd-MM");
    EXPECT_EQ(d.TimeFormat(), "mm");
    EXPECT_EQ(d.Time(kNow), "30");
  }
}

TEST_F(DatesTest, DaysOfMonthsAndSameDays) {
  auto& u = utils();
  const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month)
    EXPECT_EQ(u._numberofdaysinmonth(month, 2017), days[month - 1]) << month;
  EXPECT_EQ(u._numberofdaysinmonth(2, 2016), 29);
  EXPECT_EQ(u._numberofdaysinmonth(2, 1900), 28);
  const auto midnight = u._setdate(2017, 11, 15);
  EXPECT_TRUE(u._issameday(midnight, midnight + kDay - 1));
  EXPECT_FALSE(u._issameday(midnight, midnight - 1));
  EXPECT_FALSE(u._issameday(midnight, u._setdate(2016, 11, 15)));
  EXPECT_FALSE(u._issameday(midnight, u._setdate(2017, 10, 15)));
}

TEST_F(DatesTest, NamesAreInThePhonesLanguageAndKept) {
  auto& u = utils();
  const std::vector<std::string> days = {"domenica", "lunedì",  "martedì", "mercoledì",
                                         "giovedì",  "venerdì", "sabato"};
  DateTime().setDateFormat("yy");
  EXPECT_EQ(textsOf(u._getdaysnames()), days);
  EXPECT_EQ(u._getdayofweekname(kNow), "mercoledì");
  EXPECT_EQ(u._getmonthname(kNow), "novembre");
  // From the last day of a long month, none of the months is skipped.
  phone.clock().setNow(u._setdateandtime(2017, 10, 31, 12, 0, 0));
  EXPECT_EQ(textsOf(u._getmonthsnames()),
            (std::vector<std::string>{"gennaio", "febbraio", "marzo", "aprile", "maggio", "giugno",
                                      "luglio", "agosto", "settembre", "ottobre", "novembre",
                                      "dicembre"}));
  EXPECT_EQ(DateTime().DateFormat(), "yy");
  u._getdaysnames().Set(0, "festa");
  EXPECT_EQ(u._getdaysnames().Get(0).asText(), "festa");
}

// The language of the phone gives the names only: digits and calendar stay plain, so that
// what was formatted can be parsed.
TEST_F(DatesTest, OtherLanguagesKeepDigitsAndCalendar) {
  for (const char* locale : {"ar_EG", "fa_IR", "th_TH@calendar=buddhist", "ja_JP", "en_US", ""}) {
    SCOPED_TRACE(locale);
    phone.platform().locale = locale;
    KesDateTime::restart();
    utils()._process_globals();
    EXPECT_EQ(DateTime().Date(kNow), "11/15/2017");
    EXPECT_EQ(utils()._setdateandtime(2017, 11, 15, 9, 30, 0), kNow);
    EXPECT_EQ(utils()._setdateandtime2(2017, 11, 15, 9, 30, 0, 1), kNow);
    EXPECT_LT(utils()._setdate(-44, 3, 15), 0);
  }
}

TEST_F(DatesTest, SecondsAndPlatformDates) {
  auto& u = utils();
  EXPECT_EQ(u._tickstounixtime(1999), 1);
  EXPECT_EQ(u._tickstounixtime(-1999), -1);
  EXPECT_EQ(u._unixtimetoticks(-5), -5000);
  EXPECT_EQ(u._format(7, 3), "007");
  EXPECT_EQ(u._format(1234567, 2), "1234567");
  EXPECT_EQ(KesDateTime::NSDateToTicks(KesDateTime::TicksToNSDate(kNow)), kNow);
  EXPECT_EQ(KesDateTime::NSDateToTicks(makeShared<kes::PlatformDate>(-1.9999)), -1999);
  EXPECT_EQ(thrownBy([] { KesDateTime::NSDateToTicks(Value()); }), "Error parsing date string.");
}

TEST_F(DatesTest, PeriodIsARecordByName) {
  const auto* info = kes::ClassRegistry::instance().find("_period");
  ASSERT_TRUE(info);
  const auto made = info->make();
  auto* period = dynamic_cast<Period*>(made.get());
  ASSERT_TRUE(period);
  EXPECT_FALSE(period->IsInitialized);
  period->Days = 4;
  period->Initialize();
  EXPECT_TRUE(period->IsInitialized);
  EXPECT_EQ(period->Days, 0);
  EXPECT_EQ(Period::ofDays(-1)->description().Replace("\n", ""),
            "[IsInitialized=1, Years=0, Months=0, Days=-1, Hours=0, Minutes=0, Seconds=0]");
  EXPECT_EQ(shown(utils()._addperiod(kNow, Period::ofDays(-1))), "2017-11-14 09:30:00");
  EXPECT_EQ(thrownBy([&] { utils()._addperiod(kNow, nullptr); }),
            "Object was not initialized (_period)");
}

}  // namespace
