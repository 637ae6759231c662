// Dates as the town writes them. Pure functions, any thread.
#pragma once

#include <string>
#include <string_view>

#include "townhost/civil_time.h"

namespace town {

std::string wordsFor(CivilDay day);       // "sabato 21 novembre"
std::string shortWordsFor(CivilDay day);  // "21 novembre 2026"

// The text with its placeholders filled in for the day it is read: "{+3}" and "{-3}" are
// days from today, "{sab}" is the next Saturday after today and "{sab2}" the one after it
// ("lun", "mar", "mer", "gio", "ven", "sab", "dom"). Other braces stand as they are.
std::string dated(std::string_view text, CivilDay today);

}  // namespace town
