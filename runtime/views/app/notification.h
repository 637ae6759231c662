// KesNotificationWrapper and KesCompletionHandler: a note that the phone shows at a given
// time, and the platform's callback for a finished fetch. Main thread; times are ticks.
#pragma once

#include <functional>

#include "runtime/core/wrapper.h"

namespace kes {

class LocalNotification final : public Object {
 public:
  std::string_view className() const override { return "UILocalNotification"; }
  std::int64_t fireDate = 0;
  Text body;
  bool sound = false;
};

class KesNotificationWrapper final
    : public TypedWrapper<KesNotificationWrapper, LocalNotification> {
 public:
  static constexpr std::string_view kPlatformClass = "UILocalNotification";
  std::string_view className() const override { return "KesNotificationWrapper"; }

  void Initialize(std::int64_t fireDate);
  Text AlertBody() const { return native()->body; }
  void setAlertBody(const Value& body);
  bool PlaySound() const { return native()->sound; }
  void setPlaySound(bool sound) { native()->sound = sound; }
  // Shows it when its time has come; one already due, in a moment. While the application
  // is active the delegate is told as well.
  void Register();
};

class KesCompletionHandler final : public Object {
 public:
  explicit KesCompletionHandler(std::function<void(int)> callback = {})
      : complete(std::move(callback)) {}
  std::string_view className() const override { return "KesCompletionHandler"; }
  std::function<void(int)> complete;
  void Complete() {
    if (complete) complete(0);
  }
};

}  // namespace kes
