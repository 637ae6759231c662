// The libFuzzer program of one target, named by FUZZ_TARGET.
#include "fuzz_platform.h"
#include "target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::FuzzPlatform platform;
  fuzz::FUZZ_TARGET({data, size});
  platform.clearLog();
  return 0;
}
