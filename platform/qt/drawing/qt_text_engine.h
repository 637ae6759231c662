// Measures text with the layout that draws it. Owned by the QtScreen; needs a running
// QtProcess. Main thread, points.
#pragma once

#include "platform/ui/text_engine.h"

namespace qt {

class QtTextEngine final : public ui::TextEngine {
 public:
  // Takes the text size for the whole process: what draws uses the same fonts.
  explicit QtTextEngine(double scale);
  ui::Size measure(std::string_view text, const ui::Font& font, double maxWidth,
                   int maxLines) override;
  ui::Size measure(const ui::AttributedText& text, const ui::Font& base, double maxWidth,
                   int maxLines) override;
  double lineHeight(const ui::Font& font) override;
  std::string linkAt(const ui::Label& label, ui::Point at) override;
};

}  // namespace qt
