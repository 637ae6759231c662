// KesCameraPosition: where a map's camera is, or is to go. A plain value; degrees, zoom
// levels of the tile grid (each twice as near as the one before). What no map can show is
// brought into range by the map.
#pragma once

#include "platform/ui/controls/map_view.h"

namespace kes {

class KesCameraPosition {
 public:
  KesCameraPosition() = default;
  explicit KesCameraPosition(const ui::MapCamera& camera) : camera_(camera) {}

  KesCameraPosition& Initialize(double latitude, double longitude, double zoom) {
    camera_ = {{latitude, longitude}, zoom};
    return *this;
  }
  double Latitude() const { return camera_.centre.latitude; }
  double Longitude() const { return camera_.centre.longitude; }
  double Zoom() const { return camera_.zoom; }

  const ui::MapCamera& camera() const { return camera_; }

 private:
  ui::MapCamera camera_;
};

}  // namespace kes
