// Cuts what paints itself, texts being edited, pages and other controls of the toolkit's, at
// the round corners of an item that it is in. The software renderer clips in straight lines
// only, so what lies under the corners is kept before the inside is drawn and put back after
// it. With a graphics card it does nothing. Owned by the item; main thread, its nodes are the
// render thread's. Points.
#pragma once

#include <QQuickItem>
#include <memory>

namespace qt {

class RoundCorners {
 public:
  // The most that may be seen of what is cut so: the renderer leaves out what lies under
  // something opaque, which here is to be seen at the corners.
  static constexpr double kMostOpacity = 0.999;

  RoundCorners(QQuickItem& of, double radius);
  ~RoundCorners();

  // The item's size or its radius may have changed.
  void update(double radius);
  // Whether one of the item's children is of this.
  bool has(const QQuickItem& item) const;

 private:
  QQuickItem& of_;
  std::unique_ptr<QQuickItem> keeper_, restorer_;  // behind and in front of all the others
};

}  // namespace qt
