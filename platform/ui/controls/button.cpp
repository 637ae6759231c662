#include "platform/ui/controls/button.h"

#include <cmath>

namespace ui {

namespace {
constexpr double kPadding = 12, kImageGap = 6;
}

void Button::setStyle(int style) {
  if (style == style_) return;
  style_ = style;
  markChanged(Change::Appearance);
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
  const auto text = measured(0, 1);
  if (!text) return bounds().size();
  Size size = *text;
  if (const auto image = image_.naturalSize()) {
    size.width += image->width + (title().empty() ? 0 : kImageGap);
    size.height = std::max(size.height, image->height);
  }
  return {std::ceil(size.width + 2 * kPadding), std::ceil(size.height + kPadding)};
}

}  // namespace ui
