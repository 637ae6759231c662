#include "townhost/map/varlo_map.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace town {
namespace {

constexpr double metresADegree = 111320;
const double metresAcross =
    metresADegree * std::cos(kVarloCentre.latitude * std::numbers::pi / 180);

using Kind = Street::Kind;

std::vector<Street> streets() {
  return {
      {"Strada Provinciale 9",
       Kind::provincial,
       {{45.2387, 10.0394},
        {45.2390, 10.0362},
        {45.2400, 10.0310},
        {45.2440, 10.0235},
        {45.2540, 10.0215},
        {45.2733, 10.0210}}},
      {"Strada Provinciale 28",
       Kind::provincial,
       {{45.2340, 10.0482},
        {45.2330, 10.0495},
        {45.2250, 10.0545},
        {45.2110, 10.0612},
        {45.1986, 10.0655}}},
      {"Strada Provinciale 11",
       Kind::provincial,
       {{45.2416, 10.0485}, {45.2431, 10.0560}, {45.2480, 10.0620}, {45.2590, 10.0688}}},
      {"Via Roma",
       Kind::main,
       {{45.2379, 10.0412},
        {45.2376, 10.0425},
        {45.2369, 10.0437},
        {45.2362, 10.0446},
        {45.2352, 10.0462},
        {45.2340, 10.0482}}},
      {"Via Cavour", Kind::main, {{45.2381, 10.0408}, {45.2384, 10.0403}, {45.2387, 10.0394}}},
      {"Viale della Stazione",
       Kind::main,
       {{45.2378, 10.0410},
        {45.2367, 10.0409},
        {45.2352, 10.0402},
        {45.2342, 10.0391},
        {45.2338, 10.0384},
        {45.2331, 10.0372}}},
      {"Viale dei Platani",
       Kind::main,
       {{45.2416, 10.0485},
        {45.2397, 10.0447},
        {45.2386, 10.0458},
        {45.2375, 10.0470},
        {45.2350, 10.0488},
        {45.2340, 10.0482}}},
      {"Via Mazzini",
       Kind::main,
       {{45.2386, 10.0417}, {45.2389, 10.0422}, {45.2393, 10.0434}, {45.2397, 10.0447}}},
      {"Via delle Industrie",
       Kind::main,
       {{45.2312, 10.0455}, {45.2304, 10.0470}, {45.2289, 10.0489}, {45.2275, 10.0508}}},
      {"Via Dante",
       Kind::local,
       {{45.2378, 10.0411}, {45.2366, 10.0415}, {45.2355, 10.0418}, {45.2338, 10.0423}}},
      {"Via dello Sport",
       Kind::local,
       {{45.2338, 10.0423}, {45.2324, 10.0441}, {45.2312, 10.0455}}},
      {"Via Manzoni",
       Kind::local,
       {{45.2369, 10.0437}, {45.2365, 10.0452}, {45.2361, 10.0464}, {45.2358, 10.0482}}},
      {"Via dei Tigli", Kind::local, {{45.2367, 10.0409}, {45.2361, 10.0399}, {45.2350, 10.0384}}},
      {"Via Pascoli",
       Kind::local,
       {{45.2387, 10.0394}, {45.2397, 10.0385}, {45.2399, 10.0381}, {45.2405, 10.0368}}},
      {"Via dei Mulini",
       Kind::local,
       {{45.2386, 10.0417},
        {45.2399, 10.0402},
        {45.2413, 10.0388},
        {45.2428, 10.0376},
        {45.2436, 10.0366}}},
      {"Via dell'Ospedale",
       Kind::local,
       {{45.2393, 10.0434}, {45.2410, 10.0450}, {45.2420, 10.0458}}},
      {"Via del Cimitero", Kind::local, {{45.2420, 10.0458}, {45.2431, 10.0489}}},
      {"Strada dei Prati",
       Kind::local,
       {{45.2431, 10.0489}, {45.2450, 10.0497}, {45.2466, 10.0504}, {45.2510, 10.0520}}},
      {"Via delle Risaie",
       Kind::local,
       {{45.2296, 10.0480}, {45.2291, 10.0522}, {45.2288, 10.0560}}},
      {"Via Verdi", Kind::local, {{45.2410, 10.0450}, {45.2406, 10.0466}, {45.2396, 10.0482}}},
      {"Via Puccini", Kind::local, {{45.2386, 10.0458}, {45.2396, 10.0482}, {45.2400, 10.0502}}},
      {"Via Leopardi", Kind::local, {{45.2420, 10.0458}, {45.2424, 10.0472}, {45.2416, 10.0485}}},
      {"Via Carducci", Kind::local, {{45.2387, 10.0394}, {45.2373, 10.0387}, {45.2359, 10.0396}}},
      {"Via Trento", Kind::local, {{45.2373, 10.0387}, {45.2376, 10.0362}, {45.2390, 10.0362}}},
      {"Via Trieste", Kind::local, {{45.2364, 10.0392}, {45.2363, 10.0361}, {45.2376, 10.0362}}},
      {"Via Piave", Kind::local, {{45.2350, 10.0384}, {45.2352, 10.0358}, {45.2363, 10.0361}}},
      {"Via Matteotti", Kind::local, {{45.2366, 10.0415}, {45.2360, 10.0430}, {45.2356, 10.0455}}},
      {"Via Gramsci", Kind::local, {{45.2345, 10.0421}, {45.2342, 10.0446}, {45.2347, 10.0470}}},
      {"Via XXV Aprile", Kind::local, {{45.2360, 10.0430}, {45.2342, 10.0446}, {45.2332, 10.0462}}},
      {"Via Po", Kind::local, {{45.2405, 10.0368}, {45.2413, 10.0388}}},
      {"Via Adda", Kind::local, {{45.2399, 10.0402}, {45.2408, 10.0422}, {45.2410, 10.0450}}},
      {"Via Ticino", Kind::local, {{45.2413, 10.0388}, {45.2421, 10.0414}, {45.2420, 10.0458}}},
      {"Via dei Gelsi", Kind::local, {{45.2375, 10.0470}, {45.2380, 10.0496}, {45.2392, 10.0512}}},
      {"Via delle Rose", Kind::local, {{45.2350, 10.0488}, {45.2360, 10.0512}, {45.2380, 10.0496}}},
      {"Vicolo del Teatro", Kind::lane, {{45.2381, 10.0412}, {45.2386, 10.0417}}},
  };
}

std::vector<Ground> grounds() {
  using G = Ground::Kind;
  return {
      {"",
       G::built,
       {{45.2440, 10.0362},
        {45.2428, 10.0420},
        {45.2436, 10.0492},
        {45.2405, 10.0520},
        {45.2360, 10.0524},
        {45.2325, 10.0500},
        {45.2272, 10.0518},
        {45.2285, 10.0470},
        {45.2326, 10.0412},
        {45.2322, 10.0368},
        {45.2352, 10.0348},
        {45.2408, 10.0352}}},
      {"Parco del Fiume",
       G::park,
       {{45.2443, 10.0372},
        {45.2437, 10.0388},
        {45.2424, 10.0402},
        {45.2428, 10.0448},
        {45.2441, 10.0458},
        {45.2434, 10.0416},
        {45.2443, 10.0376}}},
      {"Giardino Pascoli",
       G::park,
       {{45.2393, 10.0379}, {45.2398, 10.0375}, {45.2393, 10.0366}, {45.2387, 10.0375}}},
      {"Parco della Rimembranza",
       G::park,
       {{45.2374, 10.0476}, {45.2378, 10.0492}, {45.2362, 10.0506}, {45.2354, 10.0490}}},
      {"Giardini della Stazione",
       G::park,
       {{45.2347, 10.0386}, {45.2342, 10.0376}, {45.2337, 10.0376}, {45.2341, 10.0386}}},
      {"",
       G::pitch,
       {{45.2316, 10.0441}, {45.2308, 10.0449}, {45.2304, 10.0440}, {45.2312, 10.0432}}},
      {"Centro sportivo",
       G::park,
       {{45.2331, 10.0425},
        {45.2323, 10.0437},
        {45.2309, 10.0452},
        {45.2302, 10.0440},
        {45.2318, 10.0422}}},
      {"Cimitero",
       G::cemetery,
       {{45.2434, 10.0479}, {45.2440, 10.0487}, {45.2436, 10.0496}, {45.2429, 10.0494}}},
      {"Piazza del Duomo",
       G::square,
       {{45.23835, 10.04155}, {45.23890, 10.04165}, {45.23895, 10.04230}, {45.23840, 10.04225}}},
      {"Piazza Garibaldi",
       G::square,
       {{45.23770, 10.04070}, {45.23815, 10.04060}, {45.23825, 10.04130}, {45.23780, 10.04140}}},
      {"",
       G::church,
       {{45.23868, 10.04182}, {45.23885, 10.04184}, {45.23884, 10.04222}, {45.23867, 10.04219}}},
  };
}

std::vector<Sight> sights() {
  return {
      {"Varlo", {45.2381, 10.0424}, true},
      {"Pieve Lunga", {45.1988, 10.0652}, true},
      {"Borgo San Giorgio", {45.2104, 10.0127}, true},
      {"Cascine Alte", {45.2217, 10.1013}, true},
      {"Ponte Nuovo", {45.2590, 10.0688}, true},
      {"Duomo", {45.23875, 10.0420}, false},
      {"Municipio", {45.2379, 10.0409}, false},
      {"Stazione", {45.2336, 10.0382}, false},
      {"Ospedale", {45.2411, 10.0452}, false},
      {"Scuole", {45.2364, 10.0456}, false},
      {"Piscina", {45.2319, 10.0447}, false},
      {"Teatro Sociale", {45.2383, 10.0415}, false},
      {"Santuario", {45.2466, 10.0504}, false},
      {"Piattaforma ecologica", {45.2289, 10.0489}, false},
  };
}

// --- Houses: along the streets of the built-up area, none in a street or a park.

struct Flat {  // metres from the centre, east and north
  double x, y;
};

Flat flat(Place p) {
  return {(p.longitude - kVarloCentre.longitude) * metresAcross,
          (p.latitude - kVarloCentre.latitude) * metresADegree};
}

double distance(Flat p, Flat a, Flat b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double length = dx * dx + dy * dy;
  const double t =
      length > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0) : 0;
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distance(Flat p, const std::vector<Place>& course) {
  double nearest = 1e9;
  for (std::size_t i = 1; i < course.size(); ++i)
    nearest = std::min(nearest, distance(p, flat(course[i - 1]), flat(course[i])));
  return nearest;
}

bool inside(Flat p, const std::vector<Place>& outline) {
  bool in = false;
  for (std::size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
    const Flat a = flat(outline[i]), b = flat(outline[j]);
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) in = !in;
  }
  return in;
}

