// Period: the record "_period" of calendar differences. A plain shared record, held by
// Ref; each field counts its own unit and may be negative. Main thread; throws nothing.
#pragma once

#include "runtime/core/class_table.h"

namespace kes {

class Period final : public Object {
 public:
  static void describe(ClassBuilder<Period>& c);
  // A new one, initialised, for use in one expression.
  static Ref<Period> ofDays(std::int32_t days);

  void Initialize();
  Text description() const override;

  bool IsInitialized = false;
  std::int32_t Years = 0;
  std::int32_t Months = 0;
  std::int32_t Days = 0;
  std::int32_t Hours = 0;
  std::int32_t Minutes = 0;
  std::int32_t Seconds = 0;
};

}  // namespace kes
