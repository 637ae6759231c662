// A stack of pages with a navigation bar above and a toolbar below.
//
// Owns its pages. Its view holds the top page, the two bars, and for the time of a
// slide the page that leaves; the bar's height includes the status bar's. Each page's
// view begins below the bar. The last page is never popped. A swipe from the left edge goes
// back, as the back button does. Taps on pages that slide, and on the one that came for a
// moment after, do nothing: they were meant for what was there before. Main thread.
#pragma once

#include "platform/ui/pages/view_controller.h"

namespace ui {

class BarView;
class LayerView;

class NavigationController : public ViewController {
 public:
  NavigationController();
  ~NavigationController() override;
  std::string_view className() const override { return "UINavigationController"; }

  using Pages = std::vector<Ref<ViewController>>;
  const Pages& viewControllers() const { return pages_; }  // bottom first
  ViewController* topViewController() const {
    return pages_.empty() ? nullptr : pages_.back().get();
  }
  ViewController* visibleViewController() const { return topViewController(); }
  bool contains(const ViewController& page) const;

  // A page that is already on the stack is not pushed again.
  void push(Ref<ViewController> page, bool animated);
  Ref<ViewController> pop(bool animated);  // null when there is nothing to pop
  void popTo(const ViewController& page, bool animated);
  void popToRoot(bool animated);
  void setViewControllers(Pages pages, bool animated = false);

  bool navigationBarHidden() const { return barHidden_; }
  void setNavigationBarHidden(bool hidden, bool animated = false);
  bool toolbarHidden() const { return toolbarHidden_; }  // hidden at first
  void setToolbarHidden(bool hidden, bool animated = false);
  bool toolbarTranslucent = true;
  BarView& navigationBar() { return *bar_; }
  BarView& toolbar() { return *toolbar_; }

  bool goBack() override;
  bool hasPageBehind() const override { return pages_.size() > 1; }
  View* cover() override;
  View* landmark() override;
  Ref<ViewController> beginPan(Point at, Point moved) override;
  void pan(Point moved) override;
  void endPan(Point moved, double velocityX) override;

 protected:
  Ref<View> loadView() override;
  Pages shownChildren() override;
  void barsChanged(ViewController& page) override;

 private:
  enum class Slide { None, Forward, Backward };
  void replaceTop(Pages pages, Slide slide);
  void showTop(ViewController* former, Slide way);
  void slide(View& leaving, View& coming, Slide way);
  void fillBars();
  void layOut();
  bool sliding() const;
  void setBarHidden(BarView& bar, bool& state, bool hidden, bool animated);
  Rect barFrame();
  Rect toolbarFrame();
  Rect contentFrame();

  Pages pages_;
  Ref<BarView> bar_, toolbar_;
  Ref<View> container_;         // holds the pages' views, under the bars
  Ref<LayerView> cover_;        // in front of them
  std::int64_t slideEnds_ = 0;  // on the monotonic clock
  bool panning_ = false;        // a finger has the page on top
  bool swiped_ = false;         // …and has brought it half the way out
  bool barHidden_ = false, toolbarHidden_ = true;
};

}  // namespace ui
