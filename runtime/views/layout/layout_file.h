// What a layout file holds, read whole. The bytes are described in docs/layout-format.md.
// Main thread.
#pragma once

#include <string_view>
#include <vector>

#include "runtime/core/dictionary.h"
#include "runtime/views/layout/layout_values.h"

namespace kes {

struct LayoutFile {
  std::vector<KesLayoutValues> variants;  // at least one
  Ref<Dictionary> props;                  // the root map
};

// From the assets folder. Throws what opening the file throws, and "Unknown type: %d" and
// its like, logged with the file's name, for one that is damaged.
LayoutFile readLayout(std::string_view fileName);

}  // namespace kes
