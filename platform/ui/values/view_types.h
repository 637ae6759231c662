// The small values that views are described with: what changed, border, shadow, the
// role that assistive technology is told.
#pragma once

#include <cstdint>

#include "platform/ui/values/color.h"
#include "platform/ui/values/geometry.h"

namespace ui {

// What changed in a view since its screen last asked (View::takeChanges). A new view
// has Created set, so a screen that keyed an item by address sees the difference.
enum class Change : std::uint16_t {
  None = 0,
  Geometry = 1,        // centre or size
  Children = 2,        // added, removed, reordered
  Appearance = 4,      // colours, alpha, hidden, border, shadow, clipping
  Content = 8,         // text, font, image, items, page to load
  State = 16,          // enabled, pressed, focused, value of a control
  Scroll = 32,         // offset or content size
  Accessibility = 64,  // role, name, what is hidden from assistive technology
  Created = 128,
  All = 255,
};
constexpr Change operator|(Change a, Change b) {
  return static_cast<Change>(static_cast<std::uint16_t>(a) | static_cast<std::uint16_t>(b));
}
constexpr bool has(Change set, Change part) {
  return (static_cast<std::uint16_t>(set) & static_cast<std::uint16_t>(part)) != 0;
}

struct Border {
  double width = 0;
  Color color;
  double radius = 0;
  bool operator==(const Border&) const = default;
};

struct Shadow {
  Color color{0xFF000000};
  Point offset;
  double opacity = 0;
  double blur = 3;
  bool rectangular = false;  // cast by the bounds rather than by what is drawn
  bool operator==(const Shadow&) const = default;
};

enum class Role : std::uint8_t {
  None,  // not an element of its own
  StaticText,
  Heading,
  Button,
  Link,
  Image,
  TextField,
  TextArea,
  Switch,
  Slider,
  Stepper,
  SegmentedControl,
  DatePicker,
  Picker,
  ProgressBar,
  ActivityIndicator,
  ListItem,
  WebContent,
  Dialog,
  Alert,
  Status,
  Map,
};

enum class Key {
  Tab,
  BackTab,
  Up,
  Down,
  Left,
  Right,
  Enter,
  Space,
  Escape,
  Back,
  PageUp,
  PageDown,
  Home,
  End,
  Menu,
};

// What a view does with a key while it has the focus.
enum class KeyUse : std::uint8_t {
  None,    // nothing: it moves the focus, scrolls, leads back
  Used,    // it has done something with it
  Editor,  // it is for the screen's own editor
};

// Numbered as the touch events are.
enum class TouchAction { Down = 0, Up = 1, Move = 2 };

// What is on the screen now; differs from the view's own values while animated.
struct Presented {
  Point center;
  Size size;
  Color background;
  double alpha = 1;
  Rect frame() const { return Rect::centered(center, size); }
};

}  // namespace ui
