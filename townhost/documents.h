// The catalogue of what the town publishes: a path, a type, and a maker that
// writes the text for the moment it is asked.
//
// Owned by the TownHost. Any thread may look up, add or remove at any time; a
// maker runs on the thread that asks and has to be safe for that.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "townhost/civil_time.h"

namespace town {

// What a maker may look at.
struct Occasion {
  Instant now = 0;
  std::string path;
  std::multimap<std::string, std::string> query;
};

struct Document {
  std::string type;
  std::string text;
};

class Documents {
 public:
  // Nothing where the town has no such document on that occasion.
  using Maker = std::function<std::optional<std::string>(const Occasion&)>;
  // The names of a folder's files at a moment.
  using Names = std::function<std::vector<std::string>(Instant)>;

  // A later entry for the same path takes the place of the earlier one.
  void add(std::string path, std::string type, Maker maker);
  void addFixed(std::string path, std::string type, std::string text);
  // Files that come and go with the day, below a folder (with its slash at the end). `names`
  // are those that stand there; the maker may know older ones too.
  void addFolder(std::string folder, std::string type, Names names, Maker maker);
  void remove(const std::string& path);
  std::vector<std::string> paths(Instant now) const;

  // Nothing where the town has no such document. What a maker throws goes on.
  std::optional<Document> make(const Occasion& occasion) const;

 private:
  struct Entry {
    std::string type;
    Maker maker;
    Names names;  // of a folder
  };
  std::shared_ptr<const Entry> entry(const std::string& path) const;

  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<const Entry>> entries_;
};

inline constexpr const char* kJsonType = "application/json; charset=utf-8";

// The content type that goes with a path's extension.
std::string typeOfPath(std::string_view path);

}  // namespace town
