#include "runtime/data/register_data.h"

#include "runtime/core/class_table.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/data/dates/period.h"
#include "runtime/data/store/key_value_store.h"

namespace kes {

void registerData() {
  ClassRegistry::instance().addAll<Period, kes_dateutils, kes_keyvaluestore>();
}

}  // namespace kes
