// Which views a layout can hold and which properties they have: the one table that the
// compiler checks sources against and the printer reads back. Any thread.
#pragma once

#include <optional>
#include <span>

#include "tools/layout_file.h"

namespace layouts {

enum class Kind { Integer, Float, Boolean, Color, Text, Font, Word, Free };

struct Property {
  std::string_view key;
  Kind kind;
  // Written when the source leaves it out; none where missing means the same.
  std::string_view fallback = {};
  // For Kind::Word: the words, each standing for its position.
  std::span<const std::string_view> words = {};
};

struct ViewType {
  std::string_view word;       // in the source
  std::string_view className;  // in the file
  bool holdsViews = false;
  std::vector<Property> properties;
};

const ViewType* typeByWord(std::string_view word);
const ViewType* typeByClass(std::string_view className);
// Of the layout itself and of its bar buttons.
const std::vector<Property>& rootProperties();
const std::vector<Property>& barButtonProperties();
bool isBarButton(std::string_view key);  // "topRight0" to "toolbar4"

const Property* findProperty(const std::vector<Property>& properties, std::string_view key);
// The words of all types, for messages.
std::string allTypeWords();

}  // namespace layouts
