#include "runtime/core/conversions.h"

#include "runtime/core/array.h"
#include "runtime/core/exception.h"
#include "runtime/core/list.h"
#include "runtime/core/text/number_text.h"

namespace kes {

Text Conversions::ObjectToString(const Value& v) { return v.description(); }

Value Conversions::ObjectToNumber(const Value& v) {
  if (v.isNumber()) return v;
  const Text text = v.description();
  const auto read = detail::scanDouble(text);
  if (read && read->value != 0) return read->value;
  // Only the first character tells a written zero from what is no number at all.
  if (text.StartsWith(".") || text.StartsWith("0")) return 0.0;
  throw KesException(formatText("Cannot parse: %@", {text}));
}

std::int64_t Conversions::ObjectToLongNumber(const Value& v) {
  return v.isNumber() ? v.asInt64() : detail::scanInteger(v.description());
}

bool Conversions::ObjectToBoolean(const Value& v) {
  return v.isNumber() ? v.asBool() : v.description() == "true";
}

char16_t Conversions::ObjectToChar(const Value& v) {
  if (v.isNumber()) return static_cast<char16_t>(v.asInt64());
  const Text text = v.description();
  return text.empty() ? u'\0' : text.CharAt(0);
}

Text Conversions::CharToString(char16_t c) { return Text::fromUnit(c); }

Text Conversions::BooleanToString(bool b) { return b ? "true" : "false"; }

Text Conversions::NumberToString(const Value& number) {
  if (number.numberType() == NumberType::Float)
    return detail::floatText(static_cast<float>(number.asDouble()));
  if (number.isFloating()) return detail::doubleText(number.asDouble());
  if (number.numberType() == NumberType::UnsignedLongLong)
    return std::to_string(static_cast<std::uint64_t>(number.asInt64()));
  return std::to_string(number.asInt64());
}

bool Conversions::IsLong(const Value& number) {
  if (!number.isNumber()) return false;
  const auto type = number.numberType();
  return type == NumberType::LongLong || type == NumberType::UnsignedLongLong ||
         type == NumberType::Long;
}

Value Conversions::ArrayToList(const Value& array) {
  const auto a = array.as<KesArray>();
  if (!a) return {};
  if (a->isBytes()) throw KesException("Cannot convert array of bytes to List.");
  if (!a->store()) return {};
  return KesObjectWrapper::createWrapper(KesList(), a->store());
}

int Conversions::switchObjectToInt(const Value& v, Args cases) {
  const double number = v.asDouble();
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const Value& c = cases[i];
    bool match = false;
    if (!v.isNumber()) {
      match = !v.isNil() && v.isEqual(c);
    } else if (c.isNumber()) {
      match = c.asDouble() == number;
    } else if (c.isText() && number != 0) {  // any text would read as 0
      const auto read = detail::scanDouble(c.textView());
      match = read && read->value == number;
    }
    if (match) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace kes
