// How a text looks where none of its runs says otherwise. A value; main thread.
#pragma once

#include "platform/ui/values/rich_text.h"

namespace ui {

struct TextLook {
  Font font;
  std::optional<Color> color;  // none: the view's own choice
  TextAlign alignment = TextAlign::Left;
  bool operator==(const TextLook&) const = default;
};

}  // namespace ui
