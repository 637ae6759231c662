// A layout as the tools hold it between source text and bytes: variants and a tree of
// typed entries, in the order in which they stand in the file. Plain values, any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace layouts {

struct Map;

struct Color {
  std::uint32_t argb = 0;
  bool operator==(const Color&) const = default;
};

using Value =
    std::variant<std::int32_t, std::string, bool, Color, float, double, std::unique_ptr<Map>>;

struct Entry {
  std::string key;
  Value value;
};

struct Map {
  std::vector<Entry> entries;

  const Value* find(std::string_view key) const {
    for (const auto& e : entries)
      if (e.key == key) return &e.value;
    return nullptr;
  }
  const Map* map(std::string_view key) const {
    const Value* v = find(key);
    const auto* inner = v ? std::get_if<std::unique_ptr<Map>>(v) : nullptr;
    return inner ? inner->get() : nullptr;
  }
  Map& addMap(std::string key) {
    auto inner = std::make_unique<Map>();
    Map& added = *inner;
    entries.push_back({std::move(key), std::move(inner)});
    return added;
  }
};

struct Variant {
  std::int32_t width = 0, height = 0;  // points
  bool operator==(const Variant&) const = default;
};

struct Layout {
  std::vector<Variant> variants;
  Map root;
};

// What is wrong with a source or a file; what() says where.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace layouts
