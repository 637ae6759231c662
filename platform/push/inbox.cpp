#include "platform/push/inbox.h"

#include <utility>

#include "platform/base/log.h"
#include "platform/push/payload.h"

namespace push {

namespace {
constexpr std::size_t kLongestPlainId = 128;
}

Inbox::Inbox(const std::string& path, platform::MainQueue& queue)
    : journal_(path), queue_(&queue) {}

void Inbox::take(std::string_view bytes, std::string_view name, std::string_view otherName) {
  const Payload payload = readPayload(bytes);
  if (!payload.refusal.empty()) {
    platform::log("A push message was dropped: " + payload.refusal + ".");
    return;
  }
  try {
    // A name longer than any sender would make up is told from others by its digest.
    const auto own = payload.id.empty()                    ? std::string(name)
                     : payload.id.size() > kLongestPlainId ? "digest:" + digest(payload.id)
                                                           : "id:" + payload.id;
    if (!journal_.keep(own, bytes, otherName)) return;
  } catch (const std::exception& e) {
    platform::log(e.what());
    const std::lock_guard lock(mutex_);
    unstored_.emplace_back(bytes);
  }
  wake();
}

void Inbox::forget(std::string_view beginning) {
  try {
    journal_.forget(beginning);
  } catch (const std::exception& e) {
    platform::log(e.what());
  }
}

void Inbox::setReceiver(PushLine::Receiver receiver) {
  receiver_ = std::move(receiver);
  if (receiver_) wake();
}

void Inbox::close() {
  receiver_ = {};
  const std::lock_guard lock(mutex_);
  queue_ = nullptr;
}

void Inbox::wake() {
  const std::lock_guard lock(mutex_);
  if (queue_)
    queue_->post([self = weak_from_this()] {
      if (const auto inbox = self.lock()) inbox->tellWaiting();
    });
}

void Inbox::tellWaiting() {
  if (!receiver_) return;
  std::vector<std::string> unstored;
  {
    const std::lock_guard lock(mutex_);
    unstored = std::exchange(unstored_, {});
  }
  std::vector<Journal::Entry> waiting;
  try {
    waiting = journal_.waitingAfter(told_);
    for (const auto& entry : waiting) told_ = entry.number;
    std::erase_if(waiting, [&](const auto& entry) {
      if (journal_.tell(entry.number)) return false;
      platform::log("A push message was told three times to no avail and is given up.");
      journal_.seenTo(entry.number);
      return true;
    });
  } catch (const std::exception& e) {
    platform::log(e.what());
  }
  // The receiver may take another's place, or close this, in the course of a message.
  const auto self = shared_from_this();
  for (const auto& entry : waiting)
    if (const auto receiver = receiver_)
      receiver(entry.json, [this, self, number = entry.number] { seenTo(number); });
  for (const auto& json : unstored)
    if (const auto receiver = receiver_) receiver(json, [] {});
}

void Inbox::seenTo(std::int64_t number) {
  try {
    journal_.seenTo(number);
  } catch (const std::exception& e) {
    platform::log(e.what());
  }
}

}  // namespace push
