#include "townhost/map/tile_painter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <vector>

#include "townhost/map/varlo_map.h"
#include "townhost/pictures/sheet.h"

namespace town {
namespace {

constexpr double side = 256;  // of a tile, in its own units
constexpr int deepest = 20;

struct Spot {
  double x, y;
};

// A place on the whole world's map at a zoom.
Spot project(Place p, int zoom) {
  const double world = side * std::ldexp(1.0, zoom);
  const double sine = std::sin(p.latitude * std::numbers::pi / 180);
  return {(p.longitude + 180) / 360 * world,
          (0.5 - std::log((1 + sine) / (1 - sine)) / (4 * std::numbers::pi)) * world};
}

double unitsAMetre(int zoom) {
  constexpr double equator = 40075016.686;
  return side * std::ldexp(1.0, zoom) /
         (equator * std::cos(kVarloCentre.latitude * std::numbers::pi / 180));
}

constexpr Paint fields = colored(0xF1F1E6), built = colored(0xEBE8E2), park = colored(0xCFE5C3),
                pitch = colored(0xBBDCAF), cemetery = colored(0xDCE5D2), square = colored(0xF7F3EA),
                church = colored(0xC9BBA9), house = colored(0xDDD6CC),
                houseEdge = colored(0xCBC2B5), water = colored(0xA8CDE3),
                waterName = colored(0x3E7595), rail = colored(0x9E9C98),
                roadEdge = colored(0xD3CABC), road = colored(0xFFFFFF),
                mainEdge = colored(0xDFC078), mainRoad = colored(0xFBE9B7),
                streetName = colored(0x4A4A48), parkName = colored(0x47703A),
                sightName = colored(0x6B5B4A), townName = colored(0x2F2F2D),
                halo = colored(0xFFFFFF);

void trace(cairo_t* pen, const std::vector<Place>& course, int zoom) {
  cairo_new_path(pen);
  for (const auto& place : course) {
    const Spot at = project(place, zoom);
    cairo_line_to(pen, at.x, at.y);
  }
}

void line(cairo_t* pen, const std::vector<Place>& course, int zoom, double width, Paint color) {
  trace(pen, course, zoom);
  use(pen, color);
  cairo_set_line_width(pen, width);
  cairo_stroke(pen);
}

double streetWidth(Street::Kind kind, int zoom) {
  static constexpr double metres[] = {11, 10, 7, 4};
  static constexpr double least[] = {2.2, 1.8, 0.8, 0.5};
  const auto i = static_cast<std::size_t>(kind);
  return std::max(least[i], metres[i] * unitsAMetre(zoom));
}

bool streetShows(Street::Kind kind, int zoom) {
  static constexpr int from[] = {9, 12, 13, 15};
  return zoom >= from[static_cast<std::size_t>(kind)];
}

Paint groundPaint(Ground::Kind kind) {
  static constexpr Paint inks[] = {built, park, square, pitch, cemetery, church};
  return inks[static_cast<std::size_t>(kind)];
}

void paintGrounds(cairo_t* pen, const VarloMap& map, int zoom, bool open) {
  for (const auto& ground : map.grounds) {
    const bool paved = ground.kind == Ground::Kind::square || ground.kind == Ground::Kind::church;
    if (paved == open || (ground.kind == Ground::Kind::pitch && zoom < 14)) continue;
    trace(pen, ground.outline, zoom);
    cairo_close_path(pen);
    use(pen, groundPaint(ground.kind));
    cairo_fill(pen);
  }
}

void paintHouses(cairo_t* pen, const VarloMap& map, int zoom) {
  if (zoom < 15) return;
  for (const auto& each : map.houses) {
    trace(pen, {std::begin(each.corners), std::end(each.corners)}, zoom);
    cairo_close_path(pen);
    // Filled and outlined as one.
    use(pen, house);
    cairo_fill_preserve(pen);
    use(pen, houseEdge);
    cairo_set_line_width(pen, 0.8);
    cairo_stroke(pen);
  }
}

void paintRailway(cairo_t* pen, const VarloMap& map, int zoom) {
  if (zoom < 11) return;
  const double width = zoom >= 15 ? 3 : 1.6;
  line(pen, map.railway, zoom, width, rail);
  if (zoom < 13) return;
  const double dashes[] = {7, 7};
  cairo_set_dash(pen, dashes, 2, 0);
  line(pen, map.railway, zoom, width - 1, halo);
  cairo_set_dash(pen, nullptr, 0, 0);
}

// All edges first: where streets meet, no edge crosses another street.
void paintStreets(cairo_t* pen, const VarloMap& map, int zoom) {
  for (const bool edge : {true, false})
    for (int kind = 3; kind >= 0; --kind)
      for (const auto& street : map.streets) {
        if (static_cast<int>(street.kind) != kind || !streetShows(street.kind, zoom)) continue;
        const bool wide = street.kind == Street::Kind::provincial;
        const double width = streetWidth(street.kind, zoom);
        if (edge)
          line(pen, street.course, zoom, width + (zoom >= 14 ? 2 : 1), wide ? mainEdge : roadEdge);
        else
          line(pen, street.course, zoom, width, wide ? mainRoad : road);
      }
}

void paint(cairo_t* pen, int zoom) {
  const auto& map = varloMap();
  use(pen, fields);
  cairo_paint(pen);
  cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(pen, CAIRO_LINE_CAP_ROUND);
  paintGrounds(pen, map, zoom, true);
  line(pen, map.river, zoom, std::max(1.5, 34 * unitsAMetre(zoom)), water);
  paintHouses(pen, map, zoom);
  paintRailway(pen, map, zoom);
  paintStreets(pen, map, zoom);
  paintGrounds(pen, map, zoom, false);
}

}  // namespace

// --- Names.

struct TilePainter::Names {
  struct Name {
    const char* text;
    Spot at;  // the middle
    double angle, size;
    Paint color;
    bool bold;
    double reach = 0, half = 0;  // half its width, and from the middle to a corner
  };
  std::vector<Name> all;

