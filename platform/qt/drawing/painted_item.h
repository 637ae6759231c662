// An item that shows a box (fill, border, rounded corners, shadow) and pictures on top
// of it. Works alike with the hardware and the software renderer. Main thread, but for
// updatePaintNode(), which the render thread calls while the main one stands still.
// Points.
#pragma once

#include <QQuickItem>
#include <optional>
#include <vector>

#include "platform/qt/drawing/box_art.h"
#include "platform/qt/drawing/rounded_clip.h"

namespace qt {

struct Picture {
  QImage image;
  QRectF rect;
  bool operator==(const Picture& o) const {
    return image.cacheKey() == o.image.cacheKey() && rect == o.rect;
  }
};

class PaintedItem : public QQuickItem {
  Q_OBJECT
 public:
  explicit PaintedItem(QQuickItem* parent = nullptr);

  const BoxLook& look() const { return look_; }
  void setLook(const BoxLook& look);
  const std::vector<Picture>& pictures() const { return pictures_; }
  void setPictures(std::vector<Picture> pictures);
  // The round corners around the item, where they cut into it: children are cut by the
  // toolkit in straight lines.
  void setCut(const std::optional<RoundedClip>& cut);
  // Pixels a point where the item is shown.
  double scaleFactor() const;
  // The nearest place on the pixel grid.
  double snapped(double length) const;

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;
  void geometryChange(const QRectF& now, const QRectF& former) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;
  // The pixel ratio has changed: what was painted for the former one is to be redone.
  virtual void scaleChanged() {}

 private:
  class Node;
  class PatchNode;
  BoxLook look_;
  std::vector<Picture> pictures_;
  std::optional<RoundedClip> cut_;
};

}  // namespace qt
