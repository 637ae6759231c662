#include "platform/qt/drawing/qt_text_engine.h"

#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/fonts.h"
#include "platform/qt/drawing/label_text.h"
#include "platform/qt/drawing/text_layout.h"

namespace qt {

namespace {

template <class Text>
ui::Size measured(const Text& text, const ui::Font& font, double maxWidth, int maxLines) {
  TextLayout::Style style;
  style.font = font;
  style.width = maxWidth;
  style.maxLines = maxLines;
  ui::Size size = TextLayout(text, style).size();
  // One line that is too long is cut when it is drawn.
  if (maxWidth > 0) size.width = std::min(size.width, std::ceil(maxWidth));
  return size;
}

}  // namespace

QtTextEngine::QtTextEngine(double scale) : TextEngine(scale) { setTextScale(scale); }

ui::Size QtTextEngine::measure(std::string_view text, const ui::Font& font, double maxWidth,
                               int maxLines) {
  return measured(text, font, maxWidth, maxLines);
}

ui::Size QtTextEngine::measure(const ui::AttributedText& text, const ui::Font& base,
                               double maxWidth, int maxLines) {
  return measured(text, base, maxWidth, maxLines);
}

double QtTextEngine::lineHeight(const ui::Font& font) {
  return measured(std::string_view("x"), font, 0, 1).height;
}

std::string QtTextEngine::linkAt(const ui::Label& label, ui::Point at) {
  const auto layout = fittedText(label, label.bounds().size());
  return layout->linkAt(at - textOrigin(*layout, label.bounds().size()));
}

}  // namespace qt
