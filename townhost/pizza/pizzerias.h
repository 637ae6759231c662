// The town's pizzerias: hours of every kind (one to three spans a day, a day off, the second
// span alone, no hours at all), offers, and price lists as pictures in a repository. Any
// thread.
#pragma once

#include <string>

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"

namespace town {

// The catalogue, the repository's answer for each folder, and the pictures, whose addresses
// begin with the host's `url`.
void publishPizzerias(Documents& documents, Gallery& gallery, const std::string& url);

}  // namespace town
