// The map as an application holds it: names, events, and what it refuses.
#include "runtime/maps/google_map.h"
#include "runtime/maps/register_maps.h"
#include "tests/support/failures.h"
#include "tests/support/runtime_phone.h"

namespace kes {
namespace {

using testing_support::thrownBy;

// Hears of taps on windows.
class MapOwner final : public EventNotes {
 public:
  static void describe(ClassBuilder<MapOwner>& c) {
    c.name("test_mapowner");
    c.sub<&MapOwner::_gmap_infowindowclick>("gmap_infowindowclick");
  }
  void _gmap_infowindowclick(KesMarker marker) {
    note<"tap">(marker.Title(), marker.Tag());
    sender = Kes::sender();
  }

  Value sender;
};

struct RuntimeMaps : testing::Test {
  RuntimeMaps() {
    registerMaps();
    ClassRegistry::instance().add<MapOwner>();
    owner = make<MapOwner>(0);
    map.Initialize(owner->bi(), "gmap", "chiave");
    map.native()->setFrame(phone.window->bounds());
    phone.window->addSubview(map.native());
  }

  RuntimePhone phone;
  Ref<MapOwner> owner;
  KesGoogleMap map;
};

TEST_F(RuntimeMaps, ATapOnTheWindowIsTheOwnersEventWithTheMarker) {
  KesMarker marker = map.AddMarker(45.5, 10.25, "Municipio");
  marker.setSnippet("Click per dettagli");
  marker.setTag("dettagli");
  EXPECT_EQ(marker.Position().Latitude, 45.5);
  EXPECT_EQ(marker.Position().Longitude, 10.25);
  map.MoveCamera(KesCameraPosition().Initialize(45.5, 10.25, 16));
  phone.pump.drain();
  map.native()->open(marker.native().get());
  map.native()->ground().userTappedWindow();
  EXPECT_TRUE(owner->trace.empty()) << "events come as tasks of their own";
  phone.pump.drain();
  EXPECT_EQ(owner->trace, Trace{"tap Municipio,dettagli"});
  EXPECT_EQ(owner->sender.object(), map.native().get());
  // A marker is one thing however often it is wrapped: it can be looked up by.
  KesMap rows;
  rows.Initialize();
  rows.Put(marker, "riga");
  EXPECT_EQ(Kes::ObjectToString(rows.Get(Value(KesMarker(*marker.native())))).str(), "riga");
}

TEST_F(RuntimeMaps, SettingsCameraAndTilesAreTheMapsOwn) {
  auto settings = map.GetUiSettings();
  settings.setCompassEnabled(true);
  settings.setMyLocationButtonEnabled(true);
  map.setMyLocationEnabled(true);
  EXPECT_TRUE(map.native()->compass() && map.native()->hereButton() && map.MyLocationEnabled());
  map.AnimateCamera(KesCameraPosition().Initialize(45.25, 10.5, 14));
  EXPECT_EQ(map.CameraPosition().Latitude(), 45.25);
  EXPECT_EQ(map.CameraPosition().Longitude(), 10.5);
  EXPECT_EQ(map.CameraPosition().Zoom(), 14);
  map.setTiles("https://t.example/{z}/{x}/{y}.png?k={key}", "© prova");
  EXPECT_EQ(map.native()->tiles().address, "https://t.example/{z}/{x}/{y}.png?k=chiave");
}

TEST_F(RuntimeMaps, WhatIsNoPlaceIsRefusedAndNothingIsAdded) {
  const double nan = std::nan("");
  const std::pair<double, double> bad[] = {{90.5, 0}, {-91, 0}, {0, 180.1}, {nan, 0}, {0, nan}};
  for (const auto& place : bad)
    EXPECT_THAT(thrownBy([&] { map.AddMarker(place.first, place.second, "?"); }),
                testing::StartsWith("Not a place on the map: "));
  EXPECT_TRUE(map.native()->markers().empty());
  KesGoogleMap none;
  EXPECT_THROW(none.AddMarker(0, 0, "x"), KesException);
}

}  // namespace
}  // namespace kes
