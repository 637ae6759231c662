#include "app/messaging/delivery.h"

#include "app/kit/deployment.h"
#include "app/messaging/messaging.h"
#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "platform/push/mqtt_line.h"
#include "runtime/data/json/json_parser.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/app/application_wrapper.h"

namespace varlo {

namespace {

void bring(kes::KesAppDelegate& delegate, const std::string& json,
           const std::function<void()>& done) {
  kes::KesMap message;
  try {
    kes::KesJSONParser parser;
    parser.Initialize(kes::Text(json));
    message = parser.NextObject();
  } catch (const std::exception& e) {
    // The line looked it through before; what only the app's own reader refuses ends here.
    platform::log(std::string("A push message was dropped: ") + e.what());
    return done();
  }
  delegate.didReceiveRemoteNotification(message.ToDictionary(), [done](int) { done(); });
}

}  // namespace

PushDelivery::PushDelivery(std::shared_ptr<push::PushLine> line) : line_(std::move(line)) {
  iFirebaseNotifications::useLine(line_);
  // Listening is all the permission that a line needs: there is nobody to register with.
  if (line_) kes::ApplicationObject::shared().onRegisterForRemoteNotifications = [] {};
}

PushDelivery::~PushDelivery() {
  if (line_) line_->setReceiver({});
  kes::ApplicationObject::shared().onRegisterForRemoteNotifications = {};
  iFirebaseNotifications::useLine(nullptr);
}

void PushDelivery::deliverTo(kes::KesAppDelegate& delegate) {
  if (!line_) return;
  line_->setReceiver([&delegate](const std::string& json, const std::function<void()>& done) {
    bring(delegate, json, done);
  });
}

std::shared_ptr<push::PushLine> makePushLine(const std::string& broker) {
  if (broker.empty()) return nullptr;
  auto& phone = platform::current();
  push::MqttLine::Options options;
  options.broker = push::BrokerAddress::parse(broker, deployment::plainPushAllowed());
  options.prefix = deployment::pushPrefix().str();
  options.folder = phone.folders().library;
  return std::make_shared<push::MqttLine>(std::move(options), phone.mainQueue());
}

}  // namespace varlo
