// What the town, its cultural association and its sports clubs announce on their pages of
// the social network, in that network's form, for the days around the one that the clock
// says: events that recur, that last two days, that are over, without an end, a place or a
// picture. Any thread.
#pragma once

#include <string>

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"

namespace town {

// "/v2.9/<page>/events" of each page, the clubs' list and the covers, whose addresses begin
// with the host's `url`.
void publishEvents(Documents& documents, Gallery& gallery, const std::string& url);

}  // namespace town
