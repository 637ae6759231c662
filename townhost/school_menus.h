// What the town's schools have for lunch, as their published documents.
//
// Each school has a summer menu (from April) and a winter menu (from November), each a
// rotation of four weeks counted from its first Monday. The documents hold the seasons
// around the given day, one beginning on the day on which the one before it ends. Pure
// functions, any thread.
#pragma once

#include <string>
#include <vector>

#include "townhost/civil_time.h"

namespace town {

struct School {
  const char* name;
  const char* link;  // of its document, without the extension
  // How far its rotation is ahead of the others', in weeks, so that kitchens take turns.
  int lead;
  bool snack;  // the youngest have one in the afternoon
};

const std::vector<School>& schools();

// The list of the schools, a JSON array.
std::string schoolsDocument();

// The menus of one school for the seasons around the day, a JSON object.
std::string schoolMenuDocument(const School& school, CivilDay day);

}  // namespace town
