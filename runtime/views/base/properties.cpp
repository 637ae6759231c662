#include "runtime/views/base/properties.h"

#include <cmath>

namespace kes {

namespace props {

const Value& value(const Dictionary& map, std::string_view key) {
  static const Value nil;
  const Value* found = map.find(key);
  return found ? *found : nil;
}

std::int32_t integer(const Dictionary& map, std::string_view key) {
  return static_cast<std::int32_t>(value(map, key).asInt64());
}

float number(const Dictionary& map, std::string_view key) {
  const auto v = static_cast<float>(value(map, key).asDouble());
  return std::isfinite(v) ? v : 0;
}

bool flag(const Dictionary& map, std::string_view key) { return value(map, key).asBool(); }

Text text(const Dictionary& map, std::string_view key) { return value(map, key).asText(); }

// The text of what is set in an icon's font stands in the map of the font.
Text ownText(const Dictionary& map) {
  if (const auto font = props::map(map, "font")) {
    const Text face = text(*font, "fontName");
    const char* icon = face == "FontAwesome"      ? "fontAwesome"
                       : face == "Material Icons" ? "materialIcons"
                                                  : nullptr;
    if (icon && value(*font, icon).isText()) return text(*font, icon);
  }
  return text(map, "text");
}

Text shownText(const Dictionary& map) {
  Text own = ownText(map);
  return own.empty() ? text(map, "name") : own;
}

bool isRoot(const Dictionary& map) { return value(map, "name").textView() == "Main"; }

std::string string(const Dictionary& map, std::string_view key) {
  return std::string(value(map, key).textView());
}

Ref<Dictionary> map(const Dictionary& map, std::string_view key) {
  return value(map, key).as<Dictionary>();
}

std::int32_t color(const Dictionary& map, std::string_view key) { return integer(map, key); }

std::optional<ui::Color> buildColor(const Dictionary& map, std::string_view key) {
  return KesColorToUIColor(color(map, key));
}

Ref<Dictionary> deepCopy(const Dictionary& map) {
  auto copy = platform::makeShared<Dictionary>();
  for (const auto& [key, value] : map.entries()) {
    const auto inner = value.as<Dictionary>();
    copy->put(key, inner ? Value(deepCopy(*inner)) : value);
  }
  return copy;
}

}  // namespace props

std::optional<ui::Color> KesColorToUIColor(std::int32_t argb) {
  if (argb == props::kKeepColor) return std::nullopt;
  return ColorToUIColor(argb);
}

}  // namespace kes
