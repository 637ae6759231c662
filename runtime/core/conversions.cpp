#include "runtime/core/array.h"
#include "runtime/core/kes.h"
#include "runtime/core/list.h"
#include "runtime/core/number_text.h"

namespace kes {

Text formatText(std::string_view format, std::initializer_list<std::string_view> pieces) {
  std::string out;
  auto piece = pieces.begin();
  for (std::size_t at = 0;;) {
    const std::size_t hole = piece == pieces.end() ? std::string_view::npos : format.find("%@", at);
    out.append(format.substr(at, hole == std::string_view::npos ? hole : hole - at));
    if (hole == std::string_view::npos) return Text(out);
    out.append(*piece++);
    at = hole + 2;
  }
}

Text Kes::ObjectToString(const Value& v) { return v.description(); }

Value Kes::ObjectToNumber(const Value& v) {
  if (v.isNumber()) return v;
  const Text text = v.description();
  const auto read = detail::scanDouble(text);
  if (read && read->value != 0) return read->value;
  // Only the first character tells a written zero from what is no number at all.
  if (text.StartsWith(".") || text.StartsWith("0")) return 0.0;
  throw KesException(formatText("Cannot parse: %@", {text}));
}

std::int64_t Kes::ObjectToLongNumber(const Value& v) {
  return v.isNumber() ? v.asInt64() : detail::scanInteger(v.description());
}

bool Kes::ObjectToBoolean(const Value& v) {
  return v.isNumber() ? v.asBool() : v.description() == "true";
}

char16_t Kes::ObjectToChar(const Value& v) {
  if (v.isNumber()) return static_cast<char16_t>(v.asInt64());
  const Text text = v.description();
  return text.empty() ? u'\0' : text.CharAt(0);
}

Text Kes::CharToString(char16_t c) { return Text::fromUnit(c); }

Text Kes::BooleanToString(bool b) { return b ? "true" : "false"; }

Text Kes::NumberToString(const Value& number) {
  if (number.numberType() == NumberType::Float)
    return detail::floatText(static_cast<float>(number.asDouble()));
  if (number.isFloating()) return detail::doubleText(number.asDouble());
  if (number.numberType() == NumberType::UnsignedLongLong)
    return std::to_string(static_cast<std::uint64_t>(number.asInt64()));
  return std::to_string(number.asInt64());
}

bool Kes::IsLong(const Value& number) {
  if (!number.isNumber()) return false;
  const auto type = number.numberType();
  return type == NumberType::LongLong || type == NumberType::UnsignedLongLong ||
         type == NumberType::Long;
}

Value Kes::ArrayToList(const Value& array) {
  const auto a = array.as<KesArray>();
  if (!a) return {};
  if (a->isBytes()) throw KesException("Cannot convert array of bytes to List.");
  if (!a->store()) return {};
  return KesObjectWrapper::createWrapper(KesList(), a->store());
}

int Kes::switchObjectToInt(const Value& v, Args cases) {
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
