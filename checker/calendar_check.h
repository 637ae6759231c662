// The days to come: whether each has its pharmacy, and each day of school its menu. One
// thread.
#pragma once

#include "checker/town_reader.h"

namespace check {

// Keys that are nobody's, and days of the next 60 without a turn.
void checkTurns(TownReader& town, std::chrono::sys_days today);

// The periods of a school's menu, and days of school that none of them covers.
void checkPeriods(TownReader& town, const std::string& path, const Json& menus,
                  std::chrono::sys_days today);

}  // namespace check
