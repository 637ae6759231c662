// The town's restaurants and what they post on their pages of the social network: two have
// published today's menu, one with a photograph and one with an album; the others post of
// something else, of yesterday, or have no page. Any thread.
#pragma once

#include <string>

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"

namespace town {

// The catalogue, "/v2.9/<page>" of each restaurant and their pictures, whose addresses begin
// with the host's `url`.
void publishRestaurants(Documents& documents, Gallery& gallery, const std::string& url);

}  // namespace town
