// Everything that Varlo publishes, as one catalogue.
//
// A new document that doesn't change is a new file under townhost/documents; one
// that depends on the day, or on its query, is one more line in the source of
// this. Called once, before others look; throws std::invalid_argument if an embedded document
// is unusable.
#pragma once

#include <string>

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"

namespace town {

// `url` is where all of it is served, which absolute addresses begin with; the gallery, which
// draws the pictures, has to outlive the documents.
void publishAll(Documents& documents, Gallery& gallery, const std::string& version,
                const std::string& url);

}  // namespace town
