// Where a town's documents are read from: its address, or a folder with its files.
//
// Made by the program or a test; one thread. Reading does not throw: what went wrong is in
// the answer. Nothing larger than 32 MB is read.
#pragma once

#include <memory>
#include <string>

#include "checker/finding.h"

namespace check {

struct Answer {
  int status = 0;  // as HTTP has it; 0: none was to be had
  std::string body;
  Words fault;           // why there is none
  bool notHere = false;  // in a folder: there is no such file
  bool good() const { return status == 200; }
};

class Source {
 public:
  virtual ~Source() = default;
  // A document of the town, by its path on the host.
  virtual Answer read(const std::string& path) = 0;
  // The same of any address; not the whole body where it is enough to know that it answers.
  virtual Answer ask(const std::string& url, bool wholeBody) = 0;
};

// `town` is an http or https address, or a folder. Throws std::invalid_argument for what is
// neither.
std::unique_ptr<Source> openTown(const std::string& town);

}  // namespace check
