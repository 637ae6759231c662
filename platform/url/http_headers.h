// The header fields of one HTTP message, in the order in which they came.
//
// A plain value, used by one thread at a time. Names are found whatever their case; set()
// replaces, add() joins a repeated field to the former one with ", ". Nothing here throws
// but bad_alloc.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

class HttpHeaders {
 public:
  void set(std::string_view name, std::string_view value);
  void add(std::string_view name, std::string_view value);
  void remove(std::string_view name);
  // Removes all but those whose names the predicate wants.
  void keep(bool (*wanted)(std::string_view name));
  void clear() { fields_.clear(); }

  // The field's value, or null when there is none.
  const std::string* find(std::string_view name) const;

  bool empty() const { return fields_.empty(); }
  std::size_t size() const { return fields_.size(); }
  auto begin() const { return fields_.begin(); }
  auto end() const { return fields_.end(); }

  static bool sameName(std::string_view a, std::string_view b);
  // Whether the field may go on the wire: the name a token, the value on one line.
  static bool isSendable(std::string_view name, std::string_view value);
  // Whether the text holds no control character but tabs.
  static bool isOneLine(std::string_view text);

 private:
  std::string* slot(std::string_view name);

  std::vector<std::pair<std::string, std::string>> fields_;
};

// Whether the text is a token of HTTP, as methods and field names are.
bool isHttpToken(std::string_view s);

}  // namespace platform
