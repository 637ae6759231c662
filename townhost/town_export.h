// The town as files, for any host that serves files: each document under its path.
//
// Documents that change with the day are those of the day of the export; what depends on a
// query is written as it is without one, where there is anything then. Throws std::runtime_error
// with the file that can't be written. On the caller's thread.
#pragma once

#include <filesystem>
#include <string>

#include "townhost/civil_time.h"

namespace town {

struct TownExport {
  Instant now = 0;
  std::string version = "1.0";  // the app's newest version
  std::string url;              // where the files will be served: absolute addresses begin so
};

// How many files were written.
int exportTown(const std::filesystem::path& folder, const TownExport& options);

}  // namespace town
