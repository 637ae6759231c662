#include "runtime/views/pages/side_menu.h"

#include "runtime/views/base/device.h"

namespace kes {

namespace {

Ref<ui::ViewController> controllerOf(const Value& v) { return v.as<ui::ViewController>(); }

}  // namespace

void KesSideMenuController::Initialize(const KesObjectWrapper& left, const KesObjectWrapper& center,
                                       const KesObjectWrapper& right) {
  const auto drawer = platform::makeShared<KesDrawerController>(controllerOf(center.object()),
                                                                controllerOf(left.objectOrNull()),
                                                                controllerOf(right.objectOrNull()));
  drawer->closeGestureMask = ui::drawer_gesture::kPanCenter | ui::drawer_gesture::kPanDrawer;
  setObject(drawer);
}

double KesSideMenuController::MenuWidth() {
  return ui::DrawerController::widthIn(device::screenBounds().width);
}

KesBarButtonItemWrapper KesSideMenuController::CreateBarButton(const Value& tag) const {
  auto button = KesBarButtonItemWrapper::fromBoxed(ui::BarButtonItem::drawer());
  button.setTag(tag);
  return button;
}

}  // namespace kes
