#include "app/messaging/messaging.h"

#include "app/messaging/analytics_sink.h"
#include "platform/base/platform.h"
#include "runtime/core/language/common.h"

namespace varlo {

namespace {

constexpr std::int64_t kRetryMilliseconds = 500;

std::shared_ptr<push::PushLine>& line() {
  static std::shared_ptr<push::PushLine> used;
  return used;
}

std::shared_ptr<AnalyticsSink>& sink() {
  static auto installed = std::make_shared<AnalyticsSink>();
  return installed;
}

}  // namespace

void AnalyticsSink::install(std::shared_ptr<AnalyticsSink> s) {
  sink() = s ? std::move(s) : std::make_shared<AnalyticsSink>();
}
AnalyticsSink& AnalyticsSink::installed() { return *sink(); }

void iFirebaseAnalytics::Initialize() { AnalyticsSink::installed().configure(); }
void iFirebaseAnalytics::SendEvent(const Text& name, const KesMap& parameters) {
  AnalyticsSink::installed().logEvent(name, parameters.ToDictionary());
}

// A row of tries, half a second apart. A new one takes the place of the one before, so that
// going to and fro between programs does not multiply them; leaving ends it.
struct iFirebaseNotifications::Tries : std::enable_shared_from_this<Tries> {
  explicit Tries(Ref<Object> who) : owner(std::move(who)) {}

  void connect(int row) {
    const auto service = line();
    if (!service || row != current) return;
    service->connect([self = shared_from_this(), row](const auto& connection) {
      const Value argument = connection ? Value(*connection) : Value();
      if (!argument.isNil()) {
        KesObjectWrapper::raiseUIEvent(*self->owner, "_fcmconnected", {});
        return;
      }
      platform::current().mainQueue().postAfter(kRetryMilliseconds,
                                                [self, row] { self->connect(row); });
    });
  }

  const Ref<Object> owner;
  int current = 0;
  bool saidThatThereIsNone = false;
};

void iFirebaseNotifications::useLine(std::shared_ptr<push::PushLine> l) { line() = std::move(l); }

void iFirebaseNotifications::Initialize(const Ref<Kes>& bi, const Text& eventName) {
  owner_ = platform::makeShared<Object>();
  KesObjectWrapper::setBIAndEventName(*owner_, bi, eventName);
  tries_ = std::make_shared<Tries>(owner_);
}

void iFirebaseNotifications::SubscribeToTopic(const Text& topic) {
  if (line()) line()->subscribe(topic.str());
}

void iFirebaseNotifications::UnsubscribeFromTopic(const Text& topic) {
  if (line()) line()->unsubscribe(topic.str());
}

void iFirebaseNotifications::FCMConnect() {
  if (!tries_) return;
  if (!line() && !std::exchange(tries_->saidThatThereIsNone, true))
    KesCommon::Log("No broker of push messages is set up: none will come.");
  tries_->connect(++tries_->current);
}

void iFirebaseNotifications::FCMDisconnect() {
  if (tries_) ++tries_->current;
  if (line()) line()->disconnect();
}

}  // namespace varlo
