// From a bitmap, or from the name that a layout gives, to what a view shows. Main thread.
#pragma once

#include "platform/ui/values/image.h"
#include "runtime/core/text.h"

namespace kes {

class KesBitmap;

// Empty for a bitmap that was never loaded.
ui::Image imageOf(const KesBitmap& bitmap);
// A file of the assets, or of the temporary folder; empty for an empty name. Throws what
// loading a bitmap throws.
ui::Image buildBitmap(std::string_view fileName, bool fromTemporary);

}  // namespace kes
