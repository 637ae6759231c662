// Which pharmacy is on duty on which day, for the days around a given one.
//
// The rota is a plain function of the day, so that two documents asked for on
// different days agree wherever they overlap. Pure functions, any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "townhost/civil_time.h"

namespace town {

struct PharmacyTurn {
  CivilDay day;
  std::string roundTheClock;
  std::string daytime;  // empty on Sundays
};

// The turns of `days` before the given day to as many after it. `keys` are the
// pharmacies in the order in which they take their turns; at least two.
// Throws std::invalid_argument for fewer.
std::vector<PharmacyTurn> turnsAround(CivilDay day, int days, const std::vector<std::string>& keys);

// The same as the published document, a JSON array with one object a day.
std::string turnsDocument(const std::vector<PharmacyTurn>& turns);

// The identifying keys in a published list of pharmacies, in its order. Throws
// std::invalid_argument if the text isn't such a list.
std::vector<std::string> pharmacyKeys(std::string_view pharmaciesDocument);

}  // namespace town
