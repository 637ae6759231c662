#include "platform/ui/controls/button.h"

#include <cmath>

#include "platform/ui/application.h"

namespace ui {

namespace {
constexpr double kPadding = 12, kImageGap = 6;
}

void Button::setTitle(std::string title) {
  if (!rich_ && title == title_) return;
  rich_.reset();
  title_ = std::move(title);
  markChanged(Change::Content);
}

void Button::setAttributedTitle(AttributedText title) {
  if (rich_ && *rich_ == title) return;
  title_ = {};
  rich_ = std::make_unique<AttributedText>(std::move(title));
  markChanged(Change::Content);
}

void Button::setStyle(int style) {
  if (style == style_) return;
  style_ = style;
  markChanged(Change::Appearance);
}

void Button::setFont(const Font& font) {
  if (font == font_) return;
  font_ = font;
  markChanged(Change::Content);
}

void Button::setTextColor(std::optional<Color> color) {
  if (color == color_) return;
  color_ = color;
  markChanged(Change::Content);
}

Color Button::pressedTextColor() const {
  if (pressedColor_) return *pressedColor_;
  const Color normal = textColor();
  return normal.withAlpha(normal.alpha() / 2);
}

void Button::setPressedTextColor(std::optional<Color> color) {
  if (color == pressedColor_) return;
  pressedColor_ = color;
  markChanged(Change::Content);
}

void Button::setAlignment(TextAlign alignment) {
  if (alignment == alignment_) return;
  alignment_ = alignment;
  markChanged(Change::Content);
}

void Button::setImage(Image image) {
  if (image == image_) return;
  image_ = std::move(image);
  markChanged(Change::Content);
}

void Button::setBackgroundImages(Image normal, Image pressed) {
  if (normal == background_ && pressed == pressedBackground_) return;
  background_ = std::move(normal);
  pressedBackground_ = std::move(pressed);
  markChanged(Change::Content);
}

Size Button::sizeThatFits(Size) const {
  auto* app = Application::current();
  if (!app) return bounds().size();
  Size size =
      rich_ ? app->text().measure(*rich_, font_, 0, 1) : app->text().measure(title_, font_, 0, 1);
  if (const auto image = image_.naturalSize()) {
    size.width += image->width + (title().empty() ? 0 : kImageGap);
    size.height = std::max(size.height, image->height);
  }
  return {std::ceil(size.width + 2 * kPadding), std::ceil(size.height + kPadding)};
}

}  // namespace ui
