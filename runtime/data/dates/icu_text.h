// Between our texts and ICU's. Any thread. Included by sources only: no header of ours
// shows ICU.
#pragma once

#include <unicode/unistr.h>

#include <string>

#include "runtime/core/text.h"

namespace kes {

inline icu::UnicodeString toIcu(std::string_view utf8) {
  return icu::UnicodeString::fromUTF8({utf8.data(), static_cast<std::int32_t>(utf8.size())});
}

inline Text fromIcu(const icu::UnicodeString& s) {
  std::string utf8;
  s.toUTF8String(utf8);
  return utf8;
}

}  // namespace kes
