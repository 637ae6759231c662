#include "platform/ui/controls/map_view.h"

#include <algorithm>
#include <cstdio>

#include "platform/ui/application.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

constexpr double kWindowWidth = 260, kWindowMargin = 10, kInnerGap = 2;
constexpr double kRevealMargin = 48;  // from the edge, for a pin that is to be seen
constexpr double kHereZoom = 16;
constexpr double kButtonMargin = 10;
constexpr double kAttributionSize = 10;
constexpr Color kGroundColor{0xFFF1F1E6}, kAttributionBack{0xCCFFFFFF};
// Characters of the icon face.
constexpr const char *kPlus = "\uE145", *kMinus = "\uE15B", *kNorth = "\uE87A", *kHere = "\uE55C";

MapCamera within(MapCamera c) {
  const auto number = [](double v, double low, double high) {
    return std::clamp(std::isfinite(v) ? v : 0, low, high);
  };
  return {{number(c.centre.latitude, -geo::kHighestLatitude, geo::kHighestLatitude),
           number(c.centre.longitude, -180, 180)},
          number(c.zoom, MapGround::kLeastZoom, MapGround::kMostZoom)};
}

}  // namespace

// --- A marker.

MapMarker::MapMarker(std::uint32_t id, GeoPoint position, std::string title)
    : id_(id), position_(position), title_(std::move(title)) {
  setBounds({0, 0, MapGround::kPin.width, MapGround::kPin.height});
}

MapGround* MapMarker::ground() const { return static_cast<MapGround*>(parent()); }

void MapMarker::setSnippet(std::string snippet) {
  snippet_ = std::move(snippet);
  if (auto* g = ground(); g && g->open() == this) g->window()->show(*this);
}

std::string MapMarker::label() const {
  if (!title_.empty()) return title_;
  char text[48];
  std::snprintf(text, sizeof text, "%.5f, %.5f", position_.latitude, position_.longitude);
  return text;
}

void MapMarker::tap(Point) {
  if (auto* g = ground()) g->touchedMarker(*this);
}

void MapMarker::singleOut() {
  if (auto* g = ground()) g->singleOut(*this);
}

void MapMarker::focusChanged(bool) {
  if (auto* g = ground()) g->markChanged(Change::Content);
}

// --- The window.

MapInfoWindow::MapInfoWindow() : title_(makeShared<Label>()), snippet_(makeShared<Label>()) {
  setBackground(style::kCard);
  setBorder({0, kClear, style::kCardRadius});
  setClipsToBounds(true);
  title_->setFont(Font::bold(15));
  title_->setTextColor(style::kText);
  title_->setMaxLines(2);
  snippet_->setFont(Font::system(13));
  snippet_->setTextColor(style::kSecondaryText);
  snippet_->setMaxLines(2);
  addSubview(title_);
  addSubview(snippet_);
}

void MapInfoWindow::show(const MapMarker& marker) {
  title_->setText(marker.label());
  snippet_->setText(marker.snippet());
  snippet_->setHidden(marker.snippet().empty());
  setNeedsLayout();
  if (parent()) parent()->setNeedsLayout();
}

Size MapInfoWindow::sizeThatFits(Size limit) const {
  const double most = std::max(1.0, limit.width - 2 * kPadding);
  // As wide as its longer text in one line, if there is room for it.
  auto* app = Application::current();
  double width = 0;
  for (const Label* label : {title_.get(), snippet_.get()})
    if (app && !label->text().empty())
      width = std::max(width, app->text().measure(label->text(), label->font(), 0, 1).width);
  width = std::min(width, most);
  const double first = title_->sizeThatFits({width, 0}).height;
  const double second =
      snippet_->text().empty() ? 0 : snippet_->sizeThatFits({width, 0}).height + kInnerGap;
  return {std::ceil(std::max(width + 2 * kPadding, style::kTapSize)),
          std::ceil(std::max(first + second + 2 * kPadding, style::kTapSize))};
}

