// KesAppDelegate: where the platform calls in, and where each of its calls becomes an
// event of the main module.
//
// Owned by the program, which calls these operations on the main thread in the
// platform's order. The class "kes_main" has to be in the registry. Events of leaving
// the foreground are raised inside the call, those of coming back and of pushes from the
// queue. What "application_start:" throws passes through didFinishLaunching().
#pragma once

#include "platform/ui/application.h"
#include "runtime/core/map.h"
#include "runtime/views/app/notification.h"
#include "runtime/views/pages/navigation_controller.h"

namespace kes {

class KesAppDelegate final : public ui::ApplicationDelegate {
 public:
  KesAppDelegate();
  ~KesAppDelegate() override;
  // The one of this process, or null.
  static KesAppDelegate* current();

  const Ref<ui::Window>& window() const { return window_; }
  const Ref<Kes>& bi() const { return bi_; }
  const Value& lastError() const { return lastError_; }

  // Makes the window and the main module, raises "application_start:", shows the window.
  bool didFinishLaunching(const Ref<Dictionary>& launchOptions = nullptr);
  bool openURL(const Value& url, const Value& sourceApplication = {}, const Value& annotation = {});
  void didReceiveLocalNotification(const Ref<LocalNotification>& notification);
  void didRegisterForRemoteNotifications(std::vector<std::uint8_t> deviceToken);
  void didFailToRegisterForRemoteNotifications(const Value& error);
  void didReceiveRemoteNotification(const Ref<Dictionary>& userInfo);
  void didReceiveRemoteNotification(const Ref<Dictionary>& userInfo,
                                    std::function<void(int)> fetchCompletion);

  void willResignActive() override;
  void didEnterBackground() override;
  void willEnterForeground() override;
  void didBecomeActive() override;
  void willTerminate() override {}

 private:
  Ref<ui::Window> window_;
  Ref<Kes> bi_;
  Value lastError_;
};

}  // namespace kes
