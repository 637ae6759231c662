// A box with round corners to which a drawing is cut. A value; points.
#pragma once

#include <QPainterPath>
#include <algorithm>

#include "platform/ui/values/geometry.h"

namespace qt {

struct RoundedClip {
  ui::Rect box;
  double radius = 0;
  bool operator==(const RoundedClip&) const = default;

  // Whether one of the corners lies in the rectangle.
  bool cuts(const ui::Rect& rect) const {
    const double r = std::min({radius, box.width / 2, box.height / 2});
    for (const double x : {box.x, box.right() - r})
      for (const double y : {box.y, box.bottom() - r})
        if (!rect.intersection({x, y, r, r}).empty()) return r > 0;
    return false;
  }
  QPainterPath path() const {
    QPainterPath rounded;
    rounded.addRoundedRect(QRectF(box.x, box.y, box.width, box.height), radius, radius);
    return rounded;
  }
};

}  // namespace qt
