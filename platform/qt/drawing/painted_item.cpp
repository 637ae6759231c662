#include "platform/qt/drawing/painted_item.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "platform/qt/drawing/colors.h"

namespace qt {

namespace {

using Texture = std::shared_ptr<QSGTexture>;

constexpr double kLargestCut = 2048;  // points

QSGImageNode* imageNode(QQuickWindow& window, const Texture& texture) {
  auto* node = window.createImageNode();
  node->setTexture(texture.get());
  node->setFiltering(QSGTexture::Linear);
  return node;
}

}  // namespace

// A small picture stretched over a rectangle, its corners left as they are.
class PaintedItem::PatchNode final : public QSGNode {
 public:
  PatchNode(QQuickWindow& window, const Patch& patch, bool hollow)
      : texture_(window.createTextureFromImage(patch.image)),
        margin_(patch.margin),
        side_(patch.image.width() / patch.image.devicePixelRatio()),
        scale_(patch.image.devicePixelRatio()) {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (hollow && i == 4) continue;
      appendChildNode(parts_[i] = imageNode(window, texture_));
    }
  }

  void setRect(const QRectF& rect) {
    const double m = margin_;
    const std::array from{0.0, m, side_ - m, side_};
    const std::array x{rect.left(), rect.left() + m, rect.right() - m, rect.right()};
    const std::array y{rect.top(), rect.top() + m, rect.bottom() - m, rect.bottom()};
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (!parts_[i]) continue;
      const std::size_t c = i % 3, r = i / 3;
      parts_[i]->setRect(QRectF(QPointF(x[c], y[r]), QPointF(x[c + 1], y[r + 1])));
      parts_[i]->setSourceRect(
          QRectF(QPointF(from[c], from[r]) * scale_, QPointF(from[c + 1], from[r + 1]) * scale_));
    }
  }

 private:
  Texture texture_;  // shared by the parts
  std::array<QSGImageNode*, 9> parts_{};
  double margin_, side_, scale_;
};

// Holds its parts as children: shadow, box, pictures. Built whole and then only resized:
// the software renderer loses nodes that join a tree it already shows. What its
// successor shows as well keeps its texture.
class PaintedItem::Node final : public QSGNode {
 public:
  Node(QQuickWindow& window, const BoxLook& look, const std::optional<RoundedClip>& cut,
       const QRectF& box, double scale, const std::vector<Picture>& pictures, const Node* former)
      : look_(look), cut_(cut), scale_(scale) {
    if (look.castsShadow() && !box.isEmpty()) {
      // An opaque box hides what lies under it.
      const bool hollow = look.fill.alpha() == 255 && !look.shadow.rectangular;
      shadow_ = new PatchNode(window, shadowPatch(look, scale), hollow);
      appendChildNode(shadow_);
    }
    if (look.shows() && !box.isEmpty()) addFill(window, box);
    for (const auto& p : pictures) {
      shown_.push_back(
          {p.image.cacheKey(), p.rect, former && !cut ? former->textureOf(p) : nullptr});
      auto& texture = shown_.back().texture;
      if (!texture) texture.reset(window.createTextureFromImage(left(p)));
      auto* node = imageNode(window, texture);
      node->setRect(p.rect);
      appendChildNode(node);
    }
    resize(box);
  }

  // Whether it can show this with nothing but another size.
  bool serves(const BoxLook& look, const std::optional<RoundedClip>& cut, const QRectF& box,
              double scale, const std::vector<Picture>& pictures) const {
    const bool same = std::equal(
        pictures.begin(), pictures.end(), shown_.begin(), shown_.end(),
        [](auto& p, auto& s) { return p.image.cacheKey() == s.key && p.rect == s.rect; });
    if (look != look_ || cut != cut_ || scale != scale_ || !same) return false;
    if (box.isEmpty() || box_.isEmpty()) return box == box_;
    if (cutsBox(box)) return box.size() == box_.size();
    if (box.size() == box_.size() || look.plain() || !look.shows()) return true;
    return patch_ && boxPatch(look, {box.width(), box.height()}, scale).margin > 0;
  }

