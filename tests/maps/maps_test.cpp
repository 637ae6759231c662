// The map as an application holds it: names, events, and what it refuses.
#include <gmock/gmock.h>

#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_pump.h"
#include "runtime/core/language/module.h"
#include "runtime/maps/google_map.h"
#include "runtime/maps/register_maps.h"
#include "runtime/views/app/services.h"
#include "runtime/views/register_views.h"
#include "runtime/views/wrappers/panel_wrapper.h"

namespace kes {
namespace {

// A module that hears of taps on windows.
class MapOwner final : public Module<MapOwner> {
 public:
  static void describe(ClassBuilder<MapOwner>& c) {
    c.name("test_mapowner");
    c.sub<&MapOwner::_gmap_infowindowclick>("gmap_infowindowclick");
  }
  void _gmap_infowindowclick(KesMarker marker) {
    heard.push_back(marker.Title().str() + "|" + Kes::ObjectToString(marker.Tag()).str());
    sender = Kes::sender();
  }

  std::vector<std::string> heard;
  Value sender;
};

struct RuntimeMaps : testing::Test {
  // Known by name before there is one.
  static MapOwner& registered() {
    registerViews();
    lendServices();
    registerMaps();
    ClassRegistry::instance().add<MapOwner>();
    return MapOwner::instance();
  }
  RuntimeMaps() {
    owner.heard.clear();
    window->makeKey();
    window->show();
    map.Initialize(owner.bi(), "gmap", "chiave");
    map.native()->setFrame(window->bounds());
    window->addSubview(map.native());
  }

  platform::VirtualClock clock;
  platform::Platform platform{clock, {}};
  platform::PlatformScope scope{platform};
  headless::HeadlessScreen screen;
  headless::FixedTextEngine text;
  ui::Application app{screen, text};
  headless::HeadlessPump pump{platform, clock, screen, app};
  ui::Ref<ui::Window> window = ui::makeShared<ui::Window>(app.screenBounds());
  MapOwner& owner = registered();
  KesGoogleMap map;
};

TEST_F(RuntimeMaps, ATapOnTheWindowIsTheOwnersEventWithTheMarker) {
  KesMarker marker = map.AddMarker(45.5, 10.25, "Municipio");
  marker.setSnippet("Click per dettagli");
  marker.setTag("dettagli");
  EXPECT_EQ(marker.Position().Latitude, 45.5);
  EXPECT_EQ(marker.Position().Longitude, 10.25);
  map.MoveCamera(KesCameraPosition().Initialize(45.5, 10.25, 16));
  pump.drain();
  map.native()->open(marker.native().get());
  map.native()->ground().userTappedWindow();
  EXPECT_TRUE(owner.heard.empty()) << "events come as tasks of their own";
  pump.drain();
  EXPECT_EQ(owner.heard, (std::vector<std::string>{"Municipio|dettagli"}));
  EXPECT_EQ(owner.sender.object(), map.native().get());
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
  for (const auto& [latitude, longitude] : bad) {
    try {
      map.AddMarker(latitude, longitude, "?");
      ADD_FAILURE() << latitude << ", " << longitude;
    } catch (const KesException& e) {
      EXPECT_EQ(e.reason().str().rfind("Not a place on the map: ", 0), 0u);
    }
  }
  EXPECT_TRUE(map.native()->markers().empty());
  KesGoogleMap none;
  EXPECT_THROW(none.AddMarker(0, 0, "x"), KesException);
}

}  // namespace
}  // namespace kes
