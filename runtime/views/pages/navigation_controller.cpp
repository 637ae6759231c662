#include "runtime/views/pages/navigation_controller.h"

namespace kes {

void KesNavigationControllerWrapper::Initialize(const Ref<Kes>& bi, const Text& eventName) {
  const auto controller = platform::makeShared<KesNavigationController>();
  setBIAndEventName(*controller, bi, eventName);
  controller->toolbarTranslucent = false;
  setObject(controller);
}

std::int32_t KesNavigationControllerWrapper::SupportedOrientations() const {
  const auto controller = object().as<KesNavigationController>();
  return controller ? controller->supportedOrientations : 0;
}

void KesNavigationControllerWrapper::setSupportedOrientations(std::int32_t mask) {
  if (const auto controller = object().as<KesNavigationController>())
    controller->supportedOrientations = mask;
}

void KesNavigationControllerWrapper::SetPagesStack(const KesList& pages) {
  ui::NavigationController::Pages stack;
  for (const Value& v : pages) stack.push_back(KesPage::fromBoxed(v).native());
  native()->setViewControllers(std::move(stack));
}

void KesNavigationControllerWrapper::ShowPage2(const KesPage& page, bool animated) {
  const auto controller = page.native();
  const auto nav = native();
  if (nav->contains(*controller))
    nav->popTo(*controller, animated);
  else
    nav->push(controller, animated);
}

}  // namespace kes
