#include "townhost/civil_time.h"

#include <gtest/gtest.h>

#include "support.h"

namespace town {
namespace {

using std::chrono::year;

CivilDay day(int y, unsigned m, unsigned d) {
  return CivilDay(year(y) / static_cast<int>(m) / static_cast<int>(d));
}

TEST(CivilTime, KnowsTheTownsDayAtTheEdges) {
  const struct {
    const char* utc;
    CivilDay expected;
  } cases[] = {
      {"2025-12-31T22:59:59Z", day(2025, 12, 31)},  // winter: one hour ahead
      {"2025-12-31T23:00:00Z", day(2026, 1, 1)},
      {"2026-07-14T21:59:59Z", day(2026, 7, 14)},  // summer: two
      {"2026-07-14T22:00:00Z", day(2026, 7, 15)},
      {"2024-02-28T23:30:00Z", day(2024, 2, 29)},
      {"1969-12-31T22:30:00Z", day(1969, 12, 31)},
      {"1969-12-31T23:30:00Z", day(1970, 1, 1)},
      {"2026-03-28T23:00:00Z", day(2026, 3, 29)},  // the night that summer begins
      {"2026-03-29T21:59:59Z", day(2026, 3, 29)},
      {"2026-03-29T22:00:00Z", day(2026, 3, 30)},
      {"2026-10-25T22:59:59Z", day(2026, 10, 25)},
      {"2026-10-25T23:00:00Z", day(2026, 10, 26)},
  };
  for (const auto& c : cases) EXPECT_EQ(dayAt(test::at(c.utc)), c.expected) << c.utc;
}

TEST(CivilTime, ChangesTheClocksOnTheLastSundays) {
  const struct {
    const char* utc;
    int hours;
  } cases[] = {
      {"2026-03-29T00:59:59Z", 1}, {"2026-03-29T01:00:00Z", 2}, {"2026-10-25T00:59:59Z", 2},
      {"2026-10-25T01:00:00Z", 1}, {"2027-03-28T01:00:00Z", 2}, {"2024-03-31T00:59:59Z", 1},
      {"2024-03-31T01:00:00Z", 2}, {"2021-10-31T00:59:59Z", 2}, {"2021-10-31T01:00:00Z", 1},
  };
  for (const auto& c : cases)
    EXPECT_EQ(offsetAt(test::at(c.utc)), std::chrono::hours(c.hours)) << c.utc;
}

TEST(CivilTime, ReadsTimesWithAndWithoutZone) {
  const std::pair<const char*, const char*> same[] = {
      {"2026-01-01T12:00", "2026-01-01T11:00:00Z"},
      {"2026-07-01T12:00:30", "2026-07-01T10:00:30Z"},
      {"2026-07-01", "2026-06-30T22:00Z"},
      {"2026-07-01 08:15+05:30", "2026-07-01T02:45Z"},
      {"2026-07-01T08:15-0300", "2026-07-01T11:15Z"},
      {"2026-10-25T02:30", "2026-10-25T00:30Z"},  // comes twice: the first
      {"2026-10-25T03:00", "2026-10-25T02:00Z"},
      {"2026-03-29T03:00", "2026-03-29T01:00Z"},
      {"2026-03-29T02:30", "2026-03-29T01:30Z"},  // doesn't exist: an hour on
  };
  for (const auto& [text, utc] : same) EXPECT_EQ(test::at(text), test::at(utc)) << text;
  EXPECT_EQ(test::at("1970-01-01T00:00:01Z"), 1000);

  for (const char* text :
       {"", "2026", "2026-13-01", "2025-02-29", "2026-01-01T", "2026-01-01T24:00",
        "2026-01-01T12:60", "2026-01-01T12:00:", "2026-01-01T12:00Zx", "2026-01-01x",
        "2026-01-01T12:00+1", "2026-01-01T12:00+01:00 ", "26-01-01", "+026-01-01"})
    EXPECT_FALSE(parseInstant(text)) << text;
}

}  // namespace
}  // namespace town
