// A report for people, in Italian or English, or for machines.
//
// JSON: {"documents": N, "findings": [{"document", "record", "field", "found", "expected",
// "citizen"}…]}, with the texts in the chosen language. Any thread.
#pragma once

#include <string>

#include "checker/town_check.h"

namespace check {

enum class Language { Italian, English };

std::string reportText(const TownReport& report, Language language);
std::string reportJson(const TownReport& report, Language language);

}  // namespace check
