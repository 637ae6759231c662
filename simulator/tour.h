// The tour: every row of the menu and its details, each as a picture and as a text dump
// under one folder, one line each on the given stream. Throws ScriptError at the first
// screen that cannot be reached. Main thread.
#pragma once

#include <iosfwd>
#include <string>

#include "simulator/phone.h"

namespace sim {

// True when every screen was reached and its files were written.
bool makeTour(Phone& phone, const std::string& folder, std::ostream& out);

}  // namespace sim