void MapInfoWindow::layoutSubviews() {
  const double inner = std::max(0.0, bounds().width - 2 * kPadding);
  const double first = title_->sizeThatFits({inner, 0}).height;
  title_->setFrame({kPadding, kPadding, inner, first});
  snippet_->setFrame({kPadding, kPadding + first + kInnerGap, inner,
                      std::max(0.0, bounds().height - 2 * kPadding - first - kInnerGap)});
}

std::string MapInfoWindow::derivedName() const {
  const std::string& more = snippet_->text();
  return more.empty() ? title_->text() : title_->text() + ", " + more;
}

void MapInfoWindow::tap(Point) {
  if (auto* ground = static_cast<MapGround*>(parent())) ground->userTappedWindow();
}

// --- The ground.

MapGround::MapGround() {
  setBackground(kGroundColor);
  setClipsToBounds(true);
  setRole(Role::None);
}

MapView* MapGround::map() const { return static_cast<MapView*>(parent()); }

MapMarker* MapGround::focusedMarker() const {
  auto* app = Application::current();
  auto* focused = app && app->focus().byKeyboard() ? app->focus().view() : nullptr;
  return focused && focused->parent() == this ? dynamic_cast<MapMarker*>(focused) : nullptr;
}

Point MapGround::pointOf(GeoPoint place) const {
  return geo::project(place, camera_.zoom) - geo::project(camera_.centre, camera_.zoom) +
         bounds().center();
}

void MapGround::moveTo(MapCamera camera, bool animated) {
  camera_ = within(camera);
  animated_ = animated;
  ++revision_;
  setNeedsLayout();
  markChanged(Change::Content);
}

void MapGround::add(Ref<MapMarker> marker) {
  addSubview(marker);
  markers_.push_back(std::move(marker));
  nearest_.clear();
  if (window_) window_->bringToFront();
  markChanged(Change::Content);
}

void MapGround::clear() {
  openWindow(nullptr);
  nearest_.clear();
  alone_.reset();
  const auto former = std::exchange(markers_, {});
  ++generation_;
  removeAllSubviews();
  markChanged(Change::Content);
}

void MapGround::layoutSubviews() {
  const Point shift = bounds().center() - geo::project(camera_.centre, camera_.zoom);
  for (const auto& marker : markers_) {
    const Point tip = geo::project(marker->position(), camera_.zoom) + shift;
    marker->setCenter({tip.x, tip.y - kPin.height / 2});
  }
  if (!window_) return;
  const double most = std::min(kWindowWidth, bounds().width - 2 * kWindowMargin);
  const Size size = window_->sizeThatFits({most, 0});
  const Point tip = pointOf(open_->position());
  window_->setFrame({std::round(tip.x - size.width / 2),
                     std::round(tip.y - kPin.height - kWindowGap - size.height), size.width,
                     size.height});
}

// --- What is open.

void MapGround::openWindow(MapMarker* marker) {
  if (marker == open_.get()) return;
  const Ref<View> pin(this);
  if (window_) window_->removeFromParent();
  window_ = nullptr;
  open_ = Ref<MapMarker>(marker && marker->parent() == this ? marker : nullptr);
  if (open_) {
    window_ = makeShared<MapInfoWindow>();
    addSubview(window_);
    window_->show(*open_);
    makeRoomForWindow();
    if (auto* app = Application::current()) app->screen().announce(window_->accessibleName());
  }
  markChanged(Change::Content);
}

// The least movement that shows the whole window; the marker stays where it points.
void MapGround::makeRoomForWindow() {
  if (bounds().empty()) return;
  layoutIfNeeded();
  const Rect box = window_->frame();
  const Rect room = bounds().inset({kWindowMargin, kWindowMargin, kWindowMargin, kWindowMargin});
  Point way;
  if (box.x < room.x) way.x = room.x - box.x;
  if (box.right() > room.right()) way.x = room.right() - box.right();
  if (box.y < room.y) way.y = room.y - box.y;
  if (box.bottom() + kPin.height > room.bottom())
    way.y = room.bottom() - box.bottom() - kPin.height;
  if (way == Point{}) return;
  const Point centre = geo::project(camera_.centre, camera_.zoom) - way;
  moveTo({geo::unproject(centre, camera_.zoom), camera_.zoom}, true);
}

