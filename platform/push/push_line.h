// The line on which the town's messages come: connect, name the topics, be told.
//
// Owned by the program, used on the main thread, where completions and messages are told as
// well. A message is the text of a JSON object, checked before anybody hears of it
// (payload.h), told once and in the order in which it came. Nothing here throws.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace push {

class PushLine {
 public:
  // Told what the service calls the connection, or nothing while there is none to be had.
  using Completion = std::function<void(const std::optional<std::string>& connection)>;
  // Told of a message; done is to be called when it has been seen to. One that never is
  // comes again with the next start of the program, three times at most.
  using Receiver = std::function<void(const std::string& json, std::function<void()> done)>;

  virtual ~PushLine() = default;

  // Completes once. A line that was connected and is lost comes back by itself.
  virtual void connect(Completion completion) = 0;
  // What is sent from now on waits at the service. Drops completions not told yet.
  virtual void disconnect() = 0;
  // Without the deployment's prefix. Twice is harmless; kept across lost connections.
  virtual void subscribe(const std::string& topic) = 0;
  virtual void unsubscribe(const std::string& topic) = 0;
  // What came before there was a receiver is told to it first.
  virtual void setReceiver(Receiver receiver) = 0;
};

}  // namespace push
