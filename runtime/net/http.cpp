#include "runtime/net/http.h"

#include <charconv>
#include <mutex>
#include <unordered_map>

#include "platform/base/platform.h"

namespace kes {

namespace {

bool isSuccess(const platform::UrlResponse* response) {
  return response && response->status >= 200 && response->status <= 299;
}

std::int32_t taskIdOf(const platform::UrlTask& task) {
  const auto& text = task.description;
  std::int32_t id = 0;
  std::from_chars(text.data(), text.data() + text.size(), id);
  return id;
}

}  // namespace

// Turns what the session tells into events. Its delegate queue is the main queue.
class KesHttp::Delegate final : public platform::UrlSessionDelegate {
 public:
  Delegate(const KesHttp& engine, Ref<Kes> bi, const Text& prefix)
      : engine_(&engine),
        bi_(std::move(bi)),
        success_(prefix + Text("_responsesuccess::")),
        error_(prefix + Text("_responseerror::::")) {}

  // The success event runs within the turn in which its body lives. An error has none,
  // and its event is a task of its own.
  void finishedDownload(const platform::UrlTask& task,
                        const std::shared_ptr<const platform::UrlResponse>& response,
                        const std::shared_ptr<platform::UrlBody>& body) override {
    const auto sender = ended_ ? nullptr : engine_.lock();
    if (!sender || !isSuccess(response.get())) return;
    const Value params[] = {platform::makeShared<KesHttpResponse>(response, body), taskIdOf(task)};
    bi_->raiseEvent(sender, success_, params);
  }

  void completed(const platform::UrlTask& task,
                 const std::shared_ptr<const platform::UrlResponse>& response,
                 const std::string* error) override {
    if (ended_ || (!error && isSuccess(response.get()))) return;
    auto sender = engine_.lock();
    if (!sender) return;
    bi_->raiseEventFromDifferentThread(std::move(sender), error_,
                                       {platform::makeShared<KesHttpResponse>(response, nullptr),
                                        error ? Text(*error) : Text("unknown error"),
                                        response ? response->status : 0, taskIdOf(task)});
  }

  std::optional<platform::UrlCredential> credential(const platform::UrlTask& task) override {
    std::lock_guard lock(mutex_);
    const auto entry = credentials_.find(task.originalRequest.url);
    if (entry == credentials_.end()) return std::nullopt;
    return entry->second;
  }

  void addCredential(const std::string& url, platform::UrlCredential credential) {
    std::lock_guard lock(mutex_);
    credentials_[url] = std::move(credential);
  }
  // Tells nothing more.
  void end() { ended_ = true; }

 private:
  const WeakRef<KesHttp> engine_;
  const Ref<Kes> bi_;
  const Text success_, error_;
  bool ended_ = false;
  std::mutex mutex_;
  std::unordered_map<std::string, platform::UrlCredential> credentials_;
};

KesHttp::~KesHttp() { end(); }

void KesHttp::end() {
  if (delegate_) delegate_->end();
  session_.reset();
  delegate_.reset();
}

void KesHttp::start(const Ref<Kes>& bi, const Text& eventPrefix, bool trustAll) {
  end();
  auto& platform = platform::current();
  platform::UrlSession::Configuration configuration;
  configuration.temporaryFolder = platform.folders().temporary;
  configuration.userAgent = "Runtime/" + platform.bundleVersion;
  configuration.trustAll = trustAll;
  delegate_ = std::make_shared<Delegate>(*this, bi, eventPrefix.ToLowerCase());
  session_ = std::make_unique<platform::UrlSession>(std::move(configuration), delegate_,
                                                    platform::postToMain);
}

void KesHttp::Initialize(const Ref<Kes>& bi, const Text& eventPrefix) {
  start(bi, eventPrefix, false);
}

void KesHttp::InitializeAcceptAll(const Ref<Kes>& bi, const Text& eventPrefix) {
  start(bi, eventPrefix, true);
}

void KesHttp::Execute(const KesHttpRequest& request, std::int32_t taskId) {
  if (!session_) throw KesException("Object was not initialized (KesHttp)");
  session_->start(request.native()->request, std::to_string(taskId));
}

void KesHttp::ExecuteCredentials(const KesHttpRequest& request, std::int32_t taskId,
                                 const Text& user, const Text& password) {
  if (!session_) throw KesException("Object was not initialized (KesHttp)");
  delegate_->addCredential(request.native()->request.url, {user.str(), password.str()});
  Execute(request, taskId);
}

}  // namespace kes