void MapGround::touchedMarker(MapMarker& marker) {
  const Ref<View> pin(this);
  const Ref<MapMarker> touched(&marker);
  if (open_ == touched) return userTappedWindow();
  openWindow(&marker);
  if (auto* view = map())
    if (const auto hook = view->onMarkerTap) hook(*touched);
}

// --- What the user did.

void MapGround::userMoved(const MapCamera& camera, std::uint64_t revision) {
  if (revision != revision_) return;
  camera_ = within(camera);
  anchor_ = camera_.centre;
  nearest_.clear();
  setNeedsLayout();
}

void MapGround::userTapped(std::uint32_t marker) {
  const auto it = std::find_if(markers_.begin(), markers_.end(),
                               [marker](const auto& m) { return m->id() == marker; });
  if (it != markers_.end()) touchedMarker(**it);
}

void MapGround::userTappedWindow() {
  const Ref<View> pin(this);
  const Ref<MapMarker> marker = open_;
  auto* view = map();
  if (!marker || !view) return;
  if (const auto hook = view->onWindowTap) hook(*marker);
}

void MapGround::userTappedGround() { openWindow(nullptr); }

void MapGround::setAlone(std::vector<std::uint32_t> markers) {
  std::sort(markers.begin(), markers.end());
  alone_ = std::move(markers);
}

// In no cluster, and nothing lies over its middle.
bool MapGround::liesFree(const MapMarker& marker) {
  if (alone_ && !std::binary_search(alone_->begin(), alone_->end(), marker.id())) return false;
  layoutIfNeeded();
  return hitTest(marker.frame().center()) == &marker;
}

// --- For the keyboard, for reading, for scripts.

void MapGround::reveal(View& inside) {
  auto* marker = dynamic_cast<MapMarker*>(&inside);
  if (!marker || marker->parent() != this || bounds().empty()) return;
  const double x = std::min(kRevealMargin, bounds().width / 4),
               y = std::min(kRevealMargin, bounds().height / 4);
  if (bounds().inset({x, y, x, y}).contains(pointOf(marker->position()))) return;
  moveTo({marker->position(), camera_.zoom}, true);
  layoutIfNeeded();
}

void MapGround::singleOut(MapMarker& marker) {
  if (marker.parent() != this || bounds().empty()) return;
  reveal(marker);
  if (open_.get() != &marker && !liesFree(marker)) openWindow(nullptr);
  if (liesFree(marker)) return;
  moveTo({marker.position(), kMostZoom}, false);
  // Still among others: they stand at the same place.
  if (!liesFree(marker)) marker.bringToFront();
  if (window_) window_->bringToFront();
}

std::vector<View*> MapGround::childrenInReadingOrder() const {
  if (nearest_.empty()) {
    std::vector<std::pair<double, View*>> order;
    order.reserve(markers_.size());
    for (const auto& marker : markers_)
      order.emplace_back(geo::farness(marker->position(), anchor_), marker.get());
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [far, view] : order) nearest_.push_back(view);
  }
  auto order = nearest_;
  if (window_) {
    const auto at = std::find(order.begin(), order.end(), static_cast<View*>(open_.get()));
    order.insert(at == order.end() ? at : at + 1, window_.get());
  }
  return order;
}

// --- The map.

