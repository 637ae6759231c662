#include "checker/places.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace check {

namespace {

constexpr double kTownRadius = 15;  // km
constexpr std::size_t kFewest = 3;  // pharmacies that make a middle

double kilometres(Place a, Place b) {
  constexpr double kDegree = 111.2;
  const double north = (a.latitude - b.latitude) * kDegree;
  const double east =
      (a.longitude - b.longitude) * kDegree * std::cos(a.latitude * std::numbers::pi / 180);
  return std::hypot(north, east);
}

double median(std::vector<double>& v) {
  const auto middle = v.begin() + static_cast<std::ptrdiff_t>(v.size() / 2);
  std::nth_element(v.begin(), middle, v.end());
  return *middle;
}

}  // namespace

Places::Places(TownReader& town) : town_(town) {
  std::vector<double> latitudes, longitudes;
  town.eachOf(kPharmacies, [&](const Json& pharmacy, int) {
    const Json* a = member(pharmacy, "Latitudine");
    const Json* b = member(pharmacy, "Longitudine");
    if (!a || !b || !a->IsNumber() || !b->IsNumber()) return;
    latitudes.push_back(a->GetDouble());
    longitudes.push_back(b->GetDouble());
  });
  // One pharmacy with its numbers exchanged must not move the town.
  if (latitudes.size() >= kFewest) middle_ = Place{median(latitudes), median(longitudes)};
}

void Places::check(const TownReader::Where& where, const Json& holder, const std::string& latitude,
                   const std::string& longitude, bool texts) {
  const Json* a = member(holder, latitude);
  const Json* b = member(holder, longitude);
  if (!middle_ || !a || !b) return;
  Place place;
  if (!readNumber(*a, place.latitude) || !readNumber(*b, place.longitude)) return;
  if (!texts && (!a->IsNumber() || !b->IsNumber())) return;
  if (std::abs(place.latitude) > 90 || std::abs(place.longitude) > 180) return;
  const double far = kilometres(*middle_, place);
  if (far <= kTownRadius) return;
  const auto km = std::to_string(static_cast<long>(std::lround(far)));
  town_.add({where.document, where.record, latitude + ", " + longitude},
            {"è a " + km + " km dal paese", "it is " + km + " km from the town"},
            {"un punto del paese; latitudine e longitudine sono scambiate?",
             "a place in the town; are latitude and longitude exchanged?"},
            {"la mappa mostra un altro luogo", "the map shows another place"});
}

}  // namespace check
