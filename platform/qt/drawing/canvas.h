// An empty picture to paint on in points, as sharp as the screen; never without a pixel.
#pragma once

#include <QImage>
#include <algorithm>
#include <cmath>

#include "platform/ui/values/geometry.h"

namespace qt {

inline QImage canvas(ui::Size points, double scale) {
  const auto pixels = [scale](double length) {
    return std::max(1, static_cast<int>(std::lround(length * scale)));
  };
  QImage image(pixels(points.width), pixels(points.height), QImage::Format_ARGB32_Premultiplied);
  image.fill(0);
  image.setDevicePixelRatio(scale);
  return image;
}

}  // namespace qt
