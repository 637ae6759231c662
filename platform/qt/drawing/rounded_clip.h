// A box with round corners to which a drawing is cut. A value; points.
#pragma once

#include <QImage>
#include <QPainter>
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
  // What is left of a picture that is shown at a place.
  QImage cut(const QImage& picture, QPointF at) const {
    QImage rest = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainterPath outside;
    outside.addRect(QRectF(at, QSizeF(rest.size()) / rest.devicePixelRatio()));
    QPainter p(&rest);
    p.setRenderHint(QPainter::Antialiasing);
    p.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    p.translate(-at);
    p.fillPath(outside.subtracted(path()), Qt::black);
    p.end();
    return rest;
  }
};

}  // namespace qt