  explicit Names(int zoom) {
    const Sheet sheet(1, 1);
    cairo_t* const pen = sheet.pen();
    const auto& map = varloMap();
    for (const auto& sight : map.sights)
      if (sight.settlement && zoom >= 10 && zoom <= 15)
        add(pen,
            {sight.name, project(sight.at, zoom), 0, zoom >= 13 ? 17.0 : 13.0, townName, true});
    if (zoom >= 13) addAlong(pen, "Fiume Varla", map.river, zoom, waterName, 12);
    for (const auto& ground : map.grounds)
      if (*ground.name && zoom >= (ground.kind == Ground::Kind::park ? 15 : 16))
        add(pen, {ground.name, middle(ground.outline, zoom), 0, 11.5,
                  ground.kind == Ground::Kind::square ? streetName : parkName, false});
    for (const auto& street : map.streets) {
      const int from = street.kind <= Street::Kind::main ? 15 : 16;
      if (zoom >= from)
        addAlong(pen, street.name, street.course, zoom, streetName, zoom >= 17 ? 12.5 : 11);
    }
    for (const auto& sight : map.sights)
      if (!sight.settlement && zoom >= 17)
        add(pen, {sight.name, project(sight.at, zoom), 0, 11, sightName, true});
  }

  static void choose(cairo_t* pen, const Name& name) {
    cairo_select_font_face(pen, kFace, CAIRO_FONT_SLANT_NORMAL,
                           name.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(pen, name.size);
  }

 private:
  static Spot middle(const std::vector<Place>& outline, int zoom) {
    Spot sum{0, 0};
    for (const auto& place : outline) {
      const Spot at = project(place, zoom);
      sum.x += at.x, sum.y += at.y;
    }
    const auto count = static_cast<double>(outline.size());
    return {sum.x / count, sum.y / count};
  }

  // Where nothing is written yet; else it isn't written.
  void add(cairo_t* pen, Name name) {
    choose(pen, name);
    cairo_text_extents_t extents;
    cairo_text_extents(pen, name.text, &extents);
    name.half = extents.width / 2;
    name.reach = name.half + name.size;
    const double wide = std::abs(std::cos(name.angle)) * name.half + name.size,
                 high = std::abs(std::sin(name.angle)) * name.half + name.size;
    for (const auto& other : all) {
      const double otherWide = std::abs(std::cos(other.angle)) * other.half + other.size,
                   otherHigh = std::abs(std::sin(other.angle)) * other.half + other.size;
      if (std::abs(name.at.x - other.at.x) < wide + otherWide &&
          std::abs(name.at.y - other.at.y) < high + otherHigh)
        return;
    }
    all.push_back(name);
  }

  // On the longest straight piece, if the name fits it.
  void addAlong(cairo_t* pen, const char* text, const std::vector<Place>& course, int zoom,
                Paint color, double size) {
    Spot from{}, to{};
    double longest = 0;
    for (std::size_t i = 1; i < course.size(); ++i) {
      const Spot a = project(course[i - 1], zoom), b = project(course[i], zoom);
      if (const double length = std::hypot(b.x - a.x, b.y - a.y); length > longest)
        longest = length, from = a, to = b;
    }
    if (from.x > to.x) std::swap(from, to);
    Name name{text,
              {(from.x + to.x) / 2, (from.y + to.y) / 2},
              std::atan2(to.y - from.y, to.x - from.x),
              size,
              color,
              false};
    choose(pen, name);
    cairo_text_extents_t extents;
    cairo_text_extents(pen, text, &extents);
    if (extents.width < longest * 1.15) add(pen, name);
  }
};

namespace {

template <class Name>
void write(cairo_t* pen, const Name& name) {
  cairo_save(pen);
  cairo_translate(pen, name.at.x, name.at.y);
  cairo_rotate(pen, name.angle);
  cairo_move_to(pen, -name.half, name.size * 0.35);
  cairo_text_path(pen, name.text);
  use(pen, halo);
  cairo_set_line_width(pen, 3);
  cairo_stroke_preserve(pen);
  use(pen, name.color);
  cairo_fill(pen);
  cairo_restore(pen);
}

}  // namespace

TilePainter::TilePainter() = default;
TilePainter::~TilePainter() = default;

const TilePainter::Names& TilePainter::names(int zoom) {
  const std::lock_guard lock(mutex_);
  auto& found = names_[zoom];
  if (!found) found = std::make_unique<Names>(zoom);
  return *found;
}

std::string TilePainter::png(const TileAddress& tile) {
  const std::string key = std::to_string(tile.zoom) + '/' + std::to_string(tile.x) + '/' +
                          std::to_string(tile.y) + '/' + std::to_string(tile.scale);
  {
    const std::lock_guard lock(mutex_);
    if (const auto it = tiles_.find(key); it != tiles_.end()) return it->second;
  }
  const int pixels = static_cast<int>(side) * tile.scale;
  const Sheet sheet(pixels, pixels);
  cairo_t* const pen = sheet.pen();
  cairo_scale(pen, tile.scale, tile.scale);
  const double left = tile.x * side, top = tile.y * side;
  cairo_translate(pen, -left, -top);
  paint(pen, tile.zoom);
  for (const auto& name : names(tile.zoom).all) {
    if (name.at.x + name.reach < left || name.at.x - name.reach > left + side ||
        name.at.y + name.reach < top || name.at.y - name.reach > top + side)
      continue;
    Names::choose(pen, name);
    write(pen, name);
  }
  std::string out = sheet.png();

  const std::lock_guard lock(mutex_);
  if (tiles_.emplace(key, out).second) order_.push_back(key);
  if (order_.size() > kept) {
    tiles_.erase(order_.front());
    order_.pop_front();
  }
  return out;
}

std::optional<TileAddress> tileAddress(std::string_view path) {
  constexpr std::string_view prefix = "/tiles/", dense = "@2x", extension = ".png";
  if (!path.starts_with(prefix) || !path.ends_with(extension)) return std::nullopt;
  path.remove_prefix(prefix.size());
  path.remove_suffix(extension.size());
  TileAddress tile;
  if (path.ends_with(dense)) {
    path.remove_suffix(dense.size());
    tile.scale = 2;
  }
  int* const parts[] = {&tile.zoom, &tile.x, &tile.y};
  const char* at = path.data();
  const char* const end = at + path.size();
  for (int* part : parts) {
    if (part != parts[0] && (at == end || *at++ != '/')) return std::nullopt;
    const auto [next, error] = std::from_chars(at, end, *part);
    if (error != std::errc()) return std::nullopt;
    at = next;
  }
  if (at != end || tile.zoom < 0 || tile.zoom > deepest) return std::nullopt;
  const int count = 1 << tile.zoom;
  if (tile.x < 0 || tile.y < 0 || tile.x >= count || tile.y >= count) return std::nullopt;
  return tile;
}

}  // namespace town
