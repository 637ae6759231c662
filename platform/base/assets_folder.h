// Where the app's read-only files lie beside the programs: build/<preset>/bin and
// build/<preset>/assets, or wherever the two were installed together.
#pragma once

#include <filesystem>
#include <string>

namespace platform {

inline std::string assetsFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (program.parent_path().parent_path() / "assets").string();
}

}  // namespace platform
