// Measures text. A side implements it with the engine that also draws, so what was
// measured to fit does fit. Owned by the side, installed on the Application; main
// thread. Lengths are points.
#pragma once

#include <string_view>

#include "platform/ui/values/geometry.h"
#include "platform/ui/values/rich_text.h"

namespace ui {

class TextEngine {
 public:
  virtual ~TextEngine() = default;
  // The size that a text takes, rounded up to whole points, wrapped at words within
  // maxWidth (0: no limit) and cut after maxLines (0: no limit).
  virtual Size measure(std::string_view text, const Font& font, double maxWidth, int maxLines) = 0;
  virtual Size measure(const AttributedText& text, const Font& base, double maxWidth,
                       int maxLines) = 0;
  virtual double lineHeight(const Font& font) = 0;
};

}  // namespace ui
