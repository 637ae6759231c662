// varlo-layoutdump FILE...: prints layout files as readable source.
#include <fstream>
#include <iostream>
#include <iterator>

#include "tools/layout_bytes.h"
#include "tools/layout_printer.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: varlo-layoutdump FILE.kil...\n";
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
