// Conversions between values, by the fixed locale "en_US". Any thread. ObjectToNumber throws
// "Cannot parse: %@", ArrayToList "Cannot convert array of bytes to List."
#pragma once

#include "runtime/core/value.h"

namespace kes {

struct Conversions {
  static Text ObjectToString(const Value& v);
  static Value ObjectToNumber(const Value& v);
  static std::int64_t ObjectToLongNumber(const Value& v);
  static bool ObjectToBoolean(const Value& v);
  static char16_t ObjectToChar(const Value& v);
  static Text CharToString(char16_t c);
  static Text BooleanToString(bool b);
  static Text NumberToString(const Value& number);
  static bool IsLong(const Value& number);
  static Value ArrayToList(const Value& array);  // a KesList, or nil
  // Index of the first case that the value matches, or -1.
  static int switchObjectToInt(const Value& v, Args cases);
};

}  // namespace kes
