#include "platform/ui/controls/text_holder.h"

#include "platform/ui/application.h"

namespace ui {

void TextHolder::setText(std::string text) {
  if (!rich_ && text == text_) return;
  rich_.reset();
  text_ = std::move(text);
  textReplaced();
  markChanged(Change::Content);
}

void TextHolder::setAttributedText(AttributedText text) {
  if (rich_ && *rich_ == text) return;
  text_ = {};
  rich_ = std::make_unique<AttributedText>(std::move(text));
  textReplaced();
  markChanged(Change::Content);
}

void TextHolder::setFont(const Font& font) { setLook({font, look_.color, look_.alignment}); }

void TextHolder::setTextColor(std::optional<Color> color) {
  setLook({look_.font, color, look_.alignment});
}

void TextHolder::setAlignment(TextAlign alignment) {
  setLook({look_.font, look_.color, alignment});
}

void TextHolder::setLook(const TextLook& look) {
  if (look == look_) return;
  look_ = look;
  markChanged(Change::Content);
}

std::optional<Size> TextHolder::measured(double maxWidth, int maxLines) const {
  auto* app = Application::current();
  if (!app) return std::nullopt;
  return rich_ ? app->text().measure(*rich_, font(), maxWidth, maxLines)
               : app->text().measure(text_, font(), maxWidth, maxLines);
}

}  // namespace ui
