// Text measured by fixed rules, the same on every machine: each character is half an em
// wide (full-width and icon characters one em), a line is 1.2 em high, words wrap at
// blanks and a word longer than the line is broken. An em is the font's size at the
// reader's text size. Main thread, points.
#pragma once

#include "platform/ui/text_engine.h"

namespace headless {

class FixedTextEngine final : public ui::TextEngine {
 public:
  explicit FixedTextEngine(double scale = 1) : TextEngine(scale) {}
  ui::Size measure(std::string_view text, const ui::Font& font, double maxWidth,
                   int maxLines) override;
  ui::Size measure(const ui::AttributedText& text, const ui::Font& base, double maxWidth,
                   int maxLines) override;
  double lineHeight(const ui::Font& font) override;
  // By lines: of several links in one, the first.
  std::string linkAt(const ui::Label& label, ui::Point at) override;
};

}  // namespace headless
