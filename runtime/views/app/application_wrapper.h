// KesApplicationWrapper: the application as a whole: its root controller, the platform's
// other programs, the permission to notify.
//
// A plain copyable member; all of them stand for the one application of the process.
// Main thread. Nothing here throws but KeyController on something that is no controller.
#pragma once

#include <functional>

#include "runtime/core/map.h"
#include "runtime/core/wrapper.h"

namespace kes {

// The object behind the wrappers, which launch options and the like are filed with.
class ApplicationObject final : public Object {
 public:
  std::string_view className() const override { return "UIApplication"; }
  static ApplicationObject& shared();

  // What a push service would be asked for; without it the request is only logged.
  std::function<void()> onRegisterForRemoteNotifications;
  bool alerts = false, badges = false, sounds = false;  // what the user was asked to allow
};

class KesApplicationWrapper final : public TypedWrapper<KesApplicationWrapper, ApplicationObject> {
 public:
  static constexpr std::string_view kPlatformClass = "UIApplication";
  KesApplicationWrapper();
  std::string_view className() const override { return "KesApplicationWrapper"; }

  // The root of the key window: a page, a navigation controller or a side menu.
  Value KeyController() const;
  void setKeyController(const Value& controller);

  // Handed to the platform: http, https, tel and mailto. False when it was refused.
  bool OpenURL(const Value& url);
  bool CanOpenURL(const Value& url) const;
  void RegisterUserNotifications(bool alert, bool badge, bool sound);
  void RegisterForRemoteNotifications();
  KesMap LaunchOptions() const;  // empty when there were none
};

}  // namespace kes
