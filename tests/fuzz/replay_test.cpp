// Plays the seeds of every fuzz target: as they are, cut off after each byte, and with
// each byte altered.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz_platform.h"
#include "target.h"

namespace {

namespace fs = std::filesystem;
using testing_support::TestPlatform;

struct Target {
  const char* name;
  void (*consume)(fuzz::Bytes);
};

constexpr Target kTargets[] = {
    {"coding", fuzz::coding},
    {"compressed", fuzz::compressed},
    {"date", fuzz::date},
    {"framing", fuzz::framing},
    {"json", fuzz::json},
    {"kil", fuzz::kil},
    {"map_file", fuzz::map_file},
    {"multipart", fuzz::multipart},
    {"picture", fuzz::picture},
    {"regex", fuzz::regex},
    {"serialized", fuzz::serialized},
    {"url", fuzz::url},
};

class Replay : public testing::TestWithParam<Target> {
 protected:
  // True when the target took or refused the input as it should.
  bool survives(std::string_view input, const std::string& how) {
    platform_.clearLog();
    // A copy of just this size, so that a step beyond its end is seen.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    try {
      GetParam().consume(bytes);
      return true;
    } catch (const std::exception& e) {
      ADD_FAILURE() << how << ": " << e.what();
      return false;
    }
  }

  fuzz::FuzzPlatform platform_;
};

TEST_P(Replay, seeds_whole_cut_off_and_altered) {
  int seeds = 0;
  for (const auto& entry : fs::directory_iterator(fs::path(SEEDS_FOLDER) / GetParam().name)) {
    ++seeds;
    const auto seed = TestPlatform::read(entry.path());
    const auto name = entry.path().filename().string();
    if (!survives(seed, name)) continue;
    // Long seeds are crash inputs of which the whole matters.
    if (seed.size() > 2048) continue;
    // Whole layouts are tried at every third or fourth byte.
    const auto step = 1 + seed.size() / 512;
    for (std::size_t n = 0; n < seed.size(); n += step) {
      if (!survives(std::string_view(seed).substr(0, n), name + " up to " + std::to_string(n)))
        break;
      for (const unsigned char change : {0x01, 0x80, 0xFF}) {
        auto altered = seed;
        altered[n] = static_cast<char>(altered[n] ^ change);
        if (!survives(altered, name + " altered at " + std::to_string(n))) break;
      }
    }
  }
  EXPECT_GT(seeds, 0) << "no seeds for " << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(Targets, Replay, testing::ValuesIn(kTargets),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
