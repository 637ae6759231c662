// The line of the desk: connects at once, and receives what is handed to it. Remembers in
// memory only. Main thread.
#pragma once

#include <memory>
#include <string_view>

#include "platform/push/inbox.h"

namespace push {

class LocalLine final : public PushLine {
 public:
  explicit LocalLine(platform::MainQueue& queue);
  ~LocalLine() override;

  // As if the service had delivered it.
  void receive(std::string_view payload);

  void connect(Completion completion) override;
  void disconnect() override {}
  void subscribe(const std::string&) override {}
  void unsubscribe(const std::string&) override {}
  void setReceiver(Receiver receiver) override { inbox_->setReceiver(std::move(receiver)); }

 private:
  std::shared_ptr<Inbox> inbox_;
  int received_ = 0;
};

}  // namespace push
