// One page: it makes a view when first asked for it, says what the bars show above and
// below, and is told when it comes and goes.
//
// Owned by its container (navigation stack, drawer, window) and by the application; it
// knows its container weakly. Main thread. viewWillAppear() and viewWillDisappear()
// come in turns, each time the page is about to show or go, only while its container
// is itself on a visible window. Nothing here throws but what an override throws.
#pragma once

#include "platform/ui/pages/bar_item.h"
#include "platform/ui/tree/view.h"

namespace ui {

class NavigationController;
class DrawerController;
class ViewController;

// What a page asks the navigation bar to show.
class NavigationItem {
 public:
  explicit NavigationItem(ViewController& page) : page_(page) {}
  const std::string& title() const { return title_; }
  void setTitle(std::string title);
  const std::string& prompt() const { return prompt_; }  // empty: no prompt line
  void setPrompt(std::string prompt);
  bool hidesBackButton() const { return hidesBack_; }
  void setHidesBackButton(bool hides);
  View* titleView() const { return titleView_.get(); }
  void setTitleView(Ref<View> view);
  const BarItems& leftItems() const { return left_; }
  void setLeftItems(BarItems items);
  const BarItems& rightItems() const { return right_; }  // the first stands outermost
  void setRightItems(BarItems items);

 private:
  ViewController& page_;
  std::string title_, prompt_;
  Ref<View> titleView_;
  BarItems left_, right_;
  bool hidesBack_ = false;
};

class ViewController : public platform::Shared {
 public:
  ViewController();
  ~ViewController() override;
  ViewController(const ViewController&) = delete;
  ViewController& operator=(const ViewController&) = delete;
  std::string_view className() const override { return "UIViewController"; }

  View& view();  // made by loadView() at the first call, with the screen's size
  bool viewLoaded() const { return view_.get() != nullptr; }
  const std::string& title() const { return title_; }
  void setTitle(std::string title);  // the navigation item's too
  NavigationItem& navigationItem() { return navigationItem_; }
  const BarItems& toolbarItems() const { return toolbar_; }
  void setToolbarItems(BarItems items);

  ViewController* parent() const { return parent_; }
  NavigationController* navigationController() const;  // the nearest above, or null
  DrawerController* drawerController() const;
  bool appeared() const { return appeared_; }

  // Containers call this; it tells the page and the pages it shows in turn.
  void setAppeared(bool appeared, bool animated);
  // Takes a step back if there is one (close the drawer, pop a page); true when taken.
  virtual bool goBack() { return false; }
  // Whether goBack() would leave the page on show for another.
  virtual bool hasPageBehind() const { return false; }
  // Opens the menu that belongs to the page; true when there is one.
  virtual bool openMenu() { return false; }
  // Where a progress overlay goes so that it covers the content and leaves the bars and the
  // menu to the user; null: nothing less than the window.
  virtual View* cover() { return nullptr; }
  // What stands for the page when it comes: the focus goes there. May be null.
  virtual View* landmark() { return nullptr; }
  // A swipe that begins in this controller, in window points: whoever of it and the
  // controllers inside takes it, or null. That one hears how it goes on and, once, how it
  // ends (points, points a second).
  virtual Ref<ViewController> beginPan(Point /*at*/, Point /*moved*/) { return nullptr; }
  virtual void pan(Point /*moved*/) {}
  virtual void endPan(Point /*moved*/, double /*velocityX*/) {}

 protected:
  virtual Ref<View> loadView();
  virtual void viewWillAppear(bool /*animated*/) {}
  virtual void viewWillDisappear(bool /*animated*/) {}
  // The controllers inside that are on show whenever this one is.
  virtual std::vector<Ref<ViewController>> shownChildren() { return {}; }
  // The navigation item or toolbar of a page inside has changed.
  virtual void barsChanged(ViewController& /*page*/) {}
  static void setParent(ViewController& child, ViewController* parent) { child.parent_ = parent; }

 private:
  friend class NavigationItem;
  void tellBars();

  Ref<View> view_;
  std::string title_;
  NavigationItem navigationItem_{*this};
  BarItems toolbar_;
  ViewController* parent_ = nullptr;
  bool appeared_ = false;
};

}  // namespace ui