// The same numbers on every machine, unlike a library's distribution.
class Dice {
 public:
  double next(double low, double high) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return low + (high - low) * static_cast<double>(state_ >> 40) / double(1 << 24);
  }

 private:
  std::uint64_t state_ = 9;
};

bool free(Flat at, double radius, const VarloMap& map, const std::vector<Flat>& taken) {
  bool built = false;
  for (const auto& ground : map.grounds) {
    const bool in = inside(at, ground.outline);
    if (ground.kind == Ground::Kind::built)
      built = in;
    else if (in)
      return false;
  }
  if (!built || distance(at, map.railway) < radius + 12 || distance(at, map.river) < radius + 25)
    return false;
  for (const auto& street : map.streets)
    if (distance(at, street.course) < radius + 3) return false;
  return std::none_of(taken.begin(), taken.end(), [&](Flat other) {
    return std::hypot(at.x - other.x, at.y - other.y) < 2 * radius;
  });
}

// Up and down both sides, at the distance of a front garden; where something stands already
// the plot stays free.
void buildAlong(const Street& street, VarloMap& map, std::vector<Flat>& taken, Dice& dice) {
  for (std::size_t i = 1; i < street.course.size(); ++i) {
    const Flat a = flat(street.course[i - 1]), b = flat(street.course[i]);
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const Flat way{(b.x - a.x) / length, (b.y - a.y) / length};
    for (const double side : {-1.0, 1.0})
      for (double at = 12; at < length - 8; at += dice.next(19, 27)) {
        const double half = dice.next(6, 10), deep = dice.next(5, 8);
        const double back = deep + dice.next(8, 12);
        const Flat middle{a.x + way.x * at - way.y * side * back,
                          a.y + way.y * at + way.x * side * back};
        if (!free(middle, std::max(half, deep), map, taken)) continue;
        taken.push_back(middle);
        House house{};
        for (int corner = 0; corner < 4; ++corner) {
          const double u = corner == 0 || corner == 3 ? -half : half;
          const double v = corner < 2 ? -deep : deep;
          house.corners[corner] = offset(kVarloCentre, middle.y + way.y * u + way.x * v,
                                         middle.x + way.x * u - way.y * v);
        }
        map.houses.push_back(house);
      }
  }
}

