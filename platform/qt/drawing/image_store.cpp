#include "platform/qt/drawing/image_store.h"

#include <QBuffer>
#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace qt {

namespace {

constexpr int kLargestSide = 4096;  // what every renderer takes

QImage read(QImageReader& reader) {
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (size.isValid() && std::max(size.width(), size.height()) > kLargestSide)
    reader.setScaledSize(size.scaled(kLargestSide, kLargestSide, Qt::KeepAspectRatio));
  return reader.read();
}

QString imageKey(const ui::Image& image) {
  if (const auto bytes = image.bytes())
    return QStringLiteral("#%1").arg(reinterpret_cast<quintptr>(bytes.get()));
  const QString path = QString::fromStdString(image.path());
  return path + QLatin1Char('#') +
         QString::number(QFileInfo(path).lastModified().toMSecsSinceEpoch());
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

QImage ImageStore::decoded(const ui::Image& image) {
  const QString key = imageKey(image);
  if (const Decoded* found = decoded_.object(key)) return found->pixels;
  QImageReader reader;
  QBuffer buffer;
  const auto bytes = image.bytes();
  if (bytes) {
    buffer.setData(reinterpret_cast<const char*>(bytes->data()), static_cast<int>(bytes->size()));
    reader.setDevice(&buffer);
  } else {
    reader.setFileName(QString::fromStdString(image.path()));
  }
  reader.setDecideFormatFromContent(true);
  const QImage pixels = read(reader);
  decoded_.insert(key, new Decoded{pixels, bytes}, std::max<qsizetype>(1, pixels.sizeInBytes()));
  return pixels;
}

std::optional<ui::Image::Bytes> ImageStore::render(const ui::Image& image,
                                                   const ui::ImageRendition& wanted) {
  QImage pixels = decoded(image);
  if (pixels.isNull()) return std::nullopt;
  if (wanted.pixels) {
    const auto side = [](double length) {
      return std::clamp(static_cast<int>(std::lround(length)), 1, kLargestSide);
    };
    pixels = pixels.scaled(side(wanted.pixels->width), side(wanted.pixels->height),
                           wanted.keepRatio ? Qt::KeepAspectRatio : Qt::IgnoreAspectRatio,
                           Qt::SmoothTransformation);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, QByteArray(wanted.format.data(), wanted.format.size()));
  writer.setQuality(std::clamp(wanted.quality, 0, 100));
  if (!writer.write(pixels)) return std::nullopt;
  return ui::Image::Bytes(bytes.begin(), bytes.end());
}

void ImageStore::addPictures(std::vector<Picture>& out, const ui::Image& image, const ui::Rect& box,
                             ui::ContentMode mode, double radius, double scale) {
  if (image.empty() || box.empty()) return;
  const QImage source = decoded(image);
  if (source.isNull()) return;
  const double pixels = image.scale() > 0 ? image.scale() : 1;
  const ui::Size natural{source.width() / pixels, source.height() / pixels};
  const ui::Rect all = placed(image.naturalSize().value_or(natural), box, mode);
  const ui::Rect part = all.intersection(box);
  if (part.empty()) return;
  // Scaled here, once and well, to the pixels it is shown with.
  QImage canvas(std::max(1, static_cast<int>(std::lround(part.width * scale))),
                std::max(1, static_cast<int>(std::lround(part.height * scale))),
                QImage::Format_ARGB32_Premultiplied);
  canvas.fill(0);
  canvas.setDevicePixelRatio(scale);
  QPainter p(&canvas);
  p.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
  p.translate(-part.x, -part.y);
  if (radius > 0) {
    QPainterPath rounded;
    rounded.addRoundedRect(QRectF(box.x, box.y, box.width, box.height), radius, radius);
    p.setClipPath(rounded);
  }
  const QSize target(std::max(1, static_cast<int>(std::lround(all.width * scale))),
                     std::max(1, static_cast<int>(std::lround(all.height * scale))));
  const bool shrinks = target.width() < source.width() && target.width() <= kLargestSide &&
                       target.height() <= kLargestSide;
  const QImage drawn =
      shrinks ? source.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : source;
  p.drawImage(QRectF(all.x, all.y, all.width, all.height), drawn);
  p.end();
  out.push_back({canvas, QRectF(part.x, part.y, part.width, part.height)});
}

}  // namespace qt
