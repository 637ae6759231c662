#include "app/messaging/messaging.h"

#include "platform/base/platform.h"

namespace varlo {

namespace {

constexpr std::int64_t kRetryMilliseconds = 500;

std::shared_ptr<PushClient>& client() {
  static std::shared_ptr<PushClient> installed;
  return installed;
}

// A nil argument means that the service is not there yet: ask again a little later.
void connect(const Ref<Object>& owner) {
  const auto service = client();
  if (!service) return;
  service->connect([owner](const Value& argument) {
    if (!argument.isNil()) {
      KesObjectWrapper::raiseUIEvent(*owner, "_fcmconnected", {});
      return;
    }
    platform::current().mainQueue().postAfter(kRetryMilliseconds, [owner] { connect(owner); });
  });
}

}  // namespace

void PushClient::install(std::shared_ptr<PushClient> c) { client() = std::move(c); }
std::shared_ptr<PushClient> PushClient::installed() { return client(); }

// The desk has no analytics service: there is nothing to set up and nothing to send to.
void iFirebaseAnalytics::Initialize() {}
void iFirebaseAnalytics::SendEvent(const Text&, const KesMap&) {}

void iFirebaseNotifications::Initialize(const Ref<Kes>& bi, const Text& eventName) {
  owner_ = platform::makeShared<Object>();
  KesObjectWrapper::setBIAndEventName(*owner_, bi, eventName);
}

void iFirebaseNotifications::SubscribeToTopic(const Text& topic) {
  if (client()) client()->subscribe(topic);
}

void iFirebaseNotifications::UnsubscribeFromTopic(const Text& topic) {
  if (client()) client()->unsubscribe(topic);
}

void iFirebaseNotifications::FCMConnect() {
  if (owner_) connect(owner_);
}

void iFirebaseNotifications::FCMDisconnect() {
  if (client()) client()->disconnect();
}

}  // namespace varlo
