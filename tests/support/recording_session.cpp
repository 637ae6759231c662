#include "tests/support/recording_session.h"

#include <chrono>
#include <future>
#include <stdexcept>

#include "tests/support/test_platform.h"

namespace testing_support {

using namespace platform;

class RecordingSession::Delegate final : public UrlSessionDelegate {
 public:
  explicit Delegate(const RecordingSession& session) : session_(session) {}
  void finishedDownload(const UrlTask& task, const std::shared_ptr<const UrlResponse>& response,
                        const std::shared_ptr<UrlBody>& download) override {
    const auto bytes = download->bytes();
    const auto path = download->path();
    auto body = bytes ? *bytes : TestPlatform::read(path);
    {
      std::lock_guard lock(mutex);
      auto& t = told[task.description];
      ++t.downloads;
      t.body = std::move(body);
      t.path = path;
      t.status = response->status;
    }
    if (session_.onDownload) session_.onDownload(task);
  }
  void completed(const UrlTask& task, const std::shared_ptr<const UrlResponse>& response,
                 const std::string* error) override {
    std::lock_guard lock(mutex);
    auto& t = told[task.description];
    ++t.completions;
    t.answered = response != nullptr;
    if (response) {
      t.status = response->status;
      t.url = response->url;
      t.headers = response->headers;
    }
    if (error) t.error = *error;
    changed.notify_all();
  }
  std::optional<UrlCredential> credential(const UrlTask& task) override {
    return session_.credential ? session_.credential(task) : std::nullopt;
  }

  std::mutex mutex;
  std::condition_variable changed;
  std::map<std::string, Told> told;

 private:
  const RecordingSession& session_;
};

RecordingSession::RecordingSession(UrlSession::Configuration configuration)
    : delegate_(std::make_shared<Delegate>(*this)),
      session_(std::make_unique<UrlSession>(std::move(configuration), delegate_, [this](auto turn) {
        delegateQueue_.post(std::move(turn));
      })) {}

RecordingSession::~RecordingSession() { end(); }

void RecordingSession::end() {
  if (delegateQueue_.isOwnThread()) {
    session_.reset();
    return;
  }
  std::promise<void> ended;
  delegateQueue_.post([&] {
    session_.reset();
    ended.set_value();
  });
  ended.get_future().wait();
}

void RecordingSession::start(UrlRequest request, const std::string& name) {
  session_->start(std::move(request), name);
}

Told RecordingSession::await(const std::string& name) {
  std::unique_lock lock(delegate_->mutex);
  if (!delegate_->changed.wait_for(lock, std::chrono::seconds(30),
                                   [&] { return delegate_->told[name].completions > 0; }))
    throw std::runtime_error("nothing came of the task " + name);
  return delegate_->told[name];
}

Told RecordingSession::run(UrlRequest request) {
  const auto name = "run " + std::to_string(++next_);
  start(std::move(request), name);
  return await(name);
}

std::map<std::string, Told> RecordingSession::told() const {
  std::lock_guard lock(delegate_->mutex);
  return delegate_->told;
}

}  // namespace testing_support
