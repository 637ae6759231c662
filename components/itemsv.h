// One item of a search view. Shared by whoever holds it; main thread.
#pragma once

#include "runtime/core/class_table.h"
#include "runtime/core/object.h"

namespace kes {

class itemsv final : public Object {
 public:
  static void describe(ClassBuilder<itemsv>& c) {
    c.name("_itemsv");
    c.field<&itemsv::text>("Text");
    c.field<&itemsv::value>("Value");
  }
  static Ref<itemsv> of(Text text, Value value) {
    auto item = platform::makeShared<itemsv>();
    item->text = std::move(text);
    item->value = std::move(value);
    return item;
  }

  Text text;    // what is shown and searched
  Value value;  // given back when it is chosen
};

}  // namespace kes
