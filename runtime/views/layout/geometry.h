// Where a view of a layout goes: stored lengths and anchors, turned into a frame in the
// room that its parent has for it. Main thread, points; nothing here throws.
#pragma once

#include "platform/ui/tree/view.h"
#include "runtime/core/dictionary.h"

namespace kes {

// What a view is placed in, and how it gets there.
struct Room {
  ui::Size size;                  // of the parent; anchors count its whole points
  float scale = 1;                // of the stored lengths
  std::int32_t milliseconds = 0;  // below 1: at once
  float damping = 0;              // of the spring, for a change that takes time
};

// "left", "top", "width", "height", "hanchor" and "vanchor" of a variant's map. Scaling
// starts from the stored lengths, so that a second one replaces the first. With a larger
// text size the stored heights grow as the text does; the widths, of which there is no
// more on the screen, by less.
void applyGeometry(ui::View& view, const Dictionary& properties, const Room& room);

}  // namespace kes
