// Reading a view's properties from the map that a layout file gave.
//
// A key that is missing or holds another kind of value reads as 0, false, the empty text
// or no map. Numbers that no view could use (not a number, infinite) read as 0. Main
// thread; nothing here throws.
#pragma once

#include <optional>

#include "platform/ui/values/color.h"
#include "runtime/core/dictionary.h"

namespace kes::props {

// The value as it stands; nil when missing.
const Value& value(const Dictionary& map, std::string_view key);
std::int32_t integer(const Dictionary& map, std::string_view key);
float number(const Dictionary& map, std::string_view key);
bool flag(const Dictionary& map, std::string_view key);
Text text(const Dictionary& map, std::string_view key);
// The character of an icon font, else "text".
Text ownText(const Dictionary& map);
// What a view with a text shows: the same, or its name.
Text shownText(const Dictionary& map);
// A view called "Main" is the root, which takes neither geometry nor border from the file.
bool isRoot(const Dictionary& map);
std::string string(const Dictionary& map, std::string_view key);
Ref<Dictionary> map(const Dictionary& map, std::string_view key);

// The colour that leaves a view's own as it is.
inline constexpr std::int32_t kKeepColor = static_cast<std::int32_t>(0xFFF0F8FF);
std::int32_t color(const Dictionary& map, std::string_view key);
// None for the reserved value.
std::optional<ui::Color> buildColor(const Dictionary& map, std::string_view key);

// A copy that shares no map with the original.
Ref<Dictionary> deepCopy(const Dictionary& map);

}  // namespace kes::props

namespace kes {

// Between the application's colour numbers and the platform's colours. The first gives
// none for the reserved value.
std::optional<ui::Color> KesColorToUIColor(std::int32_t argb);
inline ui::Color ColorToUIColor(std::int32_t argb) {
  return ui::Color(static_cast<std::uint32_t>(argb));
}
inline std::int32_t UIColorToColor(ui::Color color) {
  return static_cast<std::int32_t>(color.argb);
}

}  // namespace kes
