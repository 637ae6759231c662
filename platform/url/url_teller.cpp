#include "platform/url/url_teller.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform {

UrlTeller::UrlTeller(std::shared_ptr<UrlSessionDelegate> delegate, UrlSession::DelegateQueue queue)
    : delegate_(std::move(delegate)), queue_(std::move(queue)) {}

void UrlTeller::ended(std::vector<UrlOutcome>& outcomes) {
  if (outcomes.empty()) return;
  {
    std::lock_guard lock(mutex_);
    std::move(outcomes.begin(), outcomes.end(), std::back_inserter(ended_));
    outcomes.clear();
    if (std::exchange(posted_, true)) return;
  }
  post();
}

void UrlTeller::post() {
  queue_([me = shared_from_this()] { me->tellNext(); });
}

void UrlTeller::tellNext() {
  UrlOutcome outcome;
  {
    std::lock_guard lock(mutex_);
    if (ended_.empty()) return;
    outcome = std::move(ended_.front());
    ended_.pop_front();
  }
  const auto fault = tell(outcome);
  bool more;
  {
    std::lock_guard lock(mutex_);
    more = posted_ = !ended_.empty();
  }
  if (more) post();
  if (fault) std::rethrow_exception(fault);
}

std::exception_ptr UrlTeller::tell(UrlOutcome& o) {
  std::exception_ptr fault;
  if (o.body && o.response) {
    try {
      delegate_->finishedDownload(*o.task, o.response, o.body);
    } catch (...) {
      fault = std::current_exception();
    }
  }
  if (o.body) o.body->discard();
  --underWay_;
  delegate_->completed(*o.task, o.response, o.error ? &*o.error : nullptr);
  return fault;
}

void UrlTeller::end() {
  std::deque<UrlOutcome> left;
  {
    std::lock_guard lock(mutex_);
    left.swap(ended_);
  }
  for (auto& outcome : left) {
    outcome.body.reset();
    if (!outcome.error) outcome.error = "cancelled";
    tell(outcome);
  }
}

}  // namespace platform
