// Lends a push line to the shell, and brings what comes on it to the application delegate,
// as the platform would.
//
// Made by the program before the app is launched; told of the delegate after that and before
// the app becomes active, so that no message comes before somebody hears it. Goes before the
// delegate and the platform do. Main thread.
#pragma once

#include <memory>
#include <string>

#include "platform/push/push_line.h"

namespace kes {
class KesAppDelegate;
}

namespace varlo {

class PushDelivery {
 public:
  // Without a line nothing is ever brought.
  explicit PushDelivery(std::shared_ptr<push::PushLine> line);
  ~PushDelivery();
  PushDelivery(const PushDelivery&) = delete;
  PushDelivery& operator=(const PushDelivery&) = delete;

  void deliverTo(kes::KesAppDelegate& delegate);

 private:
  std::shared_ptr<push::PushLine> line_;
};

// The line to a broker for this phone, under the prefix of the deployment; null for an empty
// address. Throws std::invalid_argument for an address that is none or may not be used, and
// std::runtime_error where the phone can store nothing.
std::shared_ptr<push::PushLine> makePushLine(const std::string& broker);

}  // namespace varlo
