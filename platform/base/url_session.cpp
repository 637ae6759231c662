#include "platform/base/url_session.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "platform/base/clock.h"
#include "platform/base/log.h"
#include "platform/base/url_transfer.h"
#include "platform/base/work_queue.h"

namespace platform {

namespace {

using TaskRef = std::shared_ptr<const UrlTask>;

// Tasks that wait for a connection, by host. Each host's come in the order of their
// start, and so do those of different hosts when only the total is at its bound.
class WaitingTasks {
 public:
  void add(std::string host, TaskRef task) {
    hosts_[std::move(host)].waiting.push_back({++order_, std::move(task)});
  }
  // The next task that may have a connection; null when all have to wait.
  TaskRef take(int perHost) {
    auto best = hosts_.end();
    for (auto i = hosts_.begin(); i != hosts_.end(); ++i) {
      const auto& h = i->second;
      if (h.waiting.empty() || h.busy >= perHost) continue;
      if (best == hosts_.end() || h.waiting.front().first < best->second.waiting.front().first)
        best = i;
    }
    if (best == hosts_.end()) return nullptr;
    auto task = std::move(best->second.waiting.front().second);
    best->second.waiting.pop_front();
    ++best->second.busy;
    return task;
  }
  void ended(const std::string& host) {
    auto i = hosts_.find(host);
    if (--i->second.busy == 0 && i->second.waiting.empty()) hosts_.erase(i);
  }
  std::vector<TaskRef> takeAll() {
    std::vector<TaskRef> all;
    for (auto& [name, h] : hosts_)
      for (auto& w : h.waiting) all.push_back(std::move(w.second));
    hosts_.clear();
    return all;
  }

 private:
  struct Host {
    int busy = 0;
    std::deque<std::pair<std::uint64_t, TaskRef>> waiting;
  };
  std::map<std::string, Host> hosts_;
  std::uint64_t order_ = 0;
};

}  // namespace

class UrlSession::Engine {
 public:
  Engine(Configuration configuration, std::shared_ptr<UrlSessionDelegate> delegate);
  ~Engine();

  void start(TaskRef task);
  std::size_t underWay() const { return *underWay_; }

 private:
  void loop();
  void takeStarted();
  void startWaiting();
  void send(UrlTransfer& t);
  void collectEnded();
  void expireSilent();
  int untilNextDeadline() const;
  void finish(UrlTransfer& t);
  void tell(UrlOutcome outcome);

  const Configuration configuration_;
  const std::shared_ptr<UrlSessionDelegate> delegate_;
  const std::shared_ptr<std::atomic<std::size_t>> underWay_ =
      std::make_shared<std::atomic<std::size_t>>(0);

  std::mutex mutex_;
  std::vector<TaskRef> started_;
  bool ending_ = false;
  CURLM* multi_ = nullptr;
  std::thread thread_;

  // On the session's thread only.
  WaitingTasks waiting_;
  std::unordered_map<CURL*, std::unique_ptr<UrlTransfer>> running_;

  SerialQueue delegateQueue_{"URL session"};
};

UrlSession::Engine::Engine(Configuration configuration,
                           std::shared_ptr<UrlSessionDelegate> delegate)
    : configuration_(std::move(configuration)), delegate_(std::move(delegate)) {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
  multi_ = curl_multi_init();
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
}

void UrlSession::Engine::start(TaskRef task) {
  ++*underWay_;
  {
    std::lock_guard lock(mutex_);
    started_.push_back(std::move(task));
    if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
  }
  curl_multi_wakeup(multi_);
}

void UrlSession::Engine::loop() {
  // A peer that hangs up must not raise a signal, whatever the TLS library does.
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);

  for (;;) {
    {
      std::lock_guard lock(mutex_);
      if (ending_) break;
    }
    takeStarted();
    startWaiting();
    int active = 0;
    curl_multi_perform(multi_, &active);
    collectEnded();
    expireSilent();
    startWaiting();
    curl_multi_poll(multi_, nullptr, 0, untilNextDeadline(), nullptr);
  }

  takeStarted();
  for (auto& task : waiting_.takeAll()) tell({task, std::nullopt, "cancelled", nullptr});
  for (auto& [handle, t] : running_) {
    t->fail("cancelled");
    curl_multi_remove_handle(multi_, handle);
    tell(t->takeOutcome());
  }
  running_.clear();
}

void UrlSession::Engine::takeStarted() {
  std::vector<TaskRef> tasks;
  {
    std::lock_guard lock(mutex_);
    tasks.swap(started_);
  }
  for (auto& task : tasks) {
    auto host = UrlTransfer::hostKey(task->originalRequest.url);
    if (host.empty())
      tell({task, std::nullopt, "unsupported URL", nullptr});
    else
      waiting_.add(std::move(host), std::move(task));
  }
}

void UrlSession::Engine::startWaiting() {
  while (running_.size() < static_cast<std::size_t>(configuration_.connections)) {
    auto task = waiting_.take(configuration_.connectionsPerHost);
    if (!task) return;
    auto t = std::make_unique<UrlTransfer>(task, configuration_);
    auto& transfer = *t;
    if (!transfer.prepare(delegate_->credential(*task))) {
      finish(transfer);
      continue;
    }
    running_[transfer.handle()] = std::move(t);
    send(transfer);
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
    if (t.ended(code) && t.prepare(delegate_->credential(t.task())))
      send(t);
    else
      finish(t);
  }
}

void UrlSession::Engine::expireSilent() {
  const auto now = SystemClock().monotonic();
  std::vector<UrlTransfer*> silent;
  for (auto& [handle, t] : running_)
    if (t->deadline() <= now) silent.push_back(t.get());
  for (auto* t : silent) {
    t->fail("The request timed out.");
    curl_multi_remove_handle(multi_, t->handle());
    finish(*t);
  }
}

int UrlSession::Engine::untilNextDeadline() const {
  constexpr std::int64_t kLongest = 60'000;
  auto left = kLongest;
  const auto now = SystemClock().monotonic();
  for (auto& [handle, t] : running_) left = std::min(left, t->deadline() - now);
  return static_cast<int>(std::max<std::int64_t>(left, 0));
}

void UrlSession::Engine::finish(UrlTransfer& t) {
  waiting_.ended(UrlTransfer::hostKey(t.task().originalRequest.url));
  tell(t.takeOutcome());
  running_.erase(t.handle());
}

void UrlSession::Engine::tell(UrlOutcome outcome) {
  auto told = std::make_shared<UrlOutcome>(std::move(outcome));
  delegateQueue_.post([told, delegate = delegate_, count = underWay_] {
    auto& o = *told;
    try {
      if (o.body && o.response) delegate->finishedDownload(*o.task, *o.response, o.body->path());
    } catch (const std::exception& e) {
      log(std::string("URL session: ") + e.what());
    }
    o.body.reset();
    --*count;
    delegate->completed(*o.task, o.response ? &*o.response : nullptr,
                        o.error ? &*o.error : nullptr);
  });
}

UrlSession::UrlSession(Configuration configuration, std::shared_ptr<UrlSessionDelegate> delegate)
    : engine_(std::make_unique<Engine>(std::move(configuration), std::move(delegate))) {}

UrlSession::~UrlSession() = default;

void UrlSession::start(UrlRequest request, std::string description) {
  engine_->start(
      std::make_shared<const UrlTask>(UrlTask{std::move(request), std::move(description)}));
}

std::size_t UrlSession::tasksUnderWay() const { return engine_->underWay(); }

}  // namespace platform
