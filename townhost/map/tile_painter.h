// Map tiles of Varlo: squares of the Web Mercator grid, painted from the town's map.
//
// The look follows the zoom: fields, river and roads from afar, houses and the names of
// streets from near. A name is set down whole or not at all, for all tiles alike, so that
// none is cut at an edge. Any thread; painted tiles are kept, up to a number.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace town {

struct TileAddress {
  int zoom = 0, x = 0, y = 0;
  int scale = 1;  // 2: twice as many pixels for the same square
};

// "/tiles/<zoom>/<x>/<y>.png", "…@2x.png"; nothing where the grid has no such tile.
std::optional<TileAddress> tileAddress(std::string_view path);

class TilePainter {
 public:
  TilePainter();
  ~TilePainter();
  std::string png(const TileAddress& tile);

 private:
  static constexpr std::size_t kept = 512;
  struct Names;
  const Names& names(int zoom);

  std::mutex mutex_;
  std::unordered_map<std::string, std::string> tiles_;
  std::deque<std::string> order_;
  std::unordered_map<int, std::unique_ptr<Names>> names_;  // by zoom
};

}  // namespace town
