// Tells a session's delegate how its tasks ended, one after the other on the delegate
// queue. Internal to UrlSession.
//
// Shared by the session and the turns that it has posted. added() and ended() are called
// from any thread, end() on the delegate queue. A task is told in a turn of its own, and
// the next turn is posted when it is over: what the delegate posts in one comes before it.
#pragma once

#include <atomic>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/url/url_session.h"

namespace platform {

// What the delegate is told: a body when it came whole, a response when its headers
// did, an error unless all went well.
struct UrlOutcome {
  std::shared_ptr<const UrlTask> task;
  std::shared_ptr<const UrlResponse> response;
  std::optional<std::string> error;
  std::shared_ptr<UrlBody> body;
};

class UrlTeller : public std::enable_shared_from_this<UrlTeller> {
 public:
  UrlTeller(std::shared_ptr<UrlSessionDelegate> delegate, UrlSession::DelegateQueue queue);

  UrlSessionDelegate& delegate() const { return *delegate_; }

  void added() { ++underWay_; }
  // Takes the outcomes over.
  void ended(std::vector<UrlOutcome>& outcomes);
  std::size_t underWay() const { return underWay_; }
  // Tells at once what waits for its turn, as cancelled.
  void end();

 private:
  void post();
  void tellNext();
  std::exception_ptr tell(UrlOutcome& outcome);

  const std::shared_ptr<UrlSessionDelegate> delegate_;
  const UrlSession::DelegateQueue queue_;
  std::atomic<std::size_t> underWay_{0};
  std::mutex mutex_;
  std::deque<UrlOutcome> ended_;
  bool posted_ = false;  // or being told: then the next turn comes of itself
};

}  // namespace platform
