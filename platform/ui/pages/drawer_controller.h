// A centre page with a menu that slides in from the left or the right over it.
//
// Owns the three controllers. An open drawer puts a scrim over the centre and hides it
// from focus and assistive technology. It closes by a swipe, a tap beside it, Escape or
// Back; it opens by a swipe from the edge where the mask allows, unless the centre has a
// page behind the one on show: then that swipe is the centre's. The focus goes to the
// panel's current row and, where the user closes it, back to where it was. Main thread,
// points.
#pragma once

#include "platform/ui/pages/view_controller.h"
#include "platform/ui/values/style.h"

namespace ui {

enum class DrawerSide { None = 0, Left = 1, Right = 2 };

// Bits of the two gesture masks.
namespace drawer_gesture {
inline constexpr int kPanBar = 2, kPanCenter = 4, kPanEdge = 8, kTapBar = 16, kTapCenter = 32,
                     kPanDrawer = 64;
}

class DrawerController : public ViewController {
 public:
  DrawerController(Ref<ViewController> center, Ref<ViewController> left,
                   Ref<ViewController> right);  // left and right may be null
  ~DrawerController() override;
  std::string_view className() const override { return "MMDrawerController"; }

  ViewController* center() const { return center_.get(); }
  ViewController* left() const { return left_.get(); }
  ViewController* right() const { return right_.get(); }
  void setCenter(Ref<ViewController> center);

  // How wide a drawer is over a page so wide, unless it is given another maximum.
  static double widthIn(double all, double maximum = style::kDrawerWidth);
  double maximumLeftDrawerWidth() const { return leftWidth_; }
  void setMaximumLeftDrawerWidth(double width);
  double maximumRightDrawerWidth() const { return rightWidth_; }
  void setMaximumRightDrawerWidth(double width);

  DrawerSide openSide() const { return open_; }
  void openDrawer(DrawerSide side, bool animated, std::function<void()> done = {});
  void closeDrawer(bool animated, std::function<void()> done = {});

  int openGestureMask = drawer_gesture::kPanEdge;
  int closeGestureMask = drawer_gesture::kPanCenter | drawer_gesture::kPanDrawer;
  bool shouldStretchDrawer = true;  // a pull beyond the width gives way a little

  Ref<ViewController> beginPan(Point at, Point moved) override;
  void pan(Point moved) override;
  void endPan(Point moved, double velocityX) override;
  bool goBack() override;
  bool hasPageBehind() const override { return center_ && center_->hasPageBehind(); }
  bool openMenu() override;
  View* cover() override { return center_ ? center_->cover() : nullptr; }
  View* landmark() override { return center_ ? center_->landmark() : nullptr; }

 protected:
  Ref<View> loadView() override;
  std::vector<Ref<ViewController>> shownChildren() override;

 private:
  void layOut();
  double widthOf(DrawerSide side);
  Rect panelFrame(DrawerSide side, double shown);  // shown: 0 closed to 1 open
  ViewController* controllerOf(DrawerSide side) const;
  void settle(DrawerSide side, bool open, bool animated, std::function<void()> done);
  void place(DrawerSide side, double shown);
  void showSide(DrawerSide side, bool animated);
  void hideSide(DrawerSide side);
  void dismiss();
  void giveFocusBack();

  Ref<ViewController> center_, left_, right_;
  Ref<View> scrim_;
  WeakRef<View> former_;  // what had the focus before it opened
  double leftWidth_, rightWidth_;
  DrawerSide open_ = DrawerSide::None;
  DrawerSide panning_ = DrawerSide::None;
  double panStart_ = 0;
};

}  // namespace ui
