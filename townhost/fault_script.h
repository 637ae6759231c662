// Faults said in JSON, for scripts that speak to the host over HTTP:
//
//   {"path": "/InfoVarlo/farmacie", "kind": "truncate", "amount": 20, "times": 3}
//   {"path": "/", "mix": {"seed": 7, "longestDelay": 30, "rates": {"drop": 0.1}}}
//
// or an array of such objects. "path" defaults to "/", "amount" to 0, "text" to
// "", "times" to 0 (until cleared). Any thread.
#pragma once

#include <string>
#include <string_view>

#include "townhost/faults.h"

namespace town {

// Adds what the text asks for: all of it, or nothing. Throws
// std::invalid_argument with the reason if it can't be read.
void applyFaultScript(Faults& faults, std::string_view json);

// The rules that stand now, in the same form.
std::string describeFaults(const Faults& faults);

}  // namespace town
