#include "platform/qt/items/scroll_item.h"

#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QVariant>
#include <algorithm>

#include "platform/qt/drawing/colors.h"
#include "platform/qt/items/qml_parts.h"
#include "platform/ui/application.h"

namespace qt {

ScrollItem::ScrollItem(Stage& stage, ui::View& view) : ViewItem(stage, view) {
  scroller_ = stage.parts.make(QStringLiteral("Scroller"));
  if (!scroller_) return;
  scroller_->setParentItem(this);
  content_ = scroller_->property("contentItem").value<QQuickItem*>();
  connect(scroller_.get(), SIGNAL(contentXChanged()), this, SLOT(scrolled()));
  connect(scroller_.get(), SIGNAL(contentYChanged()), this, SLOT(scrolled()));
  connect(scroller_.get(), SIGNAL(movementStarted()), this, SLOT(began()));
  connect(scroller_.get(), SIGNAL(movementEnded()), this, SLOT(ended()));
}

ScrollItem::~ScrollItem() {
  if (scroller_) scroller_->disconnect(this);
}

QQuickItem* ScrollItem::inside() { return content_ ? content_ : this; }

bool ScrollItem::moving() const { return scroller_ && scroller_->property("moving").toBool(); }

bool ScrollItem::turning() const { return scroller_ && scroller_->property("turning").toBool(); }

void ScrollItem::stop() {
  if (scroller_) QMetaObject::invokeMethod(scroller_.get(), "cancelFlick");
}

void ScrollItem::sync(ui::View& view, ui::Change changed) {
  auto& scroll = static_cast<ui::ScrollView&>(view);
  if (!scroller_) return;
  setting_ = true;
  scroller_->setSize(size());
  const ui::Size content = scroll.contentSize();
  scroller_->setProperty("contentWidth", content.width);
  scroller_->setProperty("contentHeight", content.height);
  const ui::Point offset = scroll.offset();
  if (offset != reported_ || changed == ui::Change::All) {
    // A bounce beyond the edge stays where it is while the view rests at the edge.
    reported_ = offset;
    scroller_->setProperty("contentX", offset.x);
    scroller_->setProperty("contentY", offset.y);
  }
  setting_ = false;
  const bool software =
      window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
  scroller_->setProperty("pixelAligned", software);
  scroller_->setProperty("pixelRatio", scaleFactor());
  scroller_->setProperty("interactive", scroll.scrollEnabled());
  scroller_->setProperty("bounces", scroll.bounces());
  scroller_->setProperty("paging", scroll.paging());
  scroller_->setProperty("showsVertical", scroll.showsVerticalIndicator());
  scroller_->setProperty("showsHorizontal", scroll.showsHorizontalIndicator());
  scroller_->setProperty("fadeHeight", scroll.fadeHeight());
  scroller_->setProperty("fadeColor", toQColor(scroll.moreFade().value_or(ui::kClear)));
}

void ScrollItem::scrolled() {
  if (setting_) return;
  const auto held = view();
  auto* scroll = static_cast<ui::ScrollView*>(held.get());
  if (!scroll) return;
  const ui::Point at{scroller_->property("contentX").toDouble(),
                     scroller_->property("contentY").toDouble()};
  const ui::Point most = scroll->maxOffset();
  // What a hook makes of it is taken over by the next pass.
  reported_ = {std::clamp(at.x, 0.0, most.x), std::clamp(at.y, 0.0, most.y)};
  stage().guarded([&] { scroll->setOffset(at); });
  stage().changed();
}

void ScrollItem::began() {
  auto* app = ui::Application::current();
  if (!app) return;
  stage().guarded([&] {
    app->cancelPointer();
    if (const auto held = view()) app->animator().cancel(*held, ui::Property::Value);
  });
}

void ScrollItem::ended() { stage().changed(); }

}  // namespace qt
