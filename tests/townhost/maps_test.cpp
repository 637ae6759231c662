// The thematic maps and the tiles under them.
#include <gmock/gmock.h>

#include <cmath>

#include "support.h"
#include "townhost/map/map_documents.h"

namespace town {
namespace {

using rapidjson::Value;
using test::get;
using test::json;

bool passes(const Value& row, const Value& description) {
  if (!description.HasMember("FILTER")) return true;
  for (const auto& filter : description["FILTER"].GetArray())
    if (row[filter["FIELD"].GetString()] == filter["VALUE"]) return true;
  return false;
}

TEST(TownMaps, TheCatalogueHasMapsOfEveryKind) {
  TownHost host;
  const auto catalogue = json(get(host, "/InfoVarlo/mappe/master/mappe.json").body());
  EXPECT_GE(catalogue.Size(), 6u);
  int filtered = 0, plain = 0, large = 0;
  for (const auto& map : catalogue.GetArray()) {
    const std::string name = map["Nome"].GetString(), address = map["URL"].GetString();
    ASSERT_EQ(address.find(host.url()), 0u) << name;
    const std::string text = get(host, address.substr(host.url().size())).body();
    const auto rows = json(text);
    filtered += map.HasMember("FILTER");
    plain += !map.HasMember("SNIPPET");
    if (rows.Size() == 5000) {
      ++large;
      EXPECT_NEAR(static_cast<double>(text.size()), 2e6, 2e5);
    }
    unsigned shown = 0;
    for (const auto& row : rows.GetArray()) {
      if (!passes(row, map)) continue;
      ++shown;
      EXPECT_TRUE(!map.HasMember("SNIPPET") || row.HasMember(map["SNIPPET"].GetString())) << name;
    }
    EXPECT_GT(shown, 3u) << name;
    EXPECT_EQ(shown < rows.Size(), map.HasMember("FILTER")) << name;
  }
  EXPECT_EQ(filtered, 1);
  EXPECT_EQ(plain, 1);
  EXPECT_EQ(large, 1);
}

// Width and height as the picture's own header has them; 0 where it is no such picture.
std::pair<int, int> pngSize(const std::string& bytes) {
  if (bytes.size() < 24 || bytes.compare(1, 3, "PNG") != 0) return {0, 0};
  const auto number = [&](std::size_t at) {
    int n = 0;
    for (std::size_t i = 0; i < 4; ++i) n = n * 256 + static_cast<unsigned char>(bytes[at + i]);
    return n;
  };
  return {number(16), number(20)};
}

TEST(TownMaps, TilesAreSquaresOfTheWorldsGridAndNothingElse) {
  TownHost host;
  EXPECT_EQ(pngSize(get(host, "/tiles/15/17298/11774.png").body()), std::pair(256, 256));
  EXPECT_EQ(pngSize(get(host, "/tiles/15/17298/11774@2x.png").body()), std::pair(512, 512));
  EXPECT_EQ(pngSize(get(host, "/tiles/0/0/0.png").body()), std::pair(256, 256));
  for (const char* none :
       {"/tiles/15/17298.png", "/tiles/15/17298/11774", "/tiles/15/17298/11774@3x.png",
        "/tiles/21/0/0.png", "/tiles/-1/0/0.png", "/tiles/3/8/0.png", "/tiles/3/0/-1.png",
        "/tiles/3/0/x.png", "/tiles/3//1.png", "/tiles/99999999999/0/0.png", "/tiles/.png"})
    EXPECT_EQ(get(host, none).status(), 404) << none;
}

// The town is on the tile that its coordinates fall on, and what is drawn there is more
// than the fields around it.
TEST(TownMaps, TheTownStandsWhereItsCoordinatesSay) {
  TownHost host;
  const auto tile = [&](double latitude, double longitude) {
    const double n = 1 << 16, pi = 3.14159265358979;
    const double y = std::asinh(std::tan(latitude * pi / 180)) / pi;
    return get(host, "/tiles/16/" + std::to_string(int((longitude + 180) / 360 * n)) + "/" +
                         std::to_string(int((1 - y) / 2 * n)) + ".png")
        .body();
  };
  EXPECT_GT(tile(45.2380, 10.0411).size(), 4 * tile(45.2200, 10.0100).size());
}

}  // namespace
}  // namespace town
