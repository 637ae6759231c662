#include "platform/qt/items/label_item.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/fonts.h"

namespace qt {

namespace {

// How far a label shrinks its font, and one of several lines.
constexpr double kSmallest = 0.5, kSmallestOfLines = 0.7;

std::unique_ptr<TextLayout> laidOut(const ui::Label& label, const TextLayout::Style& style) {
  if (const auto* rich = label.attributedText()) return std::make_unique<TextLayout>(*rich, style);
  return std::make_unique<TextLayout>(label.text(), style);
}

double zoomOf(const ui::Label& label, const TextLayout::Style& style, double smallest) {
  if (const auto* rich = label.attributedText()) return zoomToFit(*rich, style, smallest);
  return zoomToFit(std::string_view(label.text()), style, smallest);
}

}  // namespace

std::unique_ptr<TextLayout> fittedText(const ui::Label& label, ui::Size size) {
  TextLayout::Style style;
  style.font = label.font();
  style.color = label.textColor();
  style.alignment = label.alignment();
  style.maxLines = label.maxLines();
  const bool oneLine = label.maxLines() == 1;
  const double smallest = (!label.shrinksToFit() ? 1
                           : oneLine             ? kSmallest
                                                 : kSmallestOfLines) *
                          unenlarged();
  style.width = std::max(1.0, size.width);
  if (oneLine) style.zoom = zoomOf(label, style, smallest);
  style.elide = true;
  const bool shrinks = smallest < 1 && !oneLine;
  if (!shrinks) style.height = size.height;
  auto layout = laidOut(label, style);
  if (!shrinks) return layout;
  // Lines: smaller by a step until the words are whole and all of them have room.
  const double full = std::max(1.0, label.font().size() * textScale());
  const auto fits = [&] { return layout->size().height <= size.height && !layout->breaksWords(); };
  for (double px = full - 1; px >= full * smallest && !fits(); --px) {
    style.zoom = px / full;
    layout = laidOut(label, style);
  }
  if (fits()) return layout;
  style.height = size.height;
  return laidOut(label, style);
}

Picture textPicture(const TextLayout& layout, ui::Point at, const QRectF& part, double scale) {
  QImage image(std::max(1, static_cast<int>(std::lround(part.width() * scale))),
               std::max(1, static_cast<int>(std::lround(part.height() * scale))),
               QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(0);
  QPainter painter(&image);
  layout.paint(painter, at.x - part.x(), at.y - part.y());
  painter.end();
  return {image, QRectF(part.topLeft(), QSizeF(image.size()) / scale)};
}

void LabelItem::sync(ui::View& view, ui::Change changed) {
  const auto& label = static_cast<ui::Label&>(view);
  const ui::Size size = frameSize();
  const bool anew = !layout_ || size != laidOutFor_ || ui::has(changed, ui::Change::Content);
  if (anew) {
    layout_ = fittedText(label, size);
    laidOutFor_ = size;
    // In the middle of a box that has room to spare.
    at_ = {0, snapped(std::max(0.0, (size.height - layout_->size().height) / 2))};
  }
  paintStrips(anew || changed == ui::Change::All);
}

void LabelItem::paintStrips(bool all) {
  const double scale = scaleFactor();
  const ui::Size text = layout_->size();
  if (text.empty()) {
    lastStrip_ = -1;
    return setPictures({});
  }
  // Glyphs may lean a little out of their lines.
  constexpr double kLean = 3;
  const double top = std::floor(at_.y) - kLean, bottom = at_.y + text.height + kLean;
  const bool whole = !followsClip();
  const int last = static_cast<int>(std::ceil((bottom - top) / kStrip)) - 1;
  const int from =
      whole ? 0 : std::clamp(static_cast<int>((visibleArea().y - top) / kStrip), 0, last);
  const int to =
      whole ? last : std::clamp(static_cast<int>((visibleArea().bottom() - top) / kStrip), 0, last);
  if (!all && from == firstStrip_ && to == lastStrip_) return;
  std::vector<Picture> pictures;
  for (int i = from; i <= to; ++i) {
    if (!all && i >= firstStrip_ && i <= lastStrip_) {
      pictures.push_back(this->pictures()[static_cast<std::size_t>(i - firstStrip_)]);
      continue;
    }
    const double y = top + i * kStrip;
    pictures.push_back(textPicture(
        *layout_, at_,
        QRectF(-kLean, y, width() + 2 * kLean, std::min(kStrip, std::ceil(bottom - y))), scale));
  }
  firstStrip_ = from;
  lastStrip_ = to;
  setPictures(std::move(pictures));
}

}  // namespace qt
