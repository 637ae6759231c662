#include "runtime/data/dates/date_texts.h"

#include "runtime/core/language/common.h"
#include "runtime/data/dates/date_time.h"

namespace kes {

void lendDateTexts() {
  KesCommon::shared().dateText = [](std::string_view kind, std::int64_t ticks) {
    return kind == "time" ? DateTime().Time(ticks) : DateTime().Date(ticks);
  };
}

}  // namespace kes
