// Between a layout and the bytes of a layout file. Both throw layouts::Error. Any thread.
#pragma once

#include "tools/layout_file.h"

namespace layouts {

std::string toBytes(const Layout& layout);
// Damaged bytes end in an Error that gives the position.
Layout fromBytes(std::string_view bytes);

}  // namespace layouts
