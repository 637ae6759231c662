// The pictures of the town's pages, all drawn by this host: scenes, boards and badges of
// restaurants, price lists. PNG files, made when they are first asked for and
// kept. Owned by the TownHost's documents; any thread.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "townhost/documents.h"

namespace town {

class Gallery {
 public:
  // Adds a picture under its path, to the documents too.
  void add(Documents& documents, const std::string& path, std::function<std::string()> draw);
  // The file, as it is served; "" for a path that was not added.
  std::string file(const std::string& path);

 private:
  struct Drawn {
    std::function<std::string()> draw;
    std::once_flag once;
    std::string png;
  };
  std::mutex mutex_;
  std::map<std::string, Drawn> pictures_;
};

// The first letters of a name in a coloured disc.
std::string drawBadge(const std::string& name, unsigned color);

struct BoardLine {
  std::string text, price;  // a heading where the price is empty
};
// Chalk on a board, or ink on paper.
std::string drawBoard(const std::string& title, const std::vector<BoardLine>& lines, bool chalk);

}  // namespace town
