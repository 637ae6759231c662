#include "platform/qt/drawing/round_corners.h"

#include <QCache>
#include <QImage>
#include <QMatrix4x4>
#include <QPainter>
#include <QPixmap>
#include <QQuickWindow>
#include <QSGRenderNode>
#include <QSGRendererInterface>
#include <algorithm>
#include <array>
#include <memory>

namespace qt {

namespace {

constexpr double kInFront = 2;  // of what marks the current row

// What one frame keeps of what lies under the corners: pixels of the window.
struct Kept {
  QImage image;
  QPoint at;
};
using Corners = std::array<Kept, 4>;

struct Shape {
  QSizeF size;
  double radius = 0;
  bool operator==(const Shape&) const = default;

  QRectF corner(std::size_t i) const {
    return {i % 2 ? size.width() - radius : 0, i / 2 ? size.height() - radius : 0, radius, radius};
  }
};

// What is outside of the curve in one of the corners, as alpha.
QImage outside(std::size_t corner, QSize pixels) {
  static thread_local QCache<quint64, QImage> kept(1 << 20);  // bytes; a renderer has its thread
  const quint64 key =
      (quint64(corner) << 62) | (quint64(pixels.width()) << 31) | quint64(pixels.height());
  if (const auto* made = kept.object(key)) return *made;
  QImage mask(pixels, QImage::Format_ARGB32_Premultiplied);
  mask.fill(Qt::black);
  QPainter p(&mask);
  p.setRenderHint(QPainter::Antialiasing);
  p.setCompositionMode(QPainter::CompositionMode_DestinationOut);
  p.setPen(Qt::NoPen);
  p.setBrush(Qt::black);
  p.drawEllipse(QRectF(corner % 2 ? -pixels.width() : 0, corner / 2 ? -pixels.height() : 0,
                       2 * pixels.width(), 2 * pixels.height()));
  p.end();
  kept.insert(key, new QImage(mask), mask.sizeInBytes());
  return mask;
}

QImage pixelsOf(const QPaintDevice& device, const QRect& part) {
  if (device.devType() == QInternal::Image) return static_cast<const QImage&>(device).copy(part);
  if (device.devType() == QInternal::Pixmap)
    return static_cast<const QPixmap&>(device).copy(part).toImage();
  return {};
}

// Draws in the software renderer's own way.
class CornerNode : public QSGRenderNode {
 public:
  CornerNode(QQuickWindow& window, std::shared_ptr<Corners> corners)
      : corners_(std::move(corners)), window_(window) {}
  void setShape(const Shape& shape) {
    if (shape == shape_) return;
    shape_ = shape;
    markDirty(DirtyGeometry);
  }
  RenderingFlags flags() const override { return BoundedRectRendering; }
  QRectF rect() const override { return {{}, shape_.size}; }
  void render(const RenderState* state) override {
    auto* renderer = window_.rendererInterface();
    auto* painter = static_cast<QPainter*>(
        renderer->getResource(&window_, QSGRendererInterface::PainterResource));
    if (!painter || !painter->device()) return;
    if (state->clipRegion()) painter->setClipRegion(*state->clipRegion());
    const double ratio = painter->device()->devicePixelRatio();
    const QTransform toPixels = matrix()->toTransform() * QTransform::fromScale(ratio, ratio);
    painter->setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
    for (std::size_t i = 0; i < corners_->size(); ++i)
      draw(*painter, (*corners_)[i], i, toPixels.mapRect(shape_.corner(i)).toRect());
  }

 protected:
  virtual void draw(QPainter& painter, Kept& corner, std::size_t which, const QRect& pixels) = 0;

 private:
  std::shared_ptr<Corners> corners_;
  QQuickWindow& window_;
  Shape shape_;
};

class KeepNode final : public CornerNode {
 public:
  using CornerNode::CornerNode;

 protected:
  void draw(QPainter& painter, Kept& corner, std::size_t, const QRect& pixels) override {
    corner = {pixelsOf(*painter.device(), pixels), pixels.topLeft()};
  }
};

class RestoreNode final : public CornerNode {
 public:
  using CornerNode::CornerNode;

 protected:
  void draw(QPainter& painter, Kept& corner, std::size_t which, const QRect& pixels) override {
    if (corner.image.isNull() || pixels.isEmpty()) return;
    QImage back = corner.image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    back.setDevicePixelRatio(1);
    QPainter p(&back);
    p.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    p.drawImage(QPoint(), outside(which, pixels.size()));
    p.end();
    painter.drawImage(corner.at, back);
  }
};

// Either of the two: they share what is kept, and differ in their node.
class CornerItem : public QQuickItem {
 public:
  CornerItem(QQuickItem& of, std::shared_ptr<Corners> corners)
      : QQuickItem(&of), corners_(std::move(corners)) {
    setFlag(ItemHasContents);
  }
  void setShape(const Shape& shape) {
    if (shape == shape_) return;
    shape_ = shape;
    setSize(shape.size);
    update();
  }

 protected:
  virtual CornerNode* makeNode() = 0;
  QSGNode* updatePaintNode(QSGNode* shown, UpdatePaintNodeData*) override {
    if (window()->rendererInterface()->graphicsApi() != QSGRendererInterface::Software)
      return shown;
    auto* node = shown ? static_cast<CornerNode*>(shown) : makeNode();
    node->setShape(shape_);
    return node;
  }
  const std::shared_ptr<Corners> corners_;

 private:
  Shape shape_;
};

template <class Node>
class Part final : public CornerItem {
 public:
  using CornerItem::CornerItem;

 protected:
  CornerNode* makeNode() override { return new Node(*window(), corners_); }
};

}  // namespace

RoundCorners::RoundCorners(QQuickItem& of, double radius) : of_(of) {
  const auto inside = of.childItems();
  auto corners = std::make_shared<Corners>();
  keeper_ = std::make_unique<Part<KeepNode>>(of, corners);
  if (!inside.isEmpty()) keeper_->stackBefore(inside.front());
  restorer_ = std::make_unique<Part<RestoreNode>>(of, corners);
  restorer_->setZ(kInFront);
  update(radius);
}

RoundCorners::~RoundCorners() = default;

void RoundCorners::update(double radius) {
  const QSizeF size = of_.size();
  const Shape shape{size, std::min({radius, size.width() / 2, size.height() / 2})};
  for (auto* item : {keeper_.get(), restorer_.get()})
    static_cast<CornerItem*>(item)->setShape(shape);
}

bool RoundCorners::has(const QQuickItem& item) const {
  return &item == keeper_.get() || &item == restorer_.get();
}

}  // namespace qt
