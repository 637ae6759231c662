// KesSideMenuController: a page with a menu at its left, at its right, or both.
//
// A plain copyable member over a drawer. Its object can also be reached by name: class
// "MMDrawerController", field "shouldStretchDrawer". Main thread, points. Operations
// throw "Object was not initialized (%@)" before Initialize.
#pragma once

#include "platform/ui/pages/drawer_controller.h"
#include "runtime/core/class_table.h"
#include "runtime/views/pages/bar_button_item.h"

namespace kes {

class KesDrawerController final : public ui::DrawerController {
 public:
  using DrawerController::DrawerController;
  static void describe(ClassBuilder<KesDrawerController>& c) {
    c.name("MMDrawerController");
    c.storedField<&ui::DrawerController::shouldStretchDrawer>("shouldStretchDrawer");
  }
};

class KesSideMenuController final
    : public TypedWrapper<KesSideMenuController, ui::DrawerController> {
 public:
  static constexpr std::string_view kPlatformClass = "MMDrawerController";
  std::string_view className() const override { return "KesSideMenuController"; }

  // Pages or navigation controllers; left and right may be uninitialised.
  void Initialize(const KesObjectWrapper& left, const KesObjectWrapper& center,
                  const KesObjectWrapper& right);
  bool OpenGesturesEnabled() const { return native()->openGestureMask != 0; }
  void setOpenGesturesEnabled(bool enabled) {
    native()->openGestureMask = enabled ? ui::drawer_gesture::kPanEdge : 0;
  }
  double LeftMenuMaxWidth() const { return native()->maximumLeftDrawerWidth(); }
  void setLeftMenuMaxWidth(double width) { native()->setMaximumLeftDrawerWidth(width); }
  double RightMenuMaxWidth() const { return native()->maximumRightDrawerWidth(); }
  void setRightMenuMaxWidth(double width) { native()->setMaximumRightDrawerWidth(width); }
  // Of a menu on this screen: what is measured on its page before Initialize needs it.
  static double MenuWidth();
  void OpenLeftMenu() { native()->openDrawer(ui::DrawerSide::Left, true); }
  void OpenRightMenu() { native()->openDrawer(ui::DrawerSide::Right, true); }
  void CloseMenu() { native()->closeDrawer(true); }
  KesBarButtonItemWrapper CreateBarButton(const Value& tag) const;
};

}  // namespace kes
