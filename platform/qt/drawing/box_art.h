// The pictures that boxes are made of: rounded, bordered rectangles and soft shadows,
// small enough to be stretched over any size (nine patches) and kept for reuse. Main
// thread; lengths are points, pictures carry their pixel ratio.
#pragma once

#include <QImage>

#include "platform/ui/values/view_types.h"

namespace qt {

struct BoxLook {
  ui::Color fill;
  ui::Border border;
  ui::Shadow shadow;
  bool operator==(const BoxLook&) const = default;
  bool shows() const {
    return !fill.transparent() || (border.width > 0 && !border.color.transparent());
  }
  bool plain() const { return border.radius <= 0 && border.width <= 0; }
  bool castsShadow() const {
    return shadow.opacity > 0 && !shadow.color.transparent() &&
           (shadow.rectangular || !fill.transparent());
  }
};

struct Patch {
  QImage image;
  double margin = 0;  // the part at each edge that isn't stretched; 0: an exact picture
};

// The filled and bordered shape as a picture of that size.
QImage boxPicture(const BoxLook& look, ui::Size size, double scale);
// The filled and bordered shape for a box of the given size.
Patch boxPatch(const BoxLook& look, ui::Size size, double scale);
// The shadow of such a box, to be shown around it with shadowReach() at each side.
Patch shadowPatch(const BoxLook& look, double scale);
double shadowReach(const ui::Shadow& shadow);

}  // namespace qt
