// Between the service and the program: refuses what is no message, drops what came before,
// keeps the rest until somebody has seen to it.
//
// Made by a line, shared with what still works for it. take() and forget() on any thread;
// the rest on the main thread, where the receiver is called from the queue. Nothing here
// throws after construction: a store that fails is told to the log, and messages are then
// told from memory.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/main_queue.h"
#include "platform/push/journal.h"
#include "platform/push/push_line.h"

namespace push {

class Inbox : public std::enable_shared_from_this<Inbox> {
 public:
  // An empty path remembers in memory only.
  Inbox(const std::string& path, platform::MainQueue& queue);

  const std::string& identity() const { return journal_.identity(); }

  // name: what tells a repeat where the message has no "id" of its own; otherName: what it
  // would be called if it came on another way.
  void take(std::string_view payload, std::string_view name, std::string_view otherName = {});
  void forget(std::string_view beginning);

  void setReceiver(PushLine::Receiver receiver);
  // Nothing is posted or told from now on.
  void close();

 private:
  void wake();
  void tellWaiting();
  void seenTo(std::int64_t number);

  Journal journal_;
  PushLine::Receiver receiver_;
  std::int64_t told_ = 0;  // the last one told in this run
  std::mutex mutex_;       // guards what follows
  platform::MainQueue* queue_;
  std::vector<std::string> unstored_;
};

}  // namespace push
