#include "townhost/town_export.h"

#include <fstream>
#include <stdexcept>

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"
#include "townhost/town_documents.h"

namespace town {

namespace fs = std::filesystem;

int exportTown(const fs::path& folder, const TownExport& options) {
  Gallery gallery;
  Documents documents;
  publishAll(documents, gallery, options.version, options.url);
  int written = 0;
  for (const auto& path : documents.paths(options.now)) {
    const auto document = documents.make({options.now, path, {}});
    if (!document) continue;
    const fs::path file = folder / fs::path(path).relative_path();
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    std::ofstream out(file, std::ios::binary);
    out.write(document->text.data(), static_cast<std::streamsize>(document->text.size()));
    out.close();
    if (error || !out) throw std::runtime_error("cannot write " + file.string());
    ++written;
  }
  return written;
}

}  // namespace town
