// Push messages and analytics as the shell sees them, in front of the client of the
// push service.
//
// PushClient is what the host of the process lends: connecting with a completion, and
// topics. Without one nothing ever connects. Main thread.
#pragma once

#include <functional>
#include <memory>

#include "runtime/core/map.h"
#include "runtime/core/wrapper.h"

namespace varlo {

using namespace kes;

class PushClient {
 public:
  virtual ~PushClient() = default;
  // The completion gets one argument, which is nil or not; it may be called later.
  virtual void connect(std::function<void(const Value& argument)> completion) = 0;
  virtual void disconnect() = 0;
  virtual void subscribe(const Text& topic) = 0;
  virtual void unsubscribe(const Text& topic) = 0;

  static void install(std::shared_ptr<PushClient> client);
  static std::shared_ptr<PushClient> installed();
};

class iFirebaseAnalytics {
 public:
  void Initialize();
  void SendEvent(const Text& name, const KesMap& parameters);
};

class iFirebaseNotifications {
 public:
  void Initialize(const Ref<Kes>& bi, const Text& eventName);
  void SubscribeToTopic(const Text& topic);
  void UnsubscribeFromTopic(const Text& topic);
  void FCMConnect();
  void FCMDisconnect();

 private:
  Ref<Object> owner_;  // carries the event owner and prefix
};

}  // namespace varlo
