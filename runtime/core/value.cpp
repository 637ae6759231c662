#include "runtime/core/value.h"

#include <cmath>
#include <limits>

#include "runtime/core/described.h"
#include "runtime/core/kes.h"
#include "runtime/core/object.h"
#include "runtime/core/wrapper.h"

namespace kes {

std::int64_t Value::floatAsInt64() const noexcept {
  if (!isFloating()) return 0;
  const double d = c_.get<double>();
  if (std::isnan(d)) return 0;
  if (d >= 9223372036854775807.0) return std::numeric_limits<std::int64_t>::max();
  if (d <= -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(d);
}

double Value::asDouble() const noexcept {
  if (!isNumber()) return 0;
  if (isFloating()) return c_.get<double>();
  if (numberType() == NumberType::UnsignedLongLong)
    return static_cast<double>(c_.get<std::uint64_t>());
  return static_cast<double>(c_.get<std::int64_t>());
}

std::string_view Value::className() const {
  if (isObject()) return object()->className();
  if (isNumber()) return "NSNumber";
  if (isText()) return "NSString";
  return isNull() ? "NSNull" : "";
}

Text Value::description() const {
  if (isText()) return asText();
  if (isNumber()) return Kes::NumberToString(*this);
  if (isNil()) return "null";
  if (isNull()) return "<null>";
  if (auto* o = dynamic_cast<Object*>(object())) return o->description();
  if (auto* d = dynamic_cast<Described*>(object())) return d->description();
  return "<" + std::string(object()->className()) + ">";
}

bool Value::isEqual(const Value& o) const {
  if (isNumber() && o.isNumber()) {
    if (isFloating() || o.isFloating()) return asDouble() == o.asDouble();
    return asInt64() == o.asInt64();
  }
  if (isText() && o.isText()) return textView() == o.textView();
  if (isObject()) {
    if (o.isObject() && object() == o.object()) return true;
    if (auto* mine = dynamic_cast<Object*>(object())) return mine->isEqual(o);
    // A platform object equals a wrapper that holds it.
    if (auto w = o.as<KesObjectWrapper>()) return w->objectOrNull().object() == object();
    return false;
  }
  if (o.isObject()) return o.isEqual(*this);
  return isNil() == o.isNil() && isNull() == o.isNull() && !isNumber() && !o.isNumber() &&
         !isText() && !o.isText();
}

std::size_t Value::hash() const {
  if (isText()) return std::hash<std::string_view>()(textView());
  if (isNumber()) {
    // Equal numbers of different types hash alike.
    const double d = asDouble();
    return std::hash<double>()(d == 0 ? 0.0 : d);
  }
  if (auto* o = dynamic_cast<Object*>(object())) return o->hash();
  return std::hash<const void*>()(object());
}

}  // namespace kes
