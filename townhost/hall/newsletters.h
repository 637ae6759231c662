// The archive of the town's newsletter: twenty-four issues, one every second Friday.
// Any thread.
#pragma once

#include <string>

#include "townhost/documents.h"

namespace town {

// The repository's listing and the issues, which it names by absolute addresses of `url`.
// Issues appear as the clock goes on.
void publishNewsletters(Documents& documents, const std::string& url);

}  // namespace town
