#include "runtime/core/convert.h"

#include <cxxabi.h>

#include <cstdlib>

#include "runtime/core/array.h"
#include "runtime/core/kes.h"

namespace kes::detail {

namespace {
std::string readable(const char* typeName) {
  int status = 0;
  char* plain = abi::__cxa_demangle(typeName, nullptr, nullptr, &status);
  std::string name = status == 0 && plain ? plain : typeName;
  std::free(plain);
  if (auto colon = name.rfind("::"); colon != std::string::npos) name.erase(0, colon + 2);
  return name;
}
}  // namespace

std::string typeName(const std::type_info& type) { return readable(type.name()); }

void failNumber(const Value& v) {
  throw KesException("Invalid object type",
                     formatText("Expected: NSNumber, object type: %@", {v.description()}));
}

void failObject(const char* expected, const Value& v) {
  throw KesException("Invalid object type", formatText("Expected: %@, object type: %@",
                                                       {readable(expected), v.className()}));
}

void failType(const char* typeCode) {
  throw KesException("Unsupported type", "Unsupported type " + readable(typeCode));
}

double numberOf(const Value& v) {
  if (!v.isText()) failNumber(v);
  return Kes::ObjectToNumber(v).asDouble();
}

std::int64_t integerOf(const Value& v) {
  if (!v.isText()) failNumber(v);
  const Value n = Kes::ObjectToNumber(v);
  return n.asInt64();
}

bool bytesOf(const Value& v, void* out, std::size_t size) {
  const auto array = v.as<KesArray>();
  if (!array || !array->isBytes() || array->bytesData().size() != size) return false;
  std::memcpy(out, array->bytesData().data(), size);
  return true;
}

Value bytesValue(const void* bytes, std::size_t size) {
  const auto* b = static_cast<const std::uint8_t*>(bytes);
  return KesArray::initBytesWithData(std::vector<std::uint8_t>(b, b + size));
}

}  // namespace kes::detail
