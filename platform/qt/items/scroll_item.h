// A scroll view: the toolkit's kinetic scroller around the items of the content. The
// offset goes both ways: what the user moves ends in ScrollView::setOffset(), what the
// program sets moves the scroller.
#pragma once

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/scroll_view.h"

namespace qt {

class ScrollItem final : public ViewItem {
  Q_OBJECT
 public:
  ScrollItem(Stage& stage, ui::View& view);
  ~ScrollItem() override;

  QQuickItem* inside() override;
  ui::Point insideOffset() const override { return ui::Point{} - reported_; }
  bool takesTouches() const override { return true; }
  bool busy() const override { return moving() || turning(); }
  // Under a finger, flicked or on its way back from a bounce.
  bool moving() const;
  // On its way to the place where a page rests.
  bool turning() const;
  void stop();

 protected:
  void sync(ui::View& view, ui::Change changed) override;

 private Q_SLOTS:
  void scrolled();
  void began();
  void ended();

 private:
  std::unique_ptr<QQuickItem> scroller_;
  QQuickItem* content_ = nullptr;
  ui::Point reported_;    // the offset that view and scroller agree on
  bool setting_ = false;  // the scroller is being moved by us
};

}  // namespace qt
