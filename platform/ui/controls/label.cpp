#include "platform/ui/controls/label.h"

#include "platform/ui/application.h"

namespace ui {

void Label::setText(std::string text) {
  if (!rich_ && text == text_) return;
  rich_.reset();
  text_ = std::move(text);
  markChanged(Change::Content);
}

void Label::setAttributedText(AttributedText text) {
  if (rich_ && *rich_ == text) return;
  text_ = {};
  rich_ = std::make_unique<AttributedText>(std::move(text));
  markChanged(Change::Content);
}

void Label::setFont(const Font& font) {
  if (font == font_) return;
  font_ = font;
  markChanged(Change::Content);
}

void Label::setTextColor(Color color) {
  if (color == color_) return;
  color_ = color;
  markChanged(Change::Content);
}

void Label::setAlignment(TextAlign alignment) {
  if (alignment == alignment_) return;
  alignment_ = alignment;
  markChanged(Change::Content);
}

void Label::setMaxLines(int lines) {
  if (lines == maxLines_) return;
  maxLines_ = static_cast<std::int16_t>(lines);
  markChanged(Change::Content);
}

void Label::setShrinksToFit(bool shrinks) {
  if (shrinks == shrinks_) return;
  shrinks_ = shrinks;
  markChanged(Change::Content);
}

Size Label::sizeThatFits(Size limit) const {
  auto* app = Application::current();
  if (!app) return bounds().size();
  const double width = maxLines_ == 1 ? 0 : limit.width;
  Size size = rich_ ? app->text().measure(*rich_, font_, width, maxLines_)
                    : app->text().measure(text_, font_, width, maxLines_);
  if (maxLines_ != 1 && limit.width > 0) size.width = limit.width;
  return size;
}

}  // namespace ui
