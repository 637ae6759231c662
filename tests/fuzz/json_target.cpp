// A text as one JSON document.
#include "runtime/data/json/json_parser.h"
#include "target.h"

void fuzz::json(Bytes input) {
  const auto text = kes::Text::fromUtf8(textOf(input));
  if (!text) return;
  kes::KesJSONParser parser;
  parser.Initialize(*text);
  accepts([&] {
    const auto tree = parser.NextObject();
    require(tree.isObject(), "a document is a map or an array");
    require(tree == parser.NextObject(), "two readings of one text agree");
  });
  accepts([&] { parser.NextArray(); });
}
