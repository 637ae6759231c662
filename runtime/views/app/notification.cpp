#include "runtime/views/app/notification.h"

#include <algorithm>

#include "platform/base/platform.h"
#include "platform/ui/application.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

constexpr std::int64_t kLongestWait = std::int64_t{365} * 24 * 3600 * 1000;

void fire(const Ref<LocalNotification>& notification) {
  auto* app = ui::Application::current();
  if (!app) return;
  app->notify({{}, notification->body.str(), notification->sound});
  auto* delegate = KesAppDelegate::current();
  if (delegate && app->state() == ui::Application::State::Active)
    delegate->didReceiveLocalNotification(notification);
}

}  // namespace

void KesNotificationWrapper::Initialize(std::int64_t fireDate) {
  const auto notification = platform::makeShared<LocalNotification>();
  notification->fireDate = fireDate;
  setObject(notification);
}

void KesNotificationWrapper::setAlertBody(const Value& body) { native()->body = textForm(body); }

void KesNotificationWrapper::Register() {
  auto* app = ui::Application::current();
  if (!app) return;
  const std::int64_t now = platform::current().clock().now();
  const std::int64_t due = std::clamp(native()->fireDate, now, now + kLongestWait);
  app->timers().start(due - now, [notification = native()] { fire(notification); });
}

}  // namespace kes
