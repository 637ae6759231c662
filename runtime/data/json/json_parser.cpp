#include "runtime/data/json/json_parser.h"

#include "runtime/core/slab.h"
#include "runtime/data/json/json_reader.h"

namespace kes {

JSONTree KesJSONParser::NextObject() const {
  const auto text = text_.view();
  const detail::SlabScope slab(text.size() * 2);
  try {
    return JSONTree(JsonReader(text).read());
  } catch (const JsonError& e) {
    const auto at = detail::countUnits(text.substr(0, e.position));
    throw KesException(
        formatText("Error parsing string: %@ (at character %@)", {e.reason, std::to_string(at)}));
  }
}

KesList KesJSONParser::NextArray() const {
  KesList list;
  list.setObject(NextObject());
  return list;
}

}  // namespace kes
