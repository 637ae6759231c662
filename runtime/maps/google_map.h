// KesGoogleMap: a map with its camera and markers, as an application holds it.
//
//   _gmap.Initialize(bi(), "gmap", key);
//   panel.AddView(_gmap, 0, 0, width, height);
//   KesMarker marker = _gmap.AddMarker(45.238, 10.042, "Municipio");
//
// Event: "_infowindowclick:" (the marker), for a tap on the window over an open marker. A
// plain copyable member, as every wrapper; degrees, zoom levels of the tile grid. Main
// thread. Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/map_view.h"
#include "runtime/maps/camera_position.h"
#include "runtime/maps/marker.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

// What of the map's own controls is on it.
class KesMapUiSettings {
 public:
  explicit KesMapUiSettings(Ref<ui::MapView> map) : map_(std::move(map)) {}
  void setCompassEnabled(bool enabled) { map_->setCompass(enabled); }
  bool CompassEnabled() const { return map_->compass(); }
  // The button comes once it is known where the phone is.
  void setMyLocationButtonEnabled(bool enabled) { map_->setHereButton(enabled); }
  bool MyLocationButtonEnabled() const { return map_->hereButton(); }

 private:
  Ref<ui::MapView> map_;
};

class KesGoogleMap final : public ViewWrapper<KesGoogleMap, ui::MapView> {
 public:
  static constexpr std::string_view kPlatformClass = "MapView";
  static constexpr std::string_view kName = "KesGoogleMap";

  using KesViewWrapper::Initialize;
  // `key` stands for {key} in the address of the tiles, where their maker asks for one.
  void Initialize(const Ref<Kes>& bi, const Text& eventName, const Text& key);
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;

  // The ground: an address with {z}, {x} and {y}, and whom it is owed to.
  void setTiles(const Text& address, const Text& attribution);

  KesMapUiSettings GetUiSettings() const { return KesMapUiSettings(native()); }
  void setMyLocationEnabled(bool enabled) { self().setShowsHere(enabled); }
  bool MyLocationEnabled() const { return self().showsHere(); }
  void AnimateCamera(const KesCameraPosition& to) { self().setCamera(to.camera(), true); }
  void MoveCamera(const KesCameraPosition& to) { self().setCamera(to.camera(), false); }
  KesCameraPosition CameraPosition() const { return KesCameraPosition(self().camera()); }

  // Throws "Not a place on the map: …" for what lies beyond a pole or the date line, or is
  // no number.
  KesMarker AddMarker(double latitude, double longitude, const Text& title);
  void Clear() { self().clearMarkers(); }

 private:
  Text key_;
};

}  // namespace kes
