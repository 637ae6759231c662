// Places on the globe, and the flat map of the world that they are shown on.
//
// Degrees north and east (WGS 84). The flat map is the Web Mercator square that tiles
// are cut from: 256 points wide at zoom 0, twice as wide with each level. Plain values;
// nothing here throws.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/ui/values/geometry.h"

namespace ui {

struct GeoPoint {
  double latitude = 0, longitude = 0;
  bool operator==(const GeoPoint&) const = default;
  // On the globe: numbers, and none beyond a pole or the date line.
  bool valid() const { return std::abs(latitude) <= 90 && std::abs(longitude) <= 180; }
};

namespace geo {

inline constexpr double kHighestLatitude = 85.051128779806604;  // where the square ends

inline double worldSize(double zoom) { return 256 * std::exp2(zoom); }

inline Point project(GeoPoint place, double zoom) {
  const double latitude = std::clamp(place.latitude, -kHighestLatitude, kHighestLatitude);
  const double sine = std::sin(latitude * std::numbers::pi / 180);
  const double world = worldSize(zoom);
  return {(place.longitude + 180) / 360 * world,
          (0.5 - std::log((1 + sine) / (1 - sine)) / (4 * std::numbers::pi)) * world};
}

inline GeoPoint unproject(Point at, double zoom) {
  const double world = worldSize(zoom);
  const double y = std::numbers::pi * (1 - 2 * at.y / world);
  return {std::atan(std::sinh(y)) * 180 / std::numbers::pi, at.x / world * 360 - 180};
}

// Greater is further; for putting places in order.
inline double farness(GeoPoint a, GeoPoint b) {
  const double across =
      (a.longitude - b.longitude) * std::cos((a.latitude + b.latitude) * std::numbers::pi / 360);
  return std::hypot(a.latitude - b.latitude, across);
}

}  // namespace geo
}  // namespace ui
