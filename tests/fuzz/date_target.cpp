// Three lines, pattern, text and time text; what follows is numbers.
#include <cstring>

#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"
#include "target.h"

namespace {

template <class T>
T number(std::string_view& rest) {
  T v{};
  const auto there = rest.substr(0, sizeof v);
  if (!there.empty()) std::memcpy(&v, there.data(), there.size());
  rest.remove_prefix(there.size());
  return v;
}

}  // namespace

void fuzz::date(Bytes input) {
  auto rest = textOf(input);
  if (!kes::isUtf8(rest.substr(0, rest.rfind('\n')))) return;
  const auto pattern = takeLine(rest), text = takeLine(rest), time = takeLine(rest);
  auto& dates = kes::DateTime();
  auto& utils = kes::kes_dateutils::instance();
  const auto a = number<std::int64_t>(rest), b = number<std::int64_t>(rest);

  {
    const kes::KeptDateFormat kept;
    dates.setDateFormat(pattern);
    dates.Date(a);
    accepts([&] { dates.Date(dates.DateParse(text)); });
    accepts([&] { dates.DateTimeParse(text, time); });
    // Every instant that four digits can name survives a pattern that names it whole.
    const auto instant = a % 62'000'000'000'000;
    dates.setDateFormat("GGyyyyMMddHHmmssSSSz");
    require(dates.DateParse(dates.Date(instant)) == instant, "a formatted instant reads back");
  }
  utils._addperiod(a, utils._periodbetween(a, b));
  utils._addperiod(b, utils._periodbetweenindays(b, a));
  const auto year = number<std::int32_t>(rest), month = number<std::int32_t>(rest),
             day = number<std::int32_t>(rest);
  const auto patternBefore = dates.DateFormat();
  accepts([&] { utils._setdate(year, month, day); });
  accepts([&] { utils._setdateandtime2(year, month, day, 1, 2, 3, number<double>(rest)); });
  accepts([&] { utils._numberofdaysinmonth(month, year); });
  require(dates.DateFormat() == patternBefore, "the pattern is put back");
}
