#include "platform/qt/items/box_item.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace qt {

namespace {

constexpr double kLargest = 2048;  // points; beyond, corners stay square

}  // namespace

BoxLook BoxItem::cut(const BoxLook& look) {
  auto clip = look.shows() ? cornersAround() : std::nullopt;
  if (width() > kLargest || height() > kLargest || width() <= 0 || height() <= 0) clip.reset();
  const ui::Size size{width(), height()};
  const bool same = clip == clip_ && look == painted_ && size == size_ && scaleFactor() == scale_;
  if (!same) {
    clip_ = clip, painted_ = look, size_ = size, scale_ = scaleFactor();
    if (!clip) {
      setPictures({});
    } else {
      const QImage whole = boxPicture(look, size, scale_);
      QImage rest(whole.size(), whole.format());
      rest.fill(0);
      rest.setDevicePixelRatio(scale_);
      QPainter p(&rest);
      p.setRenderHint(QPainter::Antialiasing);
      p.setClipPath(clip->path());
      p.drawImage(QPointF(), whole);
      p.end();
      setPictures({{rest, QRectF(0, 0, size.width, size.height)}});
    }
  }
  return clip ? BoxLook{ui::kClear, {}, {}} : look;
}

}  // namespace qt