// A curve through all the points, as straight pieces.
std::vector<Place> rounded(const std::vector<Place>& through) {
  constexpr int pieces = 8;
  const auto blend = [](double a, double b, double c, double d, double t) {
    return b + t / 2 * (c - a + t * (2 * a - 5 * b + 4 * c - d + t * (3 * (b - c) + d - a)));
  };
  std::vector<Place> course{through.front()};
  for (std::size_t i = 1; i < through.size(); ++i) {
    const Place &b = through[i - 1], &c = through[i];
    const Place &a = i > 1 ? through[i - 2] : b, &d = i + 1 < through.size() ? through[i + 1] : c;
    for (int piece = 1; piece <= pieces; ++piece) {
      const double t = double(piece) / pieces;
      course.push_back({blend(a.latitude, b.latitude, c.latitude, d.latitude, t),
                        blend(a.longitude, b.longitude, c.longitude, d.longitude, t)});
    }
  }
  return course;
}

VarloMap build() {
  VarloMap map;
  map.streets = streets();
  map.grounds = grounds();
  map.sights = sights();
  map.river = rounded({{45.2820, 9.9300},
                       {45.2620, 10.0100},
                       {45.2530, 10.0215},
                       {45.2475, 10.0290},
                       {45.2452, 10.0355},
                       {45.2441, 10.0412},
                       {45.2456, 10.0462},
                       {45.2484, 10.0500},
                       {45.2500, 10.0580},
                       {45.2490, 10.0700},
                       {45.2440, 10.0900},
                       {45.2400, 10.1800}});
  map.railway = rounded({{45.2500, 9.9300},
                         {45.2385, 10.0100},
                         {45.2345, 10.0340},
                         {45.2332, 10.0384},
                         {45.2300, 10.0436},
                         {45.2245, 10.0560},
                         {45.2150, 10.0800},
                         {45.1800, 10.1800}});
  for (auto& street : map.streets)
    if (street.kind == Street::Kind::provincial) street.course = rounded(street.course);
  Dice dice;
  std::vector<Flat> taken;
  for (const auto& street : map.streets) buildAlong(street, map, taken, dice);
  return map;
}

}  // namespace

const VarloMap& varloMap() {
  static const VarloMap map = build();
  return map;
}

Place offset(Place from, double north, double east) {
  return {from.latitude + north / metresADegree, from.longitude + east / metresAcross};
}

double metresBetween(Place a, Place b) {
  return std::hypot((a.latitude - b.latitude) * metresADegree,
                    (a.longitude - b.longitude) * metresAcross);
}

Place along(const std::vector<Place>& course, double share) {
  double left = 0;
  for (std::size_t i = 1; i < course.size(); ++i) left += metresBetween(course[i - 1], course[i]);
  left *= std::clamp(share, 0.0, 1.0);
  for (std::size_t i = 1; i < course.size(); ++i) {
    const double part = metresBetween(course[i - 1], course[i]);
    if (left <= part && part > 0) {
      const double t = left / part;
      return {course[i - 1].latitude + t * (course[i].latitude - course[i - 1].latitude),
              course[i - 1].longitude + t * (course[i].longitude - course[i - 1].longitude)};
    }
    left -= part;
  }
  return course.back();
}

}  // namespace town
