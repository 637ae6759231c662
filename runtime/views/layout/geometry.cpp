#include "runtime/views/layout/geometry.h"

#include <cmath>

#include "runtime/views/base/device.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

namespace {

constexpr float kWidthShare = 0.4f;

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
  const auto growth = static_cast<float>(device::textHeight(1));
  const auto span = [&](const char* start, const char* length, float scale) {
    return Span{props::number(properties, start) * scale,
                props::number(properties, length) * scale};
  };
  const Span x = placed(span("left", "width", room.scale * (1 + (growth - 1) * kWidthShare)),
                        props::integer(properties, "hanchor"), whole(room.size.width));
  const Span y = placed(span("top", "height", room.scale * growth),
                        props::integer(properties, "vanchor"), whole(room.size.height));
  SetLayoutAnimated(view, room.milliseconds, room.damping, finite(x.start), finite(y.start),
                    finite(x.length), finite(y.length));
}

}  // namespace kes
