#include "platform/url/url_session.h"

#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "platform/base/clock.h"
#include "platform/url/url_teller.h"
#include "platform/url/url_transfer.h"

namespace platform {

namespace {

// As many tasks may end before the first of them is told.
constexpr std::size_t kToldTogether = 8;

// A task and the host whose connections it takes part in.
struct HostTask {
  std::string host;
  std::shared_ptr<const UrlTask> task;
};

// Tasks that wait for a connection, by host. Each host's come in the order of their
// start, and so do those of different hosts when only the total is at its bound.
class WaitingTasks {
 public:
  WaitingTasks(int perHost, int total) : perHost_(perHost), total_(total) {}

  // Whether the task may have a connection at once.
  bool add(HostTask t) {
    auto& h = hosts_[std::move(t.host)];
    h.waiting.push_back({++order_, std::move(t.task)});
    return busy_ < total_ && h.busy < perHost_;
  }
  bool hasNext() const { return next() != hosts_.end(); }
  // The next task that may have a connection; none when all have to wait.
  std::optional<HostTask> take() {
    const auto found = next();
    if (found == hosts_.end()) return std::nullopt;
    auto& h = hosts_.at(found->first);
    HostTask t{found->first, std::move(h.waiting.front().second)};
    h.waiting.pop_front();
    ++h.busy;
    ++busy_;
    return t;
  }
  void ended(const std::string& host) {
    auto i = hosts_.find(host);
    --busy_;
    if (--i->second.busy == 0 && i->second.waiting.empty()) hosts_.erase(i);
  }
  std::vector<std::shared_ptr<const UrlTask>> takeAll() {
    std::vector<std::shared_ptr<const UrlTask>> all;
    for (auto& [name, h] : hosts_)
      for (auto& w : h.waiting) all.push_back(std::move(w.second));
    hosts_.clear();
    return all;
  }

 private:
  struct Host {
    int busy = 0;
    std::deque<std::pair<std::uint64_t, std::shared_ptr<const UrlTask>>> waiting;
  };
  using Hosts = std::map<std::string, Host>;

  Hosts::const_iterator next() const {
    if (busy_ >= total_) return hosts_.end();
    auto best = hosts_.end();
    for (auto i = hosts_.begin(); i != hosts_.end(); ++i) {
      const auto& h = i->second;
      if (h.waiting.empty() || h.busy >= perHost_) continue;
      if (best == hosts_.end() || h.waiting.front().first < best->second.waiting.front().first)
        best = i;
    }
    return best;
  }

  const int perHost_, total_;
  int busy_ = 0;
  Hosts hosts_;
  std::uint64_t order_ = 0;
};

}  // namespace

class UrlSession::Engine {
 public:
  Engine(Configuration configuration, std::shared_ptr<UrlSessionDelegate> delegate,
         DelegateQueue delegateQueue);
  ~Engine();

  void start(std::shared_ptr<const UrlTask> task);
  std::size_t underWay() const { return teller_->underWay(); }

 private:
  std::string hostOf(const std::string& url);
  void loop();
  bool startWaiting();
  void send(UrlTransfer& t);
  void collectEnded();
  void expireLate();
  int untilNextDeadline() const;
  void finish(UrlTransfer& t);
  bool sleep();

  const Configuration configuration_;
  const std::shared_ptr<UrlTeller> teller_;
  UrlResources resources_;
  CURLM* multi_ = nullptr;
  std::thread thread_;

  std::mutex mutex_;
  WaitingTasks waiting_;
  std::string lastSite_, lastHost_;
  bool asleep_ = false;  // and has to be woken
  bool ending_ = false;

  // On the session's thread only.
  std::unordered_map<CURL*, std::unique_ptr<UrlTransfer>> running_;
  std::vector<UrlOutcome> outcomes_;  // to be told together
};

UrlSession::Engine::Engine(Configuration configuration,
                           std::shared_ptr<UrlSessionDelegate> delegate,
                           DelegateQueue delegateQueue)
    : configuration_(std::move(configuration)),
      teller_(std::make_shared<UrlTeller>(std::move(delegate), std::move(delegateQueue))),
      resources_(configuration_),
      multi_(curl_multi_init()),
      waiting_(configuration_.connectionsPerHost, configuration_.connections) {
  // Idle connections that are kept for the next request.
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, 16L);
}

UrlSession::Engine::~Engine() {
  {
    std::lock_guard lock(mutex_);
    ending_ = true;
  }
  if (thread_.joinable()) {
    curl_multi_wakeup(multi_);
    thread_.join();
  }
  curl_multi_cleanup(multi_);
  teller_->end();
}

void UrlSession::Engine::start(std::shared_ptr<const UrlTask> task) {
  teller_->added();
  auto host = hostOf(task->originalRequest.url);
  if (host.empty() || !multi_) {
    const auto* why = host.empty() ? "unsupported URL" : "The system has no sockets left.";
    std::vector<UrlOutcome> outcome{{std::move(task), nullptr, why, nullptr}};
    teller_->ended(outcome);
    return;
  }
  {
    std::lock_guard lock(mutex_);
    // A thread that could do nothing with the task is better left asleep.
    const bool wake = waiting_.add({std::move(host), std::move(task)}) && asleep_;
    if (wake) asleep_ = false;
    if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
    if (!wake) return;
  }
  curl_multi_wakeup(multi_);
}

