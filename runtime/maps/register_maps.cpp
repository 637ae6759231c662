#include "runtime/maps/register_maps.h"

#include "runtime/maps/google_map.h"

namespace kes {

void registerMaps() { ClassRegistry::instance().addAll<KesGoogleMap, KesMarker>(); }

}  // namespace kes
