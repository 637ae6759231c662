// Everything that Varlo publishes, as one catalogue.
//
// A new document that doesn't change is a new file under townhost/documents; one
// that depends on the day, or on its query, is one more line in the source of
// this. Throws std::invalid_argument if an embedded document is unusable.
#pragma once

#include <string>

#include "townhost/documents.h"

namespace town {

void publishAll(Documents& documents, const std::string& version);

}  // namespace town
