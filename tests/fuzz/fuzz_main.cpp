// The libFuzzer program of one target, named by FUZZ_TARGET.
//
// An input of a few kilobytes may take a second of processor time, sanitizers included.
// libFuzzer's own limit is one of real time, which a busy machine reaches without a fault.
#include <ctime>

#include "fuzz_platform.h"
#include "target.h"

namespace {

constexpr std::clock_t kLongest = CLOCKS_PER_SEC;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::FuzzPlatform platform;
  const auto start = std::clock();
  fuzz::FUZZ_TARGET({data, size});
  fuzz::require(std::clock() - start < kLongest, "an input takes no longer than it justifies");
  platform.clearLog();
  return 0;
}
