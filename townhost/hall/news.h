// The town hall's news: twenty items with a picture each, right for the day they are read.
// Any thread.
#pragma once

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"

namespace town {

// The document of the news service, and the pictures on the town hall's web site.
void publishNews(Documents& documents, Gallery& gallery);

}  // namespace town
