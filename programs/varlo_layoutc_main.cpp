// varlo-layoutc SOURCE OUTPUT: compiles the readable source of a layout into a layout
// file. On a fault: one line with file and line number, exit status 1, no output.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

#include "programs/tool.h"
#include "tools/layout_bytes.h"
#include "tools/layout_compiler.h"

namespace {
constexpr const char* usage = "usage: varlo-layoutc SOURCE.layout OUTPUT.kil\n";
}

int main(int argc, char** argv) {
  if (programs::answered(argc, argv, "varlo-layoutc", usage)) return 0;
  if (argc != 3) {
    std::cerr << usage;
    return 2;
  }
  std::ifstream in(argv[1], std::ios::binary);
  if (!in) {
    std::cerr << argv[1] << ": cannot be read\n";
    return 1;
  }
  const std::string source((std::istreambuf_iterator<char>(in)), {});
  try {
    const std::string bytes = layouts::toBytes(layouts::compile(source, argv[1]));
    std::ofstream out(argv[2], std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (out) return 0;
    std::cerr << argv[2] << ": cannot be written\n";
    std::remove(argv[2]);
  } catch (const layouts::Error& e) {
    std::cerr << e.what() << "\n";
  }
  return 1;
}