MapView::MapView() : ground_(makeShared<MapGround>()), attribution_(makeShared<Label>()) {
  setBackground(kGroundColor);
  setClipsToBounds(true);
  addSubview(ground_);
  const auto button = [this](const char* icon, const std::string& name, std::function<void()> act) {
    auto made = makeShared<Button>();
    made->setTitle(icon);
    made->setAccessibleName(name);
    made->setFont(style::iconFont());
    made->setTextColor(style::kText);
    made->setBackground(style::kCard);
    made->setBorder({0, kClear, 6});
    made->setShadow({kBlack, {0, 1}, 0.3, 3});
    made->setOnTap([act = std::move(act)](View&) { act(); });
    addSubview(made);
    return made;
  };
  zoomIn_ = button(kPlus, words().zoomIn, [this] { zoomBy(1); });
  zoomOut_ = button(kMinus, words().zoomOut, [this] { zoomBy(-1); });
  north_ = button(kNorth, words().north, [this] {
    if (home_) setCamera(*home_, true);
  });
  hereView_ = button(kHere, words().here, [this] {
    if (const auto here = ground_->here())
      setCamera({*here, std::max(camera().zoom, kHereZoom)}, true);
  });
  attribution_->setFont(Font::system(kAttributionSize));
  attribution_->setTextColor(style::kSecondaryText);
  attribution_->setBackground(kAttributionBack);
  attribution_->setAlignment(TextAlign::Center);
  addSubview(attribution_);
  arrangeButtons();
}

void MapView::setTiles(Tiles tiles) {
  if (tiles == tiles_) return;
  tiles_ = std::move(tiles);
  attribution_->setText(tiles_.attribution);
  setNeedsLayout();
  ground_->markChanged(Change::Content);
}

void MapView::setCamera(const MapCamera& camera, bool animated) {
  if (!home_) home_ = within(camera);
  ground_->moveTo(camera, animated);
  ground_->anchor_ = ground_->camera().centre;
  ground_->nearest_.clear();
}

void MapView::zoomBy(int levels) {
  setCamera({camera().centre, std::round(camera().zoom) + levels}, true);
}

Ref<MapMarker> MapView::addMarker(GeoPoint position, std::string title) {
  const auto id = static_cast<std::uint32_t>(ground_->markers().size());
  auto marker = makeShared<MapMarker>(id, position, std::move(title));
  ground_->add(marker);
  return marker;
}

void MapView::setCompass(bool enabled) {
  compass_ = enabled;
  arrangeButtons();
}

void MapView::setHereButton(bool enabled) {
  hereButton_ = enabled;
  arrangeButtons();
}

void MapView::setShowsHere(bool enabled) {
  showsHere_ = enabled;
  if (!enabled) ground_->here_.reset();
  arrangeButtons();
  ground_->markChanged(Change::Content);
}

void MapView::located(GeoPoint place) {
  if (!showsHere_ || !place.valid() || ground_->here_ == place) return;
  ground_->here_ = place;
  arrangeButtons();
  ground_->markChanged(Change::Content);
}

// A button that could do nothing isn't there.
void MapView::arrangeButtons() {
  north_->setHidden(!compass_);
  hereView_->setHidden(!hereButton_ || !ground_->here());
  setNeedsLayout();
}

void MapView::layoutSubviews() {
  ground_->setFrame(bounds());
  constexpr double side = style::kTapSize;
  const double x = bounds().width - side - kButtonMargin;
  double y = bounds().height - kButtonMargin - side;
  for (Button* button : {zoomOut_.get(), zoomIn_.get(), hereView_.get()}) {
    button->setFrame({x, y, side, side});
    y -= side + (button == zoomOut_.get() ? 1 : kButtonMargin);
  }
  north_->setFrame({x, kButtonMargin, side, side});
  attribution_->setHidden(tiles_.attribution.empty());
  const Size text = attribution_->sizeThatFits({});
  const double wide = std::min(text.width + 8, std::max(0.0, x - kButtonMargin));
  attribution_->setFrame({0, bounds().height - text.height - 2, wide, text.height + 2});
}

std::vector<View*> MapView::childrenInReadingOrder() const {
  return {north_.get(),   hereView_.get(), zoomIn_.get(),
          zoomOut_.get(), ground_.get(),   attribution_.get()};
}

}  // namespace ui
