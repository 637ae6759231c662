// KesMarker: one marker of a map. Kept alive by its map and by whoever holds this. A
// plain copyable member; equal when it is the same marker. Main thread, degrees.
#pragma once

#include "platform/ui/controls/map_view.h"
#include "runtime/core/class_table.h"
#include "runtime/core/wrapper.h"

namespace kes {

struct KesLatLng {
  double Latitude = 0, Longitude = 0;
};

class KesMarker final : public TypedWrapper<KesMarker, ui::MapMarker> {
 public:
  static constexpr std::string_view kPlatformClass = "MapMarker";
  static constexpr std::string_view kName = "KesMarker";
  std::string_view className() const override { return kName; }
  static void describe(ClassBuilder<KesMarker>& c) { c.name(kName); }

  KesMarker() = default;
  explicit KesMarker(ui::MapMarker& marker) { setObject(Ref<ui::MapMarker>(&marker)); }

  Text Title() const { return Text(native()->title()); }
  // The line below the title in the marker's window.
  Text Snippet() const { return Text(native()->snippet()); }
  void setSnippet(const Text& snippet) { native()->setSnippet(snippet.str()); }
  KesLatLng Position() const {
    const auto at = native()->position();
    return {at.latitude, at.longitude};
  }
};

}  // namespace kes
