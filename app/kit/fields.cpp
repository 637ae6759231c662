#include "app/kit/fields.h"

#include "runtime/core/array.h"
#include "runtime/core/kes.h"

namespace varlo {

namespace {

[[noreturn]] void fail(std::string_view key, std::string_view wanted, const Value& found) {
  std::string message = "\"" + std::string(key) + "\" is ";
  message += found.isNil() ? "missing" : "not " + std::string(wanted) + " but ";
  if (!found.isNil()) message += kindOf(found);
  throw KesException(message);
}

bool isBlank(const Text& text) {
  return text.view().find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace

bool isMap(const Value& v) { return v.as<KesMap>() || v.as<Dictionary>(); }

bool isList(const Value& v) { return v.as<KesList>() || v.as<ArrayStore>() || v.as<KesArray>(); }

std::string_view kindOf(const Value& v) {
  if (v.isNilOrNull()) return "null";
  if (v.isText()) return "a text";
  if (v.isNumber()) return "a number";
  if (isMap(v)) return "a map";
  return isList(v) ? "a list" : "an object";
}

Text textOf(const KesMap& map, std::string_view key) {
  const Value v = map.Get(key);
  if (v.isNilOrNull()) return {};
  if (v.isObject()) fail(key, "a text", v);
  return Kes::ObjectToString(v);
}

Text nameOf(const KesMap& map, std::string_view key) {
  const Text name = textOf(map, key);
  if (isBlank(name)) throw KesException("\"" + std::string(key) + "\" is missing");
  return name;
}

double numberOf(const KesMap& map, std::string_view key) {
  const Value v = map.Get(key);
  if (!v.isNumber() && !v.isText()) fail(key, "a number", v);
  return Kes::ObjectToNumber(v).asDouble();
}

KesMap mapOf(const KesMap& map, std::string_view key) {
  const Value v = map.Get(key);
  if (!isMap(v)) fail(key, "a map", v);
  return KesMap::fromBoxed(v);
}

KesList listOf(const KesMap& map, std::string_view key) {
  const Value v = map.Get(key);
  if (!isList(v)) fail(key, "a list", v);
  return KesList::fromBoxed(v);
}

}  // namespace varlo
