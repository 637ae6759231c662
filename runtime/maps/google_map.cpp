#include "runtime/maps/google_map.h"

namespace kes {

void KesGoogleMap::Initialize(const Ref<Kes>& bi, const Text& eventName, const Text& key) {
  key_ = key;
  innerInitialize(bi, eventName, false);
}

void KesGoogleMap::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::MapView& map = self();
  if (hasMethod(map, "_infowindowclick:"))
    map.onWindowTap = [&map](ui::MapMarker& marker) {
      raiseUIEvent(map, "_infowindowclick:", {KesMarker(marker)});
    };
}

void KesGoogleMap::setTiles(const Text& address, const Text& attribution) {
  self().setTiles({address.Replace("{key}", key_).str(), attribution.str()});
}

KesMarker KesGoogleMap::AddMarker(double latitude, double longitude, const Text& title) {
  const ui::GeoPoint place{latitude, longitude};
  if (!place.valid())
    throw KesException("Not a place on the map: " + Kes::NumberToString(latitude) + ", " +
                       Kes::NumberToString(longitude));
  return KesMarker(*self().addMarker(place, title.str()));
}

}  // namespace kes