// Most requests go where the former one went.
std::string UrlSession::Engine::hostOf(const std::string& url) {
  if (!UrlRequest::isUrl(url)) return {};
  const auto scheme = url.find("://");
  const auto site = url.substr(0, scheme == url.npos ? 0 : url.find_first_of("/?#", scheme + 3));
  std::lock_guard lock(mutex_);
  if (site.empty() || site != lastSite_) {
    lastHost_ = UrlTransfer::hostKey(url);
    lastSite_ = site;
  }
  return lastHost_;
}

void UrlSession::Engine::loop() {
  // A peer that hangs up must not raise a signal, whatever the TLS library does.
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);
  DownloadFolder::sweep(configuration_.temporaryFolder);

  do {
    // What took the place of the tasks that ended is sent on its way before they are told.
    do {
      resources_.now = SystemClock().monotonic();
      int active = 0;
      curl_multi_perform(multi_, &active);
      if (outcomes_.size() >= kToldTogether) teller_->ended(outcomes_);
      collectEnded();
      expireLate();
    } while (startWaiting());
    teller_->ended(outcomes_);
  } while (sleep());

  for (auto& task : waiting_.takeAll())
    outcomes_.push_back({std::move(task), nullptr, "cancelled", nullptr});
  for (auto& [handle, t] : running_) {
    t->fail("cancelled");
    curl_multi_remove_handle(multi_, handle);
    outcomes_.push_back(t->takeOutcome());
  }
  running_.clear();
  teller_->ended(outcomes_);
}

// Waits until there is something to do; false when the session ends.
bool UrlSession::Engine::sleep() {
  {
    std::lock_guard lock(mutex_);
    if (ending_) return false;
    if (waiting_.hasNext()) return true;
    asleep_ = true;
  }
  curl_multi_poll(multi_, nullptr, 0, untilNextDeadline(), nullptr);
  std::lock_guard lock(mutex_);
  asleep_ = false;
  return !ending_;
}

// True when a transfer was begun.
bool UrlSession::Engine::startWaiting() {
  bool begun = false;
  for (;;) {
    std::optional<HostTask> next;
    {
      std::lock_guard lock(mutex_);
      if (!ending_) next = waiting_.take();
    }
    if (!next) return begun;
    auto t =
        std::make_unique<UrlTransfer>(std::move(next->task), std::move(next->host), resources_);
    auto& transfer = *t;
    if (!transfer.prepare(teller_->delegate().credential(transfer.task()))) {
      finish(transfer);
      continue;
    }
    running_[transfer.handle()] = std::move(t);
    send(transfer);
    begun = true;
  }
}

void UrlSession::Engine::send(UrlTransfer& t) {
  if (const auto code = curl_multi_add_handle(multi_, t.handle()); code != CURLM_OK) {
    t.fail(curl_multi_strerror(code));
    finish(t);
  }
}

void UrlSession::Engine::collectEnded() {
  int left = 0;
  while (auto* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    auto& t = *running_.at(message->easy_handle);
    const auto code = message->data.result;
    curl_multi_remove_handle(multi_, t.handle());
    if (t.ended(code) && t.prepare(teller_->delegate().credential(t.task())))
      send(t);
    else
      finish(t);
  }
}

void UrlSession::Engine::expireLate() {
  std::vector<UrlTransfer*> late;
  for (auto& [handle, t] : running_)
    if (t->deadline() <= resources_.now) late.push_back(t.get());
  for (auto* t : late) {
    t->fail("The request timed out.");
    curl_multi_remove_handle(multi_, t->handle());
    finish(*t);
  }
}

int UrlSession::Engine::untilNextDeadline() const {
  constexpr std::int64_t kLongest = 60'000;
  auto left = kLongest;
  for (auto& [handle, t] : running_) left = std::min(left, t->deadline() - resources_.now);
  return static_cast<int>(std::max<std::int64_t>(left, 0));
}

void UrlSession::Engine::finish(UrlTransfer& t) {
  {
    std::lock_guard lock(mutex_);
    waiting_.ended(t.host());
  }
  outcomes_.push_back(t.takeOutcome());
  running_.erase(t.handle());
}

UrlSession::UrlSession(Configuration configuration, std::shared_ptr<UrlSessionDelegate> delegate,
                       DelegateQueue delegateQueue)
    : engine_(std::make_unique<Engine>(std::move(configuration), std::move(delegate),
                                       std::move(delegateQueue))) {}

UrlSession::~UrlSession() = default;

void UrlSession::start(UrlRequest request, std::string description) {
  engine_->start(
      std::make_shared<const UrlTask>(UrlTask{std::move(request), std::move(description)}));
}

std::size_t UrlSession::tasksUnderWay() const { return engine_->underWay(); }

}  // namespace platform
