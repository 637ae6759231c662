// About how much room a text takes in the app's letters: enough to tell a title that fits
// from one that is cut, not a layout. Points. Pure functions, any thread.
#pragma once

#include <string_view>

#include "checker/shapes.h"

namespace check {

double widthOf(std::string_view utf8, double size);
// Words go to the next line whole, where they can.
bool fits(std::string_view utf8, const Box& box);

}  // namespace check
