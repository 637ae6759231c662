// A map: a camera over a ground of tiles, markers, the window of one of them, and a few
// buttons.
//
// All of its state is here. A screen draws the ground with pins and window by its own
// means (the MapGround says what) and reports what the user does with them; buttons and
// attribution are ordinary views in front. Every marker is a view of its own, so that it
// is found, read aloud and reached by keys, nearest first. Owned as any view. Main thread;
// degrees, zoom levels of the tile grid, points.
#pragma once

#include <optional>

#include "platform/ui/controls/button.h"
#include "platform/ui/controls/label.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/geo.h"

namespace ui {

class MapGround;
class MapView;

class MapMarker final : public View {
 public:
  MapMarker(std::uint32_t id, GeoPoint position, std::string title);
  std::string_view className() const override { return "MapMarker"; }

  std::uint32_t id() const { return id_; }  // within its map, in the order of adding
  GeoPoint position() const { return position_; }
  const std::string& title() const { return title_; }
  const std::string& snippet() const { return snippet_; }
  void setSnippet(std::string snippet);
  // What it goes by: the title, or else its coordinates.
  std::string label() const;

  std::string displayText() const override { return title_; }
  bool takesTap() const override { return true; }
  // Moves its map until the pin lies free, as one who looks for it would.
  void singleOut();
  // Opens the window; once that is open, what a tap on the window does.
  void tap(Point at) override;

 protected:
  Role defaultRole() const override { return Role::Button; }
  std::string derivedName() const override { return label(); }
  void focusChanged(bool focused) override;

 private:
  MapGround* ground() const;

  std::uint32_t id_;
  GeoPoint position_;
  std::string title_, snippet_;
};

// What the open marker says, over its pin.
class MapInfoWindow final : public View {
 public:
  MapInfoWindow();
  std::string_view className() const override { return "MapInfoWindow"; }
  void show(const MapMarker& marker);
  const Label& title() const { return *title_; }
  const Label& snippet() const { return *snippet_; }
  Size sizeThatFits(Size limit) const override;
  bool takesTap() const override { return true; }
  void tap(Point at) override;

  static constexpr double kPadding = 12;

 protected:
  void layoutSubviews() override;
  std::string derivedName() const override;

 private:
  Ref<Label> title_, snippet_;
};

struct MapCamera {
  GeoPoint centre;
  double zoom = 0;
  bool operator==(const MapCamera&) const = default;
};

// The part of a map that a screen draws by its own means: its children are markers and,
// in front of them, the window, where one is open.
class MapGround final : public View {
 public:
  static constexpr Size kPin{30, 40};  // the tip is the middle of its lower edge
  static constexpr double kWindowGap = 6;
  static constexpr double kLeastZoom = 3, kMostZoom = 19;

  MapGround();
  std::string_view className() const override { return "MapGround"; }
  bool takesTap() const override { return true; }
  void tap(Point) override { userTappedGround(); }

  MapView* map() const;
  const MapCamera& camera() const { return camera_; }
  // Grows with each move of the program's; a screen tells with its reports which one it
  // has followed. Whether it is to be seen moving.
  std::uint64_t revision() const { return revision_; }
  bool animated() const { return animated_; }
  const std::vector<Ref<MapMarker>>& markers() const { return markers_; }
  std::uint64_t generation() const { return generation_; }  // grows when markers go
  MapMarker* open() const { return open_.get(); }
  MapInfoWindow* window() const { return window_.get(); }
  std::optional<GeoPoint> here() const { return here_; }  // where the phone is
  // The marker that the keyboard is at, if it is at one.
  MapMarker* focusedMarker() const;
  Point pointOf(GeoPoint place) const;  // as of the camera

  // --- What the user did, as the screen reports it. What was said of a camera that the
  // program has replaced meanwhile is passed over.
  void userMoved(const MapCamera& camera, std::uint64_t revision);
  void userTapped(std::uint32_t marker);
  void userTappedWindow();
  void userTappedGround();
  // The markers that have a pin to themselves now; others lie in a cluster. Before the
  // first call all have.
  void setAlone(std::vector<std::uint32_t> markers);

  // Moves just so far that a marker of this map can be seen.
  void reveal(View& inside) override;
  // …and that its pin lies free: zoomed in out of its cluster, with no window over it.
  void singleOut(MapMarker& marker);
  std::vector<View*> childrenInReadingOrder() const override;
  bool canFocus() const override { return false; }

 protected:
  void layoutSubviews() override;
  std::string derivedName() const override { return {}; }

 private:
  friend class MapMarker;
  friend class MapView;
  void moveTo(MapCamera camera, bool animated);
  void add(Ref<MapMarker> marker);
  void clear();
  void openWindow(MapMarker* marker);
  void makeRoomForWindow();
  void touchedMarker(MapMarker& marker);
  bool liesFree(const MapMarker& marker);

  MapCamera camera_;
  GeoPoint anchor_;  // where the app or a finger left the map: what "nearest" is measured from
  std::uint64_t revision_ = 0, generation_ = 0;
  bool animated_ = false;
  std::vector<Ref<MapMarker>> markers_;
  mutable std::vector<View*> nearest_;               // made when asked for
  std::optional<std::vector<std::uint32_t>> alone_;  // ascending
  Ref<MapMarker> open_;
  Ref<MapInfoWindow> window_;
  std::optional<GeoPoint> here_;
};

class MapView final : public View {
 public:
  // An address with {z}, {x} and {y} (and {r}, which is "@2x" on a dense screen); empty: a
  // plain ground. What the tiles' makers want to be named by.
  struct Tiles {
    std::string address, attribution;
    bool operator==(const Tiles&) const = default;
  };

  MapView();
  std::string_view className() const override { return "MapView"; }
  MapGround& ground() const { return *ground_; }

  const Tiles& tiles() const { return tiles_; }
  void setTiles(Tiles tiles);

  const MapCamera& camera() const { return ground_->camera(); }
  // The first camera is also where the compass leads back to.
  void setCamera(const MapCamera& camera, bool animated);

  Ref<MapMarker> addMarker(GeoPoint position, std::string title);
  const std::vector<Ref<MapMarker>>& markers() const { return ground_->markers(); }
  void clearMarkers() { ground_->clear(); }
  MapMarker* openMarker() const { return ground_->open(); }
  void open(MapMarker* marker) { ground_->openWindow(marker); }  // null: none

  bool compass() const { return compass_; }
  void setCompass(bool enabled);
  bool hereButton() const { return hereButton_; }
  void setHereButton(bool enabled);
  bool showsHere() const { return showsHere_; }
  // Whether the screen is to find out where the phone is, and to tell with located(). Where
  // that cannot be known, or the user refuses, nothing comes, and nothing is shown.
  void setShowsHere(bool enabled);
  void located(GeoPoint place);

  std::function<void(MapMarker&)> onMarkerTap, onWindowTap;

  std::vector<View*> childrenInReadingOrder() const override;

 protected:
  void layoutSubviews() override;
  Role defaultRole() const override { return Role::Map; }
  std::string derivedName() const override { return words().map; }

 private:
  void arrangeButtons();
  void zoomBy(int levels);

  Ref<MapGround> ground_;
  Ref<Button> zoomIn_, zoomOut_, north_, hereView_;
  Ref<Label> attribution_;
  Tiles tiles_;
  std::optional<MapCamera> home_;
  bool compass_ = false, hereButton_ = false, showsHere_ = false;
};

}  // namespace ui
