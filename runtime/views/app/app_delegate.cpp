#include "runtime/views/app/app_delegate.h"

#include "runtime/core/array.h"
#include "runtime/core/language/common.h"
#include "runtime/core/language/module.h"
#include "runtime/views/app/application_wrapper.h"

namespace kes {

namespace {

KesAppDelegate* g_current = nullptr;

constexpr std::string_view kMainClass = "kes_main";

}  // namespace

KesAppDelegate::KesAppDelegate() {
  g_current = this;
  if (auto* app = ui::Application::current()) app->setDelegate(this);
}

KesAppDelegate::~KesAppDelegate() {
  // Another one may have taken its place already.
  if (g_current != this) return;
  g_current = nullptr;
  if (auto* app = ui::Application::current()) app->setDelegate(nullptr);
}

KesAppDelegate* KesAppDelegate::current() { return g_current; }

bool KesAppDelegate::didFinishLaunching(const Ref<Dictionary>& launchOptions) {
  KesCommon::Log("didFinishLaunchingWithOptions");
  auto* app = ui::Application::current();
  window_ = platform::makeShared<ui::Window>(app ? app->screenBounds() : ui::Rect{});
  const auto* main = ClassRegistry::instance().find(kMainClass);
  const auto module = main ? Value(main->make()).as<KesStaticModule>() : nullptr;
  if (!module) throw KesException(formatText("The main module %@ is not registered", {kMainClass}));
  bi_ = module->bi();

  KesNavigationControllerWrapper navigation;
  navigation.Initialize(bi_, "main");
  window_->setRootViewController(navigation.native());

  const KesApplicationWrapper application;
  KesMap options;
  if (launchOptions)
    options.setDict(launchOptions);
  else
    options.Initialize();
  KesObjectWrapper::getMap(*application.native()).set("launchoptions", options);

  // The app's first sub finds a window that has its size; it is shown once the sub has filled
  // the page, so that no empty one flashes.
  window_->makeKey();
  const Value param = navigation;
  bi_->raiseEvent(nullptr, "application_start:", std::span(&param, 1));
  window_->show();
  return true;
}

bool KesAppDelegate::openURL(const Value& url, const Value& sourceApplication,
                             const Value& annotation) {
  const Value params[] = {nilToNull(url), nilToNull(sourceApplication), nilToNull(annotation)};
  KesCommon::Log(
      formatText("openURL: %@, %@, %@",
                 {params[0].description(), params[1].description(), params[2].description()}));
  if (!bi_) return true;
  const Args all(params);
  if (bi_->hasMethod("application_openurl:::"))
    return Kes::ObjectToBoolean(bi_->raiseEvent(nullptr, "application_openurl:::", all));
  if (bi_->hasMethod("application_openurl::"))
    return Kes::ObjectToBoolean(bi_->raiseEvent(nullptr, "application_openurl::", all.first(2)));
  return true;
}

void KesAppDelegate::didReceiveLocalNotification(const Ref<LocalNotification>& notification) {
  if (!bi_) return;
  const Value param = KesNotificationWrapper::fromBoxed(notification);
  bi_->raiseEvent(nullptr, "application_receivelocalnotification:", std::span(&param, 1));
}

void KesAppDelegate::didRegisterForRemoteNotifications(std::vector<std::uint8_t> deviceToken) {
  if (!bi_) return;
  bi_->raiseUIEvent(nullptr, "application_pushtoken::",
                    {true, KesArray::initBytesWithData(std::move(deviceToken))});
}

void KesAppDelegate::didFailToRegisterForRemoteNotifications(const Value& error) {
  lastError_ = error;
  Kes::shared().setLastError(error);
  if (bi_) bi_->raiseUIEvent(nullptr, "application_pushtoken::", {false, Value::null()});
}

void KesAppDelegate::didReceiveRemoteNotification(const Ref<Dictionary>& userInfo) {
  if (!bi_) return;
  const KesMap message = KesMap::convertToMap(*userInfo);
  if (bi_->hasMethod("application_remotenotification::"))
    bi_->raiseUIEvent(nullptr, "application_remotenotification::",
                      {message, platform::makeShared<KesCompletionHandler>()});
  else
    bi_->raiseUIEvent(nullptr, "application_remotenotification:", {message});
}

void KesAppDelegate::didReceiveRemoteNotification(const Ref<Dictionary>& userInfo,
                                                  std::function<void(int)> fetchCompletion) {
  if (bi_ && bi_->hasMethod("application_remotenotification::")) {
    bi_->raiseUIEvent(nullptr, "application_remotenotification::",
                      {KesMap::convertToMap(*userInfo),
                       platform::makeShared<KesCompletionHandler>(std::move(fetchCompletion))});
    return;
  }
  // Nobody could call it: the platform is told at once.
  if (fetchCompletion) fetchCompletion(0);
  didReceiveRemoteNotification(userInfo);
}

void KesAppDelegate::willResignActive() {
  if (bi_) bi_->raiseEvent(nullptr, "application_inactive", {});
}
void KesAppDelegate::didEnterBackground() {
  if (bi_) bi_->raiseEvent(nullptr, "application_background", {});
}
void KesAppDelegate::willEnterForeground() {
  if (bi_) bi_->raiseUIEvent(nullptr, "application_foreground", {});
}
void KesAppDelegate::didBecomeActive() {
  if (bi_) bi_->raiseUIEvent(nullptr, "application_active", {});
}

}  // namespace kes
