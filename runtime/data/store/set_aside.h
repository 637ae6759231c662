// A database file that can't be used any more makes room for a fresh one: it is kept beside
// its place, under a name with the date, for whoever can still save something of it.
// Main thread.
#pragma once

#include "runtime/core/text.h"

namespace kes {

// Renames the file and what belongs to it (the journal of an open transaction), never over
// another one, and gives the new name. Throws KesException with the system's reason.
Text setAside(const std::string& path);

}  // namespace kes
