// What Varlo looks like from above: streets, river, railway, parks, squares, houses.
//
// Invented, and in keeping with the addresses of the town's documents. Degrees of
// latitude and longitude; widths in metres. Made once, on first use; any thread.
#pragma once

#include <vector>

namespace town {

struct Place {
  double latitude = 0, longitude = 0;
};

struct Street {
  enum class Kind { provincial, main, local, lane };
  const char* name;
  Kind kind;
  std::vector<Place> course;
};

struct Ground {
  enum class Kind { built, park, square, pitch, cemetery, church };
  const char* name;  // empty: nothing to be written on it
  Kind kind;
  std::vector<Place> outline;
};

struct Sight {  // a name at a point
  const char* name;
  Place at;
  bool settlement;
};

struct House {
  Place corners[4];
};

struct VarloMap {
  std::vector<Street> streets;
  std::vector<Place> river, railway;
  std::vector<Ground> grounds;
  std::vector<Sight> sights;
  std::vector<House> houses;
};

const VarloMap& varloMap();
inline constexpr Place kVarloCentre{45.2380, 10.0420};

// The place so many metres to the north and to the east of another.
Place offset(Place from, double north, double east);
// Metres, on the flat: good for a town.
double metresBetween(Place a, Place b);
// Along a course, `share` (0 to 1) of its length.
Place along(const std::vector<Place>& course, double share);

}  // namespace town
