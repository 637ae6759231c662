// The line over MQTT 3.1.1: any broker that speaks it, citizens as listeners only.
//
// Made by the program with the place of the broker. Messages come at least once (quality 1)
// into a lasting session under this installation's name, so the broker keeps what is sent
// while nobody is connected; the inbox makes once of it. Names, looks up and talks on a
// thread of its own, so the main thread never waits: not for a name server, and no longer
// than a moment when the line goes. Main thread; the constructor throws
// std::runtime_error where nothing can be stored.
#pragma once

#include <memory>
#include <string>

#include "platform/base/main_queue.h"
#include "platform/push/broker_address.h"
#include "platform/push/push_line.h"

namespace push {

class MqttLine final : public PushLine {
 public:
  struct Options {
    BrokerAddress broker;
    std::string prefix;        // of every topic of this deployment, as "varlo"
    std::string folder;        // of the phone; the line keeps "push.db" in it
    std::string certificates;  // file of those trusted; empty: the system's
  };

  MqttLine(Options options, platform::MainQueue& queue);
  ~MqttLine() override;

  void connect(Completion completion) override;
  void disconnect() override;
  void subscribe(const std::string& topic) override;
  void unsubscribe(const std::string& topic) override;
  void setReceiver(Receiver receiver) override;

 private:
  class Link;
  // Shared with its thread, which may outlast the line where a name server is slow.
  std::shared_ptr<Link> link_;
};

}  // namespace push
