// Orders values by keys of one kind. A key of another kind than asked is read as 0 or by
// its text form, so that a mixed list comes out in some order but never fails. Equal
// keys keep no order. Any thread, each call on values of its own; throws nothing.
#pragma once

#include <vector>

#include "runtime/core/value.h"

namespace kes {

enum class SortKind { Numbers, Texts, FoldedTexts };

// keys[i] belongs to items[i]; they may be the same vector.
void sortValues(std::vector<Value>& items, const std::vector<Value>& keys, SortKind kind,
                bool ascending);

}  // namespace kes
