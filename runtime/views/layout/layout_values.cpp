#include "runtime/views/layout/layout_values.h"

#include <cmath>

#include "runtime/core/kes.h"
#include "runtime/views/base/device.h"

namespace kes {

KesLayoutValues KesLayoutValues::fromBoxed(const Value& v) {
  const auto values = v.as<KesLayoutValues>();
  return values ? *values : KesLayoutValues();
}

double KesLayoutValues::NonnormalizedScale() const { return device::screenScale(); }

double KesLayoutValues::DeviceApproximateScreenSize() const {
  const double w = Width, h = Height;
  return std::sqrt(w * w + h * h) / 160;
}

Text KesLayoutValues::description() const {
  return formatText("%@ x %@ (normalized scale)", {std::to_string(Width), std::to_string(Height)});
}

KesLayoutValues GetDeviceLayoutValues() {
  const ui::Rect screen = device::screenBounds(), root = device::rootViewBounds();
  const auto w = static_cast<std::int32_t>(screen.width);
  const auto h = static_cast<std::int32_t>(screen.height);
  // Systems before 8 kept the screen's bounds upright while the views turned.
  if (device::systemVersionNumber() >= 8 || root.width <= root.height) return {w, h};
  return {h, w};
}

}  // namespace kes
