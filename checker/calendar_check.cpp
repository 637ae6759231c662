#include "checker/calendar_check.h"

#include <algorithm>
#include <set>

#include "checker/shape_check.h"

namespace check {

namespace {

using namespace std::chrono;

constexpr int kDaysAhead = 60;

Words span(sys_days from, sys_days to) {
  if (from == to) return {"il " + written(from), "on " + written(from)};
  return {"dal " + written(from) + " al " + written(to),
          "from " + written(from) + " to " + written(to)};
}

// Each run of the days ahead that are not covered.
template <class Covered, class Gap>
void eachGap(sys_days today, Covered covered, Gap gap) {
  const sys_days last = today + days(kDaysAhead - 1);
  for (sys_days from = today; from <= last; from += days(1)) {
    if (covered(from)) continue;
    sys_days to = from;
    while (to < last && !covered(to + days(1))) to += days(1);
    gap(from, to);
    from = to;
  }
}

year_month_day dayOf(const Json& turn) {
  // What is out of its range, and has its finding, is no day.
  const auto part = [&](const char* name, unsigned most) {
    const Json* value = member(turn, name);
    const double n = value && value->IsNumber() ? value->GetDouble() : 0;
    return n > 0 && n <= most ? static_cast<unsigned>(n) : 0;
  };
  return {year(static_cast<int>(part("Anno", 2999))), month(part("Mese", 12)),
          day(part("Giorno", 31))};
}

sys_days dayOf(const Day& d) {
  return year(d.year) / month(static_cast<unsigned>(d.month)) / day(static_cast<unsigned>(d.day));
}

bool isSchoolDay(sys_days d) {
  const auto m = year_month_day(d).month();
  return weekday(d) != Saturday && weekday(d) != Sunday && m != July && m != August;
}

// The keys of the pharmacies; nothing where it is not sure which key is whose.
std::set<std::string> keysOf(TownReader& town) {
  std::set<std::string> keys;
  bool sure = true;
  town.eachOf(kPharmacies, [&](const Json& pharmacy, int number) {
    const auto key = textOf(pharmacy, "Chiave");
    if (key.empty() || keys.insert(key).second) return;
    sure = false;
    town.add({kPharmacies, named(number, textOf(pharmacy, "Farmacia")), "Chiave"},
             {"la chiave «" + key + "» c'è già", "the key \"" + key + "\" is there already"},
             {"una chiave diversa per ogni farmacia", "a key of its own for each pharmacy"},
             {"al suo posto compare l'altra farmacia", "the other pharmacy shows in its place"});
  });
  return sure ? keys : std::set<std::string>();
}

}  // namespace

void checkTurns(TownReader& town, sys_days today) {
  auto keys = keysOf(town);
  const Json* turns = town.document(kTurns);
  if (!turns || !turns->IsArray()) return;
  std::set<sys_days> covered;
  town.eachOf(kTurns, [&](const Json& turn, int number) {
    const auto date = dayOf(turn);
    if (date.ok()) covered.insert(sys_days(date));
    for (const char* field : {"Turno1", "Turno2"}) {
      const auto key = textOf(turn, field);
      // Each key that is nobody's once: mended in one place it is mended in all.
      if (key.empty() || keys.empty() || !keys.insert(key).second) continue;
      town.add({kTurns, named(number, date.ok() ? written(sys_days(date)) : ""), field},
               {"nessuna farmacia ha la chiave «" + key + "»",
                "no pharmacy has the key \"" + key + "\""},
               {"una «Chiave» di farmacie.json", "a \"Chiave\" of farmacie.json"},
               {"quel turno non compare", "that turn does not show"});
    }
  });
  eachGap(
      today, [&](sys_days d) { return covered.count(d) > 0; },
      [&](sys_days from, sys_days to) {
        const auto when = span(from, to);
        town.add(
            {kTurns, "", ""}, {"nessun turno " + when.it, "no turn " + when.en},
            {"un turno per ogni giorno dei prossimi 60", "a turn for each of the next 60 days"},
            {"in quei giorni nessuna farmacia compare", "no pharmacy shows on those days"});
      });
}

// The last day of a period is not one of it.
void checkPeriods(TownReader& town, const std::string& path, const Json& menus, sys_days today) {
  const Json* menu = member(menus, "menu");
  if (!menu || !menu->IsArray()) return;
  std::vector<std::pair<sys_days, sys_days>> periods;
  int number = 0;
  for (const Json& period : menu->GetArray()) {
    ++number;
    Day a, b;
    // One whose dates can't be read has its finding already: what it covers is not known.
    if (!readDate(textOf(period, "valid_from"), a) || !readDate(textOf(period, "valid_to"), b))
      return;
    const auto from = dayOf(a), to = dayOf(b);
    if (to <= from)
      town.add({path, "menu › " + named(number, written(from)), "valid_to"},
               {"finisce il " + written(to), "it ends on " + written(to)},
               {"un giorno dopo «valid_from»", "a day after \"valid_from\""},
               {"il periodo non vale mai", "the period is never valid"});
    else
      periods.emplace_back(from, to);
  }
  const auto covered = [&](sys_days d) {
    return std::any_of(periods.begin(), periods.end(),
                       [&](const auto& p) { return d >= p.first && d < p.second; });
  };
  eachGap(today, covered, [&](sys_days from, sys_days to) {
    sys_days d = from;
    while (d <= to && !isSchoolDay(d)) d += days(1);
    if (d > to) return;
    const auto when = span(from, to);
    town.add({path, "", "menu"},
             {"nessun periodo vale " + when.it, "no period is valid " + when.en},
             {"periodi senza buchi; l'ultimo giorno, «valid_to», non è compreso",
              "periods without holes; the last day, \"valid_to\", is not within"},
             {"in quei giorni si legge «NON CARICATO»", "those days read \"NON CARICATO\""});
  });
}

}  // namespace check
