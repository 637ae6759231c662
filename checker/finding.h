// What is wrong with a town's documents, in words that mend it. Plain data.
#pragma once

#include <string>
#include <vector>

namespace check {

// The same said in the two languages of a report.
struct Words {
  std::string it, en;
};

struct Finding {
  std::string document;  // its address, from the host on
  std::string record;    // "3 (Farmacia San Rocco)", or nothing: the document as a whole
  std::string field;     // or nothing: the record as a whole
  Words found, expected;
  Words citizen;  // what a citizen sees for it
};

using Findings = std::vector<Finding>;

}  // namespace check