  void resize(const QRectF& box) {
    box_ = box;
    if (plain_) plain_->setRect(box);
    if (patch_) patch_->setRect(box);
    if (exact_) exact_->setRect(box);
    if (!shadow_) return;
    const double reach = shadowReach(look_.shadow);
    shadow_->setRect(box.adjusted(-reach, -reach, reach, reach)
                         .translated(look_.shadow.offset.x, look_.shadow.offset.y));
  }

 private:
  // Beyond that size, corners stay square.
  bool cutsBox(const QRectF& box) const {
    return cut_ && box.width() <= kLargestCut && box.height() <= kLargestCut;
  }
  // What the round corners leave of a picture.
  QImage left(const Picture& picture) const {
    const QRectF& r = picture.rect;
    const bool cuts = cut_ && cut_->cuts({r.x(), r.y(), r.width(), r.height()});
    return cuts ? cut_->cut(picture.image, r.topLeft()) : picture.image;
  }
  void addFill(QQuickWindow& window, const QRectF& box) {
    const ui::Size size{box.width(), box.height()};
    if (cutsBox(box)) return addExact(window, cut_->cut(boxPicture(look_, size, scale_), {}));
    if (look_.plain()) {
      plain_ = window.createRectangleNode();
      plain_->setColor(toQColor(look_.fill));
      return appendChildNode(plain_);
    }
    const Patch patch = boxPatch(look_, size, scale_);
    if (patch.margin <= 0) return addExact(window, patch.image);
    patch_ = new PatchNode(window, patch, false);
    appendChildNode(patch_);
  }
  void addExact(QQuickWindow& window, const QImage& image) {
    exactTexture_.reset(window.createTextureFromImage(image));
    exact_ = imageNode(window, exactTexture_);
    appendChildNode(exact_);
  }

  Texture textureOf(const Picture& picture) const {
    if (cut_) return nullptr;
    for (const auto& s : shown_)
      if (s.key == picture.image.cacheKey()) return s.texture;
    return nullptr;
  }

  struct Shown {
    qint64 key;
    QRectF rect;
    Texture texture;
  };
  BoxLook look_;
  std::optional<RoundedClip> cut_;
  double scale_;
  QRectF box_;
  PatchNode* shadow_ = nullptr;
  PatchNode* patch_ = nullptr;
  QSGRectangleNode* plain_ = nullptr;
  QSGImageNode* exact_ = nullptr;
  Texture exactTexture_;
  std::vector<Shown> shown_;
};

PaintedItem::PaintedItem(QQuickItem* parent) : QQuickItem(parent) { setFlag(ItemHasContents); }

void PaintedItem::setLook(const BoxLook& look) {
  if (look == look_) return;
  look_ = look;
  update();
}

void PaintedItem::setPictures(std::vector<Picture> pictures) {
  if (pictures == pictures_) return;
  pictures_ = std::move(pictures);
  update();
}

void PaintedItem::setCut(const std::optional<RoundedClip>& cut) {
  if (cut == cut_) return;
  cut_ = cut;
  update();
}

double PaintedItem::scaleFactor() const {
  return window() ? window()->effectiveDevicePixelRatio() : 1;
}

double PaintedItem::snapped(double length) const {
  const double scale = scaleFactor();
  return std::round(length * scale) / scale;
}

QSGNode* PaintedItem::updatePaintNode(QSGNode* shown, UpdatePaintNodeData*) {
  const QRectF box(0, 0, width(), height());
  auto* former = static_cast<Node*>(shown);
  const bool empty = pictures_.empty() && (!look_.shows() || box.isEmpty()) && !look_.castsShadow();
  if (empty) {
    delete former;
    return nullptr;
  }
  const double scale = scaleFactor();
  if (former && former->serves(look_, cut_, box, scale, pictures_)) {
    former->resize(box);
    return former;
  }
  auto* node = new Node(*window(), look_, cut_, box, scale, pictures_, former);
  delete former;
  return node;
}

void PaintedItem::geometryChange(const QRectF& now, const QRectF& former) {
  QQuickItem::geometryChange(now, former);
  if (now.size() != former.size()) update();
}

void PaintedItem::itemChange(ItemChange change, const ItemChangeData& data) {
  if (change == ItemDevicePixelRatioHasChanged) {
    scaleChanged();
    update();
  }
  QQuickItem::itemChange(change, data);
}

}  // namespace qt
