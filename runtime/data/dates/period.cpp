#include "runtime/data/dates/period.h"

#include "runtime/core/language/common.h"

namespace kes {

void Period::describe(ClassBuilder<Period>& c) {
  c.name("_period");
  c.storedField<&Period::IsInitialized>("_IsInitialized");
  c.storedField<&Period::Years>("_Years");
  c.storedField<&Period::Months>("_Months");
  c.storedField<&Period::Days>("_Days");
  c.storedField<&Period::Hours>("_Hours");
  c.storedField<&Period::Minutes>("_Minutes");
  c.storedField<&Period::Seconds>("_Seconds");
}

Ref<Period> Period::ofDays(std::int32_t days) {
  auto p = platform::makeShared<Period>();
  p->Initialize();
  p->Days = days;
  return p;
}

void Period::Initialize() {
  IsInitialized = true;
  Years = Months = Days = Hours = Minutes = Seconds = 0;
}

Text Period::description() const { return KesCommon::TypeToString(*this, false); }

}  // namespace kes
