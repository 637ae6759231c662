// KesJSONGenerator: the system's containers into JSON text.
//
// A plain member or local, which shares the containers of its root; each call writes what
// they hold then. Keys are written by their description, so numbers become text; the order
// of keys means nothing. A fraction is the shortest text that reads as the same number.
// Throws "JSON was not initialized." without a root, and "Error writing JSON: %@" for what
// JSON has no form for: a custom type, bytes, a number that is not finite, half of a
// surrogate pair, a map that holds itself. Main thread.
#pragma once

#include "runtime/core/list.h"
#include "runtime/core/map.h"

namespace kes {

class KesJSONGenerator final : public Object, public ByValue {
 public:
  std::string_view className() const override { return "KesJSONGenerator"; }

  void Initialize(const KesMap& root) { root_ = Value(root); }
  void Initialize2(const KesList& root) { root_ = root.objectOrNull(); }
  Text ToString() const { return generate(false); }
  // One value a line; the indent asked for changes nothing.
  Text ToPrettyString(std::int32_t indent) const;

 private:
  Text generate(bool pretty) const;
  Value root_;
};

}  // namespace kes
