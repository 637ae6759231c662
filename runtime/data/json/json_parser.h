// KesJSONParser: a whole JSON text into the system's containers, in one step.
//
// A plain member or local, which keeps the text; each call reads it anew into a tree of
// its own. An object becomes a read-only KesMap, an array inside a document a plain array that a
// KesList takes on, null the null object (not nil, and its key is there), true and false
// Boolean numbers, whole numbers 64-bit integers, others doubles. Of equal keys the last
// one wins. A text that is no JSON, or no object or array at the top, throws "Error
// parsing string: %@" with the reason and the position, which counts 16-bit units from 0.
// Nesting is limited by memory only. Any thread, one at a time.
#pragma once

#include "runtime/core/list.h"
#include "runtime/core/map.h"

namespace kes {

// What a parse gives: a value that a map can be initialised from.
struct JSONTree : Value {
  explicit JSONTree(Value v) : Value(std::move(v)) {}
  operator KesMap() const { return KesMap::fromBoxed(*this); }
};

class KesJSONParser final : public Object, public ByValue {
 public:
  std::string_view className() const override { return "KesJSONParser"; }

  void Initialize(Text text) { text_ = std::move(text); }
  // The map, or the array when the document is one. Each call parses anew.
  JSONTree NextObject() const;
  KesList NextArray() const;

 private:
  Text text_;
};

}  // namespace kes
