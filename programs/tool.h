// What every tool answers alike: --help tells its use, --version its name and version.
#pragma once

#include <cstring>
#include <iostream>
#include <string_view>

namespace programs {

// True when that was all that was asked; the answer is out.
inline bool answered(int argc, char** argv, const char* name, std::string_view usage) {
  if (argc != 2) return false;
  if (std::strcmp(argv[1], "--version") == 0)
    std::cout << name << " " << VARLO_VERSION << "\n";
  else if (std::strcmp(argv[1], "--help") == 0)
    std::cout << usage;
  else
    return false;
  return true;
}

}  // namespace programs
