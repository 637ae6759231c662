#include "runtime/views/app/application_wrapper.h"

#include "platform/ui/application.h"
#include "platform/ui/values/link.h"
#include "runtime/core/language/common.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

ui::Window* mainWindow() {
  auto* app = ui::Application::current();
  if (auto* window = app ? app->keyWindow() : nullptr) return window;
  auto* delegate = KesAppDelegate::current();
  return delegate ? delegate->window().get() : nullptr;
}

}  // namespace

ApplicationObject& ApplicationObject::shared() {
  static const Ref<ApplicationObject> only = platform::makeShared<ApplicationObject>();
  return *only;
}

KesApplicationWrapper::KesApplicationWrapper() {
  wrap(Ref<ApplicationObject>(&ApplicationObject::shared()));
}

Value KesApplicationWrapper::KeyController() const {
  auto* window = mainWindow();
  return window ? Value(Ref<ui::ViewController>(window->rootViewController())) : Value();
}

void KesApplicationWrapper::setKeyController(const Value& controller) {
  const Value inner = detail::unwrapped(controller);
  auto root = inner.as<ui::ViewController>();
  if (!root)
    throw KesException("Invalid object type",
                       formatText("Expected: %@, object type: %@",
                                  {"UIViewController", KesCommon::GetType(inner)}));
  if (auto* window = mainWindow()) window->setRootViewController(std::move(root));
}

bool KesApplicationWrapper::OpenURL(const Value& url) {
  auto* app = ui::Application::current();
  return app && app->openUrl(textForm(url));
}

bool KesApplicationWrapper::CanOpenURL(const Value& url) const {
  return ui::outgoingLink(textForm(url)).has_value();
}

void KesApplicationWrapper::RegisterUserNotifications(bool alert, bool badge, bool sound) {
  auto& application = *native();
  application.alerts = alert;
  application.badges = badge;
  application.sounds = sound;
}

void KesApplicationWrapper::RegisterForRemoteNotifications() {
  if (const auto ask = native()->onRegisterForRemoteNotifications)
    ask();
  else
    KesCommon::Log("Remote notifications asked for; this device has no service for them.");
}

KesMap KesApplicationWrapper::LaunchOptions() const {
  const auto* attached = peekMap(*native());
  KesMap options = attached ? KesMap::fromBoxed(attached->get("launchoptions")) : KesMap();
  if (!options.IsInitialized()) options.Initialize();
  return options;
}

}  // namespace kes
