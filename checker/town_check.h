// Reads a whole town and says what is wrong with it: every document against its shape, then
// what holds between documents and over the days to come.
//
// Runs on the caller's thread and reads one address after the other. Throws nothing of its
// own.
#pragma once

#include <chrono>

#include "checker/finding.h"
#include "checker/source.h"

namespace check {

struct TownOptions {
  std::chrono::sys_days today;
  bool links = true;  // ask the addresses that documents point to
};

struct TownReport {
  Findings findings;
  int documents = 0;  // that could be read
  int unasked = 0;    // addresses under names that are nobody's, as "comune.example"
};

TownReport checkTown(Source& source, const TownOptions& options);

}  // namespace check
