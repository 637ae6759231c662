#include "runtime/data/register_data.h"

#include "runtime/core/class_table.h"
#include "runtime/core/common.h"
#include "runtime/data/date_time.h"
#include "runtime/data/dateutils.h"
#include "runtime/data/key_value_store.h"
#include "runtime/data/period.h"

namespace kes {

void registerData() {
  ClassRegistry::instance().addAll<Period, kes_dateutils, kes_keyvaluestore>();
  KesCommon::shared().dateText = [](std::string_view kind, std::int64_t ticks) {
    return kind == "time" ? DateTime().Time(ticks) : DateTime().Date(ticks);
  };
}

}  // namespace kes
