// Maps: where markers stand, what taps and keys do, what is read aloud and written down.
#include "phone.h"
#include "platform/ui/controls/map_view.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/reading/dump.h"
#include "platform/ui/reading/finder.h"

namespace ui {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr GeoPoint kCentre{45.238, 10.042};

struct Map : PageTest {
  Map() {
    map = place<MapView>(page, {0, 20, 320, 548}, "carta");
    map->onWindowTap = [this](MapMarker& m) { windows.push_back(m.title()); };
    map->setCamera({kCentre, 15}, false);
  }
  Ref<MapMarker> add(double north, double east, const std::string& title) {
    auto marker = map->addMarker({kCentre.latitude + north, kCentre.longitude + east}, title);
    phone.pump.drain();
    return marker;
  }
  std::string focused() {
    return phone.app.focus().view() ? phone.app.focus().view()->accessibleName() : "";
  }
  void tap(const View& view) {
    phone.pump.drain();
    phone.tap(tapPoint(view));
  }

  Ref<MapView> map;
  std::vector<std::string> windows;
};

TEST_F(Map, MarkersStandWhereTheTileGridHasThem) {
  const auto middle = add(0, 0, "centro"), north = add(0.005, 0, "nord"),
             east = add(0, 0.005, "est");
  const Point tip{160, 274};  // the middle of the map
  EXPECT_EQ(middle->frame(), (Rect{145, 234, 30, 40}));
  // 0.005 degrees at zoom 15 are 116.5 points across, and as many over the cosine up.
  EXPECT_NEAR(east->frame().center().x - tip.x, 0.005 / 360 * 256 * 32768, 0.01);
  EXPECT_NEAR(tip.y - north->frame().bottom(),
              0.005 / 360 * 256 * 32768 / std::cos(kCentre.latitude * std::numbers::pi / 180), 0.1);
  map->setCamera({north->position(), 16}, false);
  phone.pump.drain();
  EXPECT_NEAR(north->frame().bottom(), tip.y, 1e-6);
  const GeoPoint back = geo::unproject(geo::project(kCentre, 17.5), 17.5);
  EXPECT_NEAR(back.latitude, kCentre.latitude, 1e-9);
  EXPECT_NEAR(back.longitude, kCentre.longitude, 1e-9);
}

TEST_F(Map, CamerasAndMarkersBeyondTheWorldDoNoHarm) {
  const double nan = std::nan("");
  const auto pole = map->addMarker({90, 10}, "polo"), zero = map->addMarker({0, 0}, "zero");
  phone.pump.drain();
  EXPECT_TRUE(std::isfinite(pole->frame().y));
  for (const MapCamera wild :
       {MapCamera{{nan, nan}, nan}, MapCamera{{91, 400}, 99}, MapCamera{{-1e300, -1e300}, -5}}) {
    map->setCamera(wild, true);
    phone.pump.drain();
    EXPECT_TRUE(map->camera().centre.valid());
    EXPECT_GE(map->camera().zoom, MapGround::kLeastZoom);
    EXPECT_LE(map->camera().zoom, MapGround::kMostZoom);
  }
  EXPECT_FALSE((GeoPoint{90.01, 0}).valid());
  EXPECT_FALSE((GeoPoint{nan, 0}).valid());
  EXPECT_TRUE((GeoPoint{-90, 180}).valid());
}

TEST_F(Map, ATapOpensTheWindowAndATapOnTheWindowTells) {
  const auto a = add(0, 0, "Municipio"), b = add(-0.003, 0.002, "Duomo");
  a->setSnippet("Click per dettagli");
  tap(*a);
  ASSERT_EQ(map->openMarker(), a.get());
  EXPECT_EQ(map->ground().window()->accessibleName(), "Municipio, Click per dettagli");
  // The window stands over the pin, centred, and has its texts as views.
  const Rect box = map->ground().window()->frame();
  EXPECT_NEAR(box.center().x, a->frame().center().x, 1);
  EXPECT_NEAR(box.bottom() + MapGround::kWindowGap, a->frame().y, 1);
  EXPECT_THAT(dump(*phone.window), HasSubstr("\"Click per dettagli\""));
  EXPECT_TRUE(windows.empty());
  tap(*map->ground().window());
  EXPECT_THAT(windows, ElementsAre("Municipio"));
  tap(*b);
  EXPECT_EQ(map->openMarker(), b.get());
  EXPECT_TRUE(map->ground().window()->snippet().hidden());
  phone.tap({20, 60});  // the ground
  EXPECT_EQ(map->openMarker(), nullptr);
  // A map that loses its markers loses its window too.
  tap(*a);
  map->clearMarkers();
  phone.pump.drain();
  EXPECT_EQ(map->openMarker(), nullptr);
  EXPECT_THAT(dump(*phone.window), testing::Not(HasSubstr("Municipio")));
}

TEST_F(Map, TheWindowOfAMarkerAtTheEdgeIsMovedIntoSight) {
  const auto corner = add(0.0075, -0.0065, "Un nome piuttosto lungo, in un angolo della carta");
  ASSERT_TRUE(map->ground().bounds().intersects(corner->frame()));
  map->open(corner.get());
  phone.pump.drain();
  const Rect box = map->ground().window()->frame();
  EXPECT_GE(box.x, 0);
  EXPECT_GE(box.y, 0);
  EXPECT_LE(box.right(), 320);
  EXPECT_EQ(map->camera().zoom, 15);
}

TEST_F(Map, TheKeyboardGoesFromTheNearestMarkerOutwards) {
  add(0.004, 0, "lontano");
  add(0.0005, 0, "vicino");
  add(0.03, 0, "fuori vista");
  add(0, 0.002, "in mezzo");
  std::vector<std::string> order;
  for (int i = 0; i < 6; ++i) {
    phone.app.key(Key::Tab);
    order.push_back(focused());
  }
  EXPECT_THAT(order,
              ElementsAre("Zoom in", "Zoom out", "vicino", "in mezzo", "lontano", "fuori vista"));
  // What was out of sight has been brought into it; the order stays what it was.
  EXPECT_TRUE(
      map->ground().bounds().contains(map->ground().pointOf(map->markers()[2]->position())));
  phone.app.key(Key::Up);
  EXPECT_EQ(focused(), "lontano");
  // Enter opens the window; Enter again is a tap on it.
  phone.app.key(Key::Enter);
  ASSERT_TRUE(map->openMarker());
  EXPECT_EQ(map->openMarker()->title(), "lontano");
  EXPECT_TRUE(windows.empty());
  phone.app.key(Key::Enter);
  EXPECT_THAT(windows, ElementsAre("lontano"));
  EXPECT_EQ(focused(), "lontano");
  // Where a finger leaves the map is what "nearest" is measured from afterwards.
  map->ground().userMoved({{kCentre.latitude + 0.03, kCentre.longitude}, 15},
                          map->ground().revision());
  phone.app.focus().set(nullptr);
  for (int i = 0; i < 3; ++i) phone.app.key(Key::Tab);
  EXPECT_EQ(focused(), "fuori vista");
}

TEST_F(Map, EveryMarkerIsAButtonWithAName) {
  add(0.03, 0, "Parco Nord");
  add(0, 0, "");
  std::vector<std::string> read;
  for (const auto& e : accessibilityTree(*phone.window))
    read.push_back(std::string(roleName(e.role)) + " " + e.name);
  EXPECT_THAT(read, ElementsAre("map Map", "button Zoom in", "button Zoom out",
                                "button 45.23800, 10.04200", "button Parco Nord"));
}

TEST_F(Map, TheDumpHasEveryMarkerBelowItsMap) {
  add(0.03, 0, "Parco \"Nord\"");
  map->addMarker({45.2379, 10.0408}, "Municipio");
  map->addMarker({0, -180}, "");
  map->setTiles({"http://tiles.test/{z}/{x}/{y}.png", "© Varlo"});
  phone.pump.drain();
  const std::string text = dump(*phone.window);
  EXPECT_THAT(text, HasSubstr("MapView #carta 0,20 320x548 name=\"Map\"\n"));
  EXPECT_THAT(text, HasSubstr("      MapMarker \"Parco \\\"Nord\\\"\" @45.268,10.042\n"
                              "      MapMarker \"Municipio\" @45.2379,10.0408\n"
                              "      MapMarker \"\" @0,-180\n"));
  EXPECT_THAT(text, HasSubstr("\"© Varlo\""));
  EXPECT_THAT(text, testing::Not(HasSubstr("MapMarker #")));
}

TEST_F(Map, ButtonsComeWithWhatTheyCanDo) {
  const auto shows = [&](const char* name) { return find(*phone.window, name) != nullptr; };
  map->setHereButton(true);
  map->setShowsHere(true);
  phone.pump.drain();
  EXPECT_FALSE(shows("Back to the start"));
  EXPECT_FALSE(shows("My location")) << "nobody knows where that is";
  map->setCompass(true);
  map->located({99, 0});  // nowhere
  EXPECT_FALSE(shows("My location"));
  const GeoPoint here{45.24, 10.05};
  map->located(here);
  phone.pump.drain();
  tap(*find(*phone.window, "My location"));
  EXPECT_EQ(map->camera(), (MapCamera{here, 16}));
  tap(*find(*phone.window, "Zoom in"));
  EXPECT_EQ(map->camera().zoom, 17);
  tap(*find(*phone.window, "Back to the start"));
  EXPECT_EQ(map->camera(), (MapCamera{kCentre, 15}));
  map->setShowsHere(false);
  phone.pump.drain();
  EXPECT_FALSE(shows("My location"));
}

// A report that crossed a move of the program's on its way would undo that move.
TEST_F(Map, ReportsOfAnEarlierCameraArePassedOver) {
  const auto before = map->ground().revision();
  map->setCamera({kCentre, 17}, true);
  map->ground().userMoved({{0, 0}, 3}, before);
  EXPECT_EQ(map->camera(), (MapCamera{kCentre, 17}));
  map->ground().userMoved({{45, 10}, 12}, map->ground().revision());
  EXPECT_EQ(map->camera(), (MapCamera{{45, 10}, 12}));
}

TEST_F(Map, AMarkerIsSingledOutOfItsClusterFromUnderAWindowAndFromUnderItsLike) {
  const auto a = add(0, 0, "uno"), b = add(0.003, 0, "due"), c = add(0.005, 0, "tre"),
             same = add(0.005, 0, "stesso posto"), far = add(0.03, 0, "lontano");
  map->ground().setAlone({1, 2, 3, 4});
  map->ground().singleOut(*b);
  EXPECT_EQ(map->camera().zoom, 15) << "it lies free";
  map->ground().singleOut(*a);
  EXPECT_EQ(map->camera(), (MapCamera{a->position(), MapGround::kMostZoom}));
  map->setCamera({kCentre, 15}, false);
  map->ground().setAlone({0, 1, 2, 3, 4});
  map->open(b.get());
  map->ground().singleOut(*same);
  EXPECT_EQ(map->openMarker(), nullptr) << "its window lay over it";
  EXPECT_EQ(map->camera().zoom, 15);
  map->ground().singleOut(*c);
  tap(*c);
  EXPECT_EQ(map->openMarker(), c.get());
  map->ground().singleOut(*far);
  tap(*far);
  EXPECT_EQ(map->openMarker(), far.get());
}

}  // namespace
}  // namespace ui
