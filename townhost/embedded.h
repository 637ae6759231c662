// The files of townhost/documents, carried inside the library.
//
// A path is what stands after "documents", with its leading slash. The contents
// live as long as the process. Any thread.
#pragma once

#include <string_view>
#include <vector>

namespace town {

struct EmbeddedFile {
  std::string_view path;
  std::string_view contents;
};

std::vector<EmbeddedFile> embeddedFiles();

}  // namespace town
