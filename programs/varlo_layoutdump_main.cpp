// varlo-layoutdump FILE...: prints layout files as readable source.
#include <fstream>
#include <iostream>
#include <iterator>

#include "programs/tool.h"
#include "tools/layout_bytes.h"
#include "tools/layout_printer.h"

namespace {
constexpr const char* usage = "usage: varlo-layoutdump FILE.kil...\n";
}

int main(int argc, char** argv) {
  if (programs::answered(argc, argv, "varlo-layoutdump", usage)) return 0;
  if (argc < 2) {
    std::cerr << usage;
    return 2;
  }
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    std::ifstream in(argv[i], std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    try {
      if (!in) throw layouts::Error("cannot be read");
      std::cout << "# " << argv[i] << "\n" << layouts::print(layouts::fromBytes(bytes));
    } catch (const layouts::Error& e) {
      std::cerr << argv[i] << ": " << e.what() << "\n";
      status = 1;
    }
  }
  return status;
}
