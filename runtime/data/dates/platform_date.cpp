#include "runtime/data/dates/platform_date.h"

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include "runtime/data/dates/icu_text.h"

namespace kes {

Text PlatformDate::description() const {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat format("yyyy-MM-dd HH:mm:ss '+0000'", icu::Locale::getRoot(), status);
  icu::UnicodeString out;
  if (U_SUCCESS(status)) {
    format.adoptTimeZone(icu::TimeZone::getGMT()->clone());
    format.format(seconds_ * 1000, out);
  }
  return fromIcu(out);
}

bool PlatformDate::isEqual(const Value& other) const {
  const auto date = other.as<PlatformDate>();
  return date && date->seconds_ == seconds_;
}

}  // namespace kes
