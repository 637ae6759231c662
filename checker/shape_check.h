// Holds a document against its shape, field by field. Findings are added in the document's
// order; one wrong record costs no other. Any thread.
#pragma once

#include "checker/json.h"
#include "checker/shapes.h"

namespace check {

// A document that should be a list of such records, or one of them.
void checkShape(const std::string& document, const Json& value, bool list, const Shape& shape,
                Findings& findings);

// The date of a field, as in the school's menus; false where it is none.
struct Day {
  int year = 0, month = 0, day = 0;
};
bool readDate(const std::string& text, Day& out);
// An address of the web.
bool isWeb(const std::string& text);

// What is wanted where a list should be.
extern const Words kAList;

}  // namespace check
