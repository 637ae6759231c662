// From a layout to its readable source. What the compiler made comes back as a source
// that compiles to the same bytes; what another writer made is shown as well as the form
// allows. Any thread.
#pragma once

#include "tools/layout_file.h"

namespace layouts {

std::string print(const Layout& layout);

}  // namespace layouts
