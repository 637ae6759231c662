// Where the app's read-only files lie beside the programs: as installed, PREFIX/bin and
// PREFIX/share/infovarlo/assets; as built, build/<preset>/bin and build/<preset>/assets.
#pragma once

#include <filesystem>
#include <string>

namespace platform {

inline std::string assetsFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto prefix = program.parent_path().parent_path();
  const auto installed = prefix / "share/infovarlo/assets";
  return (std::filesystem::is_directory(installed, error) ? installed : prefix / "assets").string();
}

}  // namespace platform
