#include "platform/qt/items/rich_page.h"

#include <QMouseEvent>
#include <algorithm>

namespace qt {

namespace {
constexpr ui::Point kInset{5, 8};  // as the editor's
}

RichPage::RichPage(QQuickItem& scroller)
    : PaintedItem(scroller.property("contentItem").value<QQuickItem*>()), scroller_(scroller) {
  setAcceptedMouseButtons(Qt::LeftButton);
  connect(&scroller, SIGNAL(contentYChanged()), this, SLOT(scrolled()));
}

void RichPage::show(const ui::TextView& page) {
  TextLayout::Style style;
  style.font = page.font();
  style.color = page.textColor();
  style.alignment = page.alignment();
  style.width = std::max(1.0, scroller_.width() - 2 * kInset.x);
  layout_ = std::make_unique<TextLayout>(*page.attributedText(), style);
  setSize({scroller_.width(), layout_->size().height + 2 * kInset.y});
  scroller_.setProperty("paintedHeight", height());
  paint(true);
}

void RichPage::paint(bool anew) {
  if (!layout_) return;
  const double top = scroller_.property("contentY").toDouble();
  if (auto strips = strips_.update(*layout_, kInset, width(), {top, top + scroller_.height()},
                                   scaleFactor(), anew, pictures()))
    setPictures(std::move(*strips));
}

void RichPage::mousePressEvent(QMouseEvent* event) { event->setAccepted(layout_ != nullptr); }

// One that became a drag was taken by the scroller.
void RichPage::mouseReleaseEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  const std::string url = layout_->linkAt(ui::Point{at.x(), at.y()} - kInset);
  if (!url.empty() && onLink) onLink(QString::fromStdString(url));
}

}  // namespace qt
