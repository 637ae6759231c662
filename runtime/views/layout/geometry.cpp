#include "runtime/views/layout/geometry.h"

#include <cmath>

#include "runtime/views/base/properties.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

namespace {

enum Anchor : std::int32_t { kNear = 0, kFar = 1, kBoth = 2 };

struct Span {
  float start, length;
};

// Along one axis. With an anchor at the far edge the stored start is the distance from
// there; with both, the stored length is.
Span placed(Span stored, std::int32_t anchor, float room) {
  if (anchor == kFar) return {room - stored.start - stored.length, stored.length};
  if (anchor == kBoth) return {stored.start, room - stored.length - stored.start};
  return stored;
}

float whole(double length) {
  return static_cast<float>(Value(static_cast<float>(length)).asInt64());
}

double finite(float length) { return std::isfinite(length) ? length : 0; }

}  // namespace

void applyGeometry(ui::View& view, const Dictionary& properties, const Room& room) {
  const auto length = [&](const char* key) { return props::number(properties, key) * room.scale; };
  const Span x = placed({length("left"), length("width")}, props::integer(properties, "hanchor"),
                        whole(room.size.width));
  const Span y = placed({length("top"), length("height")}, props::integer(properties, "vanchor"),
                        whole(room.size.height));
  SetLayoutAnimated(view, room.milliseconds, room.damping, finite(x.start), finite(y.start),
                    finite(x.length), finite(y.length));
}

}  // namespace kes
