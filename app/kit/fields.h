// Reading the fields of the town's documents.
#pragma once

#include "runtime/core/kes.h"
#include "runtime/core/map.h"

namespace varlo {

// A field as text. What a document leaves out, or gives as null, reads as nothing: a
// citizen has no use for the word.
inline kes::Text textOf(const kes::KesMap& map, const char* key) {
  const kes::Value v = map.Get(key);
  return v.isNilOrNull() ? kes::Text() : kes::Kes::ObjectToString(v);
}

}  // namespace varlo
