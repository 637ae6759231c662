// The register of the town's acts: a hundred and twenty of them, with attached documents
// and a search by subject. Any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "townhost/documents.h"

namespace town {

struct Act {
  int id = 0;
  int registerYear = 0, registerNumber = 0;
  int year = 0, number = 0;
  CivilDay registered{}, written{};
  std::string proposer, kind, subject;
  std::vector<std::string> attachments;  // titles
};

// The newest first, as on the given day.
std::vector<Act> actsOn(CivilDay today);
// Whether the subject holds the words as they stand, in any case and with accents or
// without.
bool subjectHolds(const Act& act, std::string_view words);

// The acts service; attachments lie at absolute addresses of `url`.
void publishActs(Documents& documents, const std::string& url);

}  // namespace town
