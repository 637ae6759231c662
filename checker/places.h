// Whether places lie in the town, which is where half of its pharmacies are. One thread.
#pragma once

#include <optional>

#include "checker/town_reader.h"

namespace check {

struct Place {
  double latitude = 0, longitude = 0;  // degrees
};

class Places {
 public:
  // Knows the town once the pharmacies were read; three of them have to say where they are.
  explicit Places(TownReader& town);

  // `texts`: numbers in quotes count too. What is no place at all is the shapes' affair.
  void check(const TownReader::Where& where, const Json& holder, const std::string& latitude,
             const std::string& longitude, bool texts);

 private:
  TownReader& town_;
  std::optional<Place> middle_;
};

}  // namespace check
