// A rich text that is only read, inside the scroller of its view: drawn by the layout that
// measured it, as the toolkit's own editor knows neither runs off the baseline nor
// paragraphs aligned each its own way. A tap on a link goes to onLink. Owned by the editor
// item. Main thread, points.
#pragma once

#include <functional>

#include "platform/qt/drawing/text_strips.h"
#include "platform/ui/controls/text_input.h"

namespace qt {

class RichPage final : public PaintedItem {
  Q_OBJECT
 public:
  // The scroller's viewport shows it.
  explicit RichPage(QQuickItem& scroller);

  // Lays the text out anew, as wide as the scroller.
  void show(const ui::TextView& page);
  std::function<void(const QString& url)> onLink;

 protected:
  void scaleChanged() override { paint(true); }
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private Q_SLOTS:
  void scrolled() { paint(false); }

 private:
  void paint(bool anew);

  QQuickItem& scroller_;
  std::unique_ptr<TextLayout> layout_;
  TextStrips strips_;
};

}  // namespace qt
