// The thematic maps that Varlo publishes: the catalogue, and the tables it points at, the
// town's own and those of the region's open data (which this host plays as well).
//
// Pure functions of the town's map: the same on every machine. Any thread.
#pragma once

#include <string>

#include "townhost/documents.h"

namespace town {

// `url` is the host's own address, which the catalogue's absolute addresses begin with.
void publishMaps(Documents& documents, const std::string& url);

// Five thousand rows, two megabytes.
inline constexpr const char* kTreesPath = "/resource/alberi-pubblici.json";

}  // namespace town
