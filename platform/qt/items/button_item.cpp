#include "platform/qt/items/button_item.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/fonts.h"
#include "platform/qt/drawing/image_store.h"
#include "platform/qt/drawing/text_strips.h"

#include "platform/ui/values/style.h"

namespace qt {

namespace {

constexpr double kTitlePadding = 6, kImageGap = 6;
constexpr double kPressed = 0.5, kDisabled = 0.4;  // how far a picture is seen

// The colour that results when `over` is laid on `under`.
ui::Color laidOver(ui::Color under, ui::Color over) {
  if (under.transparent()) return over;
  return under.mixed(over.withAlpha(under.alpha()), over.alpha() / 255.0);
}

// A picture that is pressed, or that takes no press, is seen through.
void fade(std::vector<Picture>& pictures, double opacity) {
  for (Picture& picture : pictures) {
    QPainter p(&picture.image);
    p.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    p.fillRect(picture.image.rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity)));
  }
}

}  // namespace

BoxLook ButtonItem::lookOf(const ui::View& view, ui::Color background) const {
  BoxLook look = ViewItem::lookOf(view, background);
  const auto& button = static_cast<const ui::Button&>(view);
  // Where a picture shows the press, the colour needn't.
  if (view.pressed() && view.enabled() && button.pressedBackgroundImage().empty() &&
      !background.transparent())
    look.fill = laidOver(background, ui::style::kPressed);
  return look;
}

void ButtonItem::sync(ui::View& view, ui::Change) {
  const auto& button = static_cast<ui::Button&>(view);
  const double scale = scaleFactor();
  const bool pressed = button.pressed() && button.enabled();
  std::vector<Picture> pictures;
  const ui::Rect box{0, 0, frameSize().width, frameSize().height};
  const auto& back = pressed && !button.pressedBackgroundImage().empty()
                         ? button.pressedBackgroundImage()
                         : button.backgroundImage();
  if (!back.empty())
    pictures = stage().images.pictures(
        {back, box, ui::ContentMode::Fill, button.border().radius, scale}, visibleArea());
  const bool ownPress = !button.pressedBackgroundImage().empty();
  const double seen = !button.enabled() ? kDisabled : pressed && !ownPress ? kPressed : 1;

  ui::Size image =
      button.image().empty() ? ui::Size{} : button.image().naturalSize().value_or(ui::Size{});
  if (const double room = box.height; image.height > room && room > 0)
    image = {image.width * room / image.height, room};
  const bool titled = !button.title().empty();
  const double gap = image.empty() || !titled ? 0 : kImageGap;
  const bool narrow = button.alignment() != ui::TextAlign::Center || box.width < 4 * kTitlePadding;
  const double padding = narrow ? 0 : kTitlePadding;
  const double room = std::max(1.0, box.width - 2 * padding - image.width - gap);

  TextLayout::Style style;
  style.font = button.font();
  style.color = pressed ? button.pressedTextColor() : button.textColor();
  if (!button.enabled()) style.color = style.color.withAlpha(style.color.alpha() * 2 / 5);
  style.maxLines = 1;
  style.width = room;
  style.elide = true;
  const auto laidOut = [&](const auto& text) {
    style.zoom = zoomToFit(text, style, unenlarged());
    return TextLayout(text, style);
  };
  const auto* rich = button.attributedText();
  const TextLayout title = rich ? laidOut(*rich) : laidOut(std::string_view(button.title()));
  const ui::Size text = title.size();
  const double shown = std::min(text.width, room) + image.width + gap;
  double x = padding;
  if (button.alignment() == ui::TextAlign::Center) x = (box.width - shown) / 2;
  if (button.alignment() == ui::TextAlign::Right) x = box.width - padding - shown;
  x = snapped(x);
  if (!image.empty()) {
    const ui::Rect at{x, snapped((box.height - image.height) / 2), image.width, image.height};
    const auto icon = stage().images.pictures({button.image(), at, ui::ContentMode::Fill, 0, scale},
                                              visibleArea());
    pictures.insert(pictures.end(), icon.begin(), icon.end());
    x += image.width + gap;
  }
  if (seen < 1) fade(pictures, seen);
  if (titled) {
    constexpr double kLean = 3;
    const double y = snapped((box.height - text.height) / 2);
    pictures.push_back(
        textPicture(title, {x, y},
                    QRectF(x - kLean, y - kLean, std::ceil(std::min(text.width, room)) + 2 * kLean,
                           text.height + 2 * kLean),
                    scale));
  }
  setPictures(std::move(pictures));
}

}  // namespace qt
