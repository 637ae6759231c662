#include "platform/qt/drawing/text_strips.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/canvas.h"

namespace qt {

Picture textPicture(const TextLayout& layout, ui::Point at, const QRectF& part, double scale) {
  QImage image = canvas({part.width(), part.height()}, scale);
  QPainter painter(&image);
  layout.paint(painter, at.x - part.x(), at.y - part.y());
  painter.end();
  return {image, QRectF(part.topLeft(), QSizeF(image.size()) / scale)};
}

std::optional<std::vector<Picture>> TextStrips::update(const TextLayout& layout, ui::Point at,
                                                       double width, Sight sight, double scale,
                                                       bool anew,
                                                       const std::vector<Picture>& shown) {
  const ui::Size text = layout.size();
  if (text.empty()) {
    last_ = -1;
    return std::vector<Picture>();
  }
  // Glyphs may lean a little out of their lines.
  constexpr double kLean = 3;
  const double top = std::floor(at.y) - kLean, bottom = at.y + text.height + kLean;
  const int end = static_cast<int>(std::ceil((bottom - top) / kStrip)) - 1;
  const auto stripAt = [&](double y) {
    return static_cast<int>(std::clamp((y - top) / kStrip, 0.0, static_cast<double>(end)));
  };
  const int from = stripAt(sight.from), to = stripAt(sight.to);
  if (!anew && from == first_ && to == last_) return std::nullopt;
  std::vector<Picture> pictures;
  for (int i = from; i <= to; ++i) {
    if (!anew && i >= first_ && i <= last_) {
      pictures.push_back(shown[static_cast<std::size_t>(i - first_)]);
      continue;
    }
    const double y = top + i * kStrip;
    pictures.push_back(textPicture(
        layout, at, QRectF(-kLean, y, width + 2 * kLean, std::min(kStrip, std::ceil(bottom - y))),
        scale));
  }
  first_ = from;
  last_ = to;
  return pictures;
}

}  // namespace qt
