#include "townhost/hall/italian_dates.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

namespace town {

namespace {

using std::chrono::year_month_day;

// From Sunday, as the calendar counts.
constexpr std::array kWeekDays = {"domenica", "lunedì",  "martedì", "mercoledì",
                                  "giovedì",  "venerdì", "sabato"};
constexpr std::array kShort = {"dom", "lun", "mar", "mer", "gio", "ven", "sab"};
constexpr std::array kMonths = {"gennaio",   "febbraio", "marzo",    "aprile",
                                "maggio",    "giugno",   "luglio",   "agosto",
                                "settembre", "ottobre",  "novembre", "dicembre"};

std::string dayAndMonth(CivilDay day) {
  const year_month_day date(day);
  const auto number = static_cast<unsigned>(date.day());
  return (number == 1 ? "1º" : std::to_string(number)) + " " +
         kMonths[static_cast<unsigned>(date.month()) - 1];
}

unsigned weekDayOf(CivilDay day) { return std::chrono::weekday(day).c_encoding(); }

// What stands between two braces, as a day.
std::optional<CivilDay> dayFor(std::string_view placeholder, CivilDay today) {
  if (placeholder.size() >= 2 && (placeholder[0] == '+' || placeholder[0] == '-')) {
    int days = 0;
    if (std::sscanf(std::string(placeholder).c_str(), "%d", &days) != 1) return std::nullopt;
    return today + std::chrono::days(days);
  }
  if (placeholder.size() < 3 || placeholder.size() > 4) return std::nullopt;
  const auto found = std::ranges::find(kShort, placeholder.substr(0, 3));
  if (found == kShort.end()) return std::nullopt;
  const auto wanted = static_cast<unsigned>(found - kShort.begin());
  const unsigned ahead = (wanted + 7 - weekDayOf(today)) % 7;
  const int weeks = placeholder.size() == 4 ? placeholder[3] - '1' : 0;
  return today + std::chrono::days((ahead == 0 ? 7 : ahead) + 7 * weeks);
}

}  // namespace

std::string wordsFor(CivilDay day) {
  return std::string(kWeekDays[weekDayOf(day)]) + " " + dayAndMonth(day);
}

std::string shortWordsFor(CivilDay day) {
  return dayAndMonth(day) + " " + std::to_string(static_cast<int>(year_month_day(day).year()));
}

std::string dated(std::string_view text, CivilDay today) {
  std::string out;
  while (!text.empty()) {
    const auto open = text.find('{');
    const auto close = open == text.npos ? text.npos : text.find('}', open);
    if (close == text.npos) break;
    out += text.substr(0, open);
    if (const auto day = dayFor(text.substr(open + 1, close - open - 1), today))
      out += wordsFor(*day);
    else
      out += text.substr(open, close - open + 1);
    text.remove_prefix(close + 1);
  }
  return out += text;
}

}  // namespace town
