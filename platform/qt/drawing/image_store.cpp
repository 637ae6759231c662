#include "platform/qt/drawing/image_store.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/pictures/picture.h"
#include "platform/qt/drawing/canvas.h"

namespace qt {

namespace {

constexpr double kTile = 512;             // points
constexpr qint64 kMostPixels = 24 << 20;  // of a decoded image
constexpr int kUsualSide = 1536;          // decoded at once, for views up to that size

QString imageKey(const ui::Image& image) {
  if (const auto bytes = image.bytes())
    return QStringLiteral("#%1:%2").arg(bytes->size()).arg(image.fingerprint());
  const QString path = QString::fromStdString(image.path());
  return path + QLatin1Char('#') +
         QString::number(QFileInfo(path).lastModified().toMSecsSinceEpoch());
}

QImage over(pictures::Bitmap bitmap) {
  auto* owned = new pictures::Bitmap(std::move(bitmap));
  return QImage(
      owned->rgba.data(), owned->size.width, owned->size.height,
      static_cast<qsizetype>(owned->rowBytes()), QImage::Format_RGBA8888_Premultiplied,
      [](void* held) { delete static_cast<pictures::Bitmap*>(held); }, owned);
}

QImage halved(const QImage& image) {
  const QSize half((image.width() + 1) / 2, (image.height() + 1) / 2);
  return image.scaled(half, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

qint64 area(QSize size) { return qint64{size.width()} * size.height(); }

// The natural size halved as often as still covers what is wanted and what is usual.
QSize decodedSize(QSize natural, QSize wanted) {
  wanted = wanted.expandedTo(
      QSize(kUsualSide, kUsualSide)
          .boundedTo(natural.scaled(kUsualSide, kUsualSide, Qt::KeepAspectRatio)));
  QSize size = natural;
  while (size.width() / 2 >= wanted.width() && size.height() / 2 >= wanted.height())
    size = {size.width() / 2, size.height() / 2};
  if (const qint64 pixels = area(size); pixels > kMostPixels) {
    const double zoom = std::sqrt(static_cast<double>(kMostPixels) / static_cast<double>(pixels));
    size = {std::max(1, static_cast<int>(size.width() * zoom)),
            std::max(1, static_cast<int>(size.height() * zoom))};
  }
  return size;
}

QSize pixelsOf(const ui::Rect& rect, double scale) {
  const auto side = [scale](double length) {
    return static_cast<int>(std::clamp(std::ceil(length * scale), 1.0, 1e9));
  };
  return {side(rect.width), side(rect.height)};
}

// Draws of an image that fills `all` what lies in `part`. Only that piece is handed to the
// painter, whose coordinates end at 32,767.
void drawPart(QPainter& p, const QImage& image, const ui::Rect& all, const ui::Rect& part) {
  const double across = image.width() / all.width, down = image.height() / all.height;
  const auto first = [](double at) { return std::max(0, static_cast<int>(std::floor(at)) - 2); };
  const auto last = [](double at, int size) {
    return std::min(size, static_cast<int>(std::ceil(at)) + 2);
  };
  const int left = first((part.x - all.x) * across), top = first((part.y - all.y) * down);
  const int right = last((part.right() - all.x) * across, image.width());
  const int bottom = last((part.bottom() - all.y) * down, image.height());
  if (right <= left || bottom <= top) return;
  const QImage piece(image.constScanLine(top) + qsizetype{left} * 4, right - left, bottom - top,
                     image.bytesPerLine(), image.format());
  p.drawImage(QRectF(all.x + left / across, all.y + top / down, (right - left) / across,
                     (bottom - top) / down),
              piece);
}

// The pieces of a part that can be seen: the part itself where it is small.
std::vector<ui::Rect> tilesOf(const ui::Rect& part, const ui::Rect& seen) {
  if (part.width <= kLargestPicture && part.height <= kLargestPicture) return {part};
  const ui::Rect shown = part.intersection(seen);
  std::vector<ui::Rect> tiles;
  if (shown.empty()) return tiles;
  for (double y = std::floor(shown.y / kTile) * kTile; y < shown.bottom(); y += kTile)
    for (double x = std::floor(shown.x / kTile) * kTile; x < shown.right(); x += kTile)
      tiles.push_back(ui::Rect{x, y, kTile, kTile}.intersection(part));
  return tiles;
}

}  // namespace

ui::Rect placed(ui::Size image, const ui::Rect& box, ui::ContentMode mode) {
  using enum ui::ContentMode;
  if (mode == Fill || mode == Redraw) return box;
  if (mode == Fit || mode == FillKeepingAspect) {
    const double x = box.width / image.width, y = box.height / image.height;
    const double zoom = mode == Fit ? std::min(x, y) : std::max(x, y);
    return ui::Rect::centered(box.center(), {image.width * zoom, image.height * zoom});
  }
  ui::Rect r = ui::Rect::centered(box.center(), image);
  if (mode == Left || mode == TopLeft || mode == BottomLeft) r.x = box.x;
  if (mode == Right || mode == TopRight || mode == BottomRight) r.x = box.right() - image.width;
  if (mode == Top || mode == TopLeft || mode == TopRight) r.y = box.y;
  if (mode == Bottom || mode == BottomLeft || mode == BottomRight)
    r.y = box.bottom() - image.height;
  return r;
}

ImageStore::Decoded* ImageStore::decoded(const ui::Image& image, QSize wanted) {
  const QString key = imageKey(image);
  auto* found = kept_.object(key);
  const auto bytes = image.bytes();
  // Equal fingerprints are no proof.
  if (found && bytes && found->source != bytes && *found->source != *bytes) found = nullptr;
  if (found && (found->levels.empty() ||
                area(decodedSize(found->natural, wanted)) <= area(found->levels.front().size())))
    return found;
  auto fresh = std::make_unique<Decoded>();
  fresh->source = bytes;
  if (const auto natural = image.pixels()) {
    fresh->natural = {static_cast<int>(natural->width), static_cast<int>(natural->height)};
    const QSize size = decodedSize(fresh->natural, wanted);
    try {
      ++decodedCount_;
      fresh->levels.push_back(
          over(pictures::decode(*image.contents(), {size.width(), size.height()})));
    } catch (const std::exception& e) {
      qWarning("Picture refused: %s", e.what());
    }
  }
  const qsizetype cost = fresh->levels.empty() ? 1 : fresh->levels.front().sizeInBytes();
  // The largest are kept too, but one at a time.
  kept_.insert(key, fresh.release(), std::clamp<qsizetype>(cost * 4 / 3, 1, kept_.maxCost()));
  return kept_.object(key);
}

const QImage& ImageStore::level(Decoded& from, QSize wanted) {
  std::size_t at = 0;
  const auto size = [&] { return from.levels[at].size(); };
  while (size().width() >= 2 * wanted.width() && size().height() >= 2 * wanted.height()) {
    if (at + 1 == from.levels.size()) from.levels.push_back(halved(from.levels[at]));
    ++at;
  }
  return from.levels[at];
}

std::vector<Picture> ImageStore::pictures(const ImagePlace& place, const ui::Rect& seen,
                                          const std::vector<Picture>& former) {
  if (place.image.empty() || place.box.empty()) return {};
  const auto natural = place.image.naturalSize();
  if (!natural || natural->empty()) return {};
  const ui::Rect all = placed(*natural, place.box, place.mode);
  const ui::Rect part = all.intersection(place.box);
  if (part.empty()) return {};
  std::vector<Picture> result;
  const QImage* source = nullptr;
  for (const ui::Rect& tile : tilesOf(part, seen)) {
    const QRectF rect(tile.x, tile.y, tile.width, tile.height);
    const auto made = std::find_if(former.begin(), former.end(),
                                   [&](const Picture& p) { return p.rect == rect; });
    if (made != former.end()) {
      result.push_back(*made);
      continue;
    }
    if (!source) {
      const QSize wanted = pixelsOf(all, place.scale);
      Decoded* image = decoded(place.image, wanted);
      if (!image || image->levels.empty()) return {};
      source = &level(*image, wanted);
    }
    QImage painted = canvas(tile.size(), place.scale);
    QPainter p(&painted);
    p.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
    p.translate(-tile.x, -tile.y);
    if (place.radius > 0) p.setClipPath(RoundedClip{place.box, place.radius}.path());
    drawPart(p, *source, all, tile);
    p.end();
    result.push_back({painted, rect});
  }
  return result;
}

}  // namespace qt
