#include "townhost/town_export.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "townhost/documents.h"
#include "townhost/pictures/gallery.h"
#include "townhost/town_documents.h"

namespace town {

namespace fs = std::filesystem;

namespace {

void write(const fs::path& file, const std::string& text) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  errno = 0;
  std::ofstream out;
  if (!error) out.open(file, std::ios::binary);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (out) return;
  if (!error) error.assign(errno, std::generic_category());
  throw std::runtime_error("cannot write " + file.string() + ": " + error.message());
}

}  // namespace

int exportTown(const fs::path& folder, const TownExport& options) {
  Gallery gallery;
  Documents documents;
  publishAll(documents, gallery, options.version, options.url);
  int written = 0;
  for (const auto& path : documents.paths(options.now)) {
    const auto document = documents.make({options.now, path, {}});
    if (!document) continue;
    const fs::path file = folder / fs::path(path).relative_path();
    write(file, document->text);
    ++written;
  }
  return written;
}

}  // namespace town
