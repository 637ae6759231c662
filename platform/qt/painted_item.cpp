#include "platform/qt/painted_item.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGNinePatchNode>
#include <QSGRectangleNode>
#include <cmath>

#include "platform/qt/colors.h"

namespace qt {

// Holds its parts as children: shadow, box, pictures. A part is made anew when its
// pixels change; a move or a resize only changes its rectangle.
class PaintedItem::Node final : public QSGNode {
 public:
  void update(QQuickWindow& window, const BoxLook& look, const QRectF& box, double scale,
              const std::vector<Picture>& pictures) {
    const bool restyled = look != look_ || scale != scale_;
    look_ = look;
    scale_ = scale;
    updateShadow(window, box, restyled);
    updateFill(window, box, restyled);
    updatePictures(window, pictures);
  }

 private:
  // The order of the children is shadow, fill, pictures.
  void put(QSGNode*& slot, QSGNode* made, QSGNode* behind) {
    remove(slot);
    slot = made;
    if (!made) return;
    if (behind)
      insertChildNodeAfter(made, behind);
    else
      prependChildNode(made);
  }
  void remove(QSGNode*& slot) {
    if (!slot) return;
    removeChildNode(slot);
    delete slot;
    slot = nullptr;
  }

  QSGNode* patchNode(QQuickWindow& window, const Patch& patch) {
    auto* node = window.createNinePatchNode();
    node->setTexture(window.createTextureFromImage(patch.image));
    const double m = patch.margin * patch.image.devicePixelRatio();
    node->setPadding(m, m, m, m);
    node->setDevicePixelRatio(patch.image.devicePixelRatio());
    return node;
  }
  static void setPatchRect(QSGNode* node, const QRectF& rect) {
    auto* patch = static_cast<QSGNinePatchNode*>(node);
    patch->setBounds(rect);
    patch->update();
  }

  void updateShadow(QQuickWindow& window, const QRectF& box, bool restyled) {
    if (!look_.castsShadow() || box.isEmpty()) return remove(shadow_);
    if (!shadow_ || restyled) put(shadow_, patchNode(window, shadowPatch(look_, scale_)), nullptr);
    const double reach = shadowReach(look_.shadow);
    setPatchRect(shadow_, box.adjusted(-reach, -reach, reach, reach)
                              .translated(look_.shadow.offset.x, look_.shadow.offset.y));
  }

  enum class Fill { None, Plain, Patch, Exact };

  void updateFill(QQuickWindow& window, const QRectF& box, bool restyled) {
    if (!look_.shows() || box.isEmpty()) {
      fillKind_ = Fill::None;
      return remove(fill_);
    }
    if (look_.plain()) {
      if (fillKind_ != Fill::Plain) put(fill_, window.createRectangleNode(), shadow_);
      fillKind_ = Fill::Plain;
      auto* node = static_cast<QSGRectangleNode*>(fill_);
      if (node->color() != toQColor(look_.fill)) node->setColor(toQColor(look_.fill));
      if (node->rect() != box) node->setRect(box);
      return;
    }
    const Patch patch = boxPatch(look_, {box.width(), box.height()}, scale_);
    const Fill kind = patch.margin > 0 ? Fill::Patch : Fill::Exact;
    if (kind != fillKind_ || restyled || (kind == Fill::Exact && box.size() != exact_)) {
      if (kind == Fill::Patch) {
        put(fill_, patchNode(window, patch), shadow_);
      } else {
        put(fill_, imageNode(window, patch.image), shadow_);
        exact_ = box.size();
      }
      fillKind_ = kind;
    }
    if (kind == Fill::Patch)
      setPatchRect(fill_, box);
    else
      static_cast<QSGImageNode*>(fill_)->setRect(box);
  }

  static QSGImageNode* imageNode(QQuickWindow& window, const QImage& image) {
    auto* node = window.createImageNode();
    node->setOwnsTexture(true);
    node->setTexture(window.createTextureFromImage(image));
    node->setFiltering(QSGTexture::Linear);
    return node;
  }

  void updatePictures(QQuickWindow& window, const std::vector<Picture>& pictures) {
    while (shown_.size() > pictures.size()) {
      QSGNode* last = shown_.back().node;
      remove(last);
      shown_.pop_back();
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
      const Picture& p = pictures[i];
      if (i == shown_.size()) shown_.push_back({nullptr, 0});
      auto& slot = shown_[i];
      if (!slot.node || slot.key != p.image.cacheKey()) {
        auto* node = imageNode(window, p.image);
        if (slot.node) {
          insertChildNodeAfter(node, slot.node);
          QSGNode* former = slot.node;
          remove(former);
        } else {
          appendChildNode(node);
        }
        slot = {node, p.image.cacheKey()};
      }
      if (slot.node->rect() != p.rect) slot.node->setRect(p.rect);
    }
  }

  struct Slot {
    QSGImageNode* node;
    qint64 key;
  };
  BoxLook look_;
  double scale_ = 0;
  QSGNode* shadow_ = nullptr;
  QSGNode* fill_ = nullptr;
  Fill fillKind_ = Fill::None;
  QSizeF exact_;
  std::vector<Slot> shown_;
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

double PaintedItem::scaleFactor() const {
  return window() ? window()->effectiveDevicePixelRatio() : 1;
}

double PaintedItem::snapped(double length) const {
  const double scale = scaleFactor();
  return std::round(length * scale) / scale;
}

QSGNode* PaintedItem::updatePaintNode(QSGNode* former, UpdatePaintNodeData*) {
  const QRectF box(0, 0, width(), height());
  const bool empty = pictures_.empty() && (!look_.shows() || box.isEmpty()) && !look_.castsShadow();
  if (empty) {
    delete former;
    return nullptr;
  }
  auto* node = former ? static_cast<Node*>(former) : new Node;
  node->update(*window(), look_, box, scaleFactor(), pictures_);
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
