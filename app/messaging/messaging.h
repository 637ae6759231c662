// Push messages and analytics as the shell sees them, in front of the push line that the
// program lends and of the sink of analytics. Plain copyable members; main thread.
#pragma once

#include <memory>

#include "platform/push/push_line.h"
#include "runtime/core/map.h"
#include "runtime/core/wrapper.h"

namespace varlo {

using namespace kes;

class iFirebaseAnalytics {
 public:
  void Initialize();
  void SendEvent(const Text& name, const KesMap& parameters);
};

// Raises "_fcmconnected" on each connection. Asks again after half a second for as long as
// there is none to be had; without a line it says so once and asks nobody.
class iFirebaseNotifications {
 public:
  void Initialize(const Ref<Kes>& bi, const Text& eventName);
  void SubscribeToTopic(const Text& topic);
  void UnsubscribeFromTopic(const Text& topic);
  void FCMConnect();
  void FCMDisconnect();

  // The line of the process; null: no messages come. Kept until another takes its place.
  static void useLine(std::shared_ptr<push::PushLine> line);

 private:
  struct Tries;
  Ref<Object> owner_;  // carries the event owner and prefix
  std::shared_ptr<Tries> tries_;
};

}  // namespace varlo
