// _sorttype: a record by whose fields a list can be sorted: SortType("KEY", ascending).
// A plain shared record, held by Ref. Main thread.
#pragma once

#include "runtime/core/class_table.h"

namespace varlo {

using namespace kes;

class _sorttype final : public Object {
 public:
  static void describe(ClassBuilder<_sorttype>& c);

  void Initialize();
  Text description() const override;
  // A record that is filled already.
  static Ref<_sorttype> of(Text key, Text title, kes::Value value);

  bool IsInitialized = false;
  Text KEY;
  Text Title;
  kes::Value Value;
};

}  // namespace varlo
