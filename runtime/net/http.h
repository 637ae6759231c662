// KesHttp: the one HTTP engine. Each Execute ends in exactly one of two events on the
// owner's Kes, told by the task id that the caller picked:
//
//   <prefix>_responsesuccess::    (KesHttpResponse, task id), status 200 to 299
//   <prefix>_responseerror::::    (KesHttpResponse, text, status, task id), all else
//
// Both come on the main thread. The success event's turn is the one in which the body can
// be read (platform/url/url_body.h); no other request is told of before it is over, so code
// inside must not wait for one. The error event is a task of its own. Owned by whoever
// initialised it. It has to end before the platform does. Main thread.
#pragma once

#include "platform/url/url_session.h"
#include "runtime/core/kes.h"
#include "runtime/net/http_request.h"
#include "runtime/net/http_response.h"

namespace kes {

class KesHttp final : public Object {
 public:
  ~KesHttp() override;
  std::string_view className() const override { return "KesHttp"; }

  void Initialize(const Ref<Kes>& bi, const Text& eventPrefix);
  // Takes any TLS certificate.
  void InitializeAcceptAll(const Ref<Kes>& bi, const Text& eventPrefix);
  bool IsInitialized() const { return session_ != nullptr; }
  // Drops what is under way, without an event, and the session with it.
  void end();

  // Throw "Object was not initialized (%@)" without a session or a request.
  void Execute(const KesHttpRequest& request, std::int32_t taskId);
  // Answers a basic or digest challenge of the request with these, once.
  void ExecuteCredentials(const KesHttpRequest& request, std::int32_t taskId, const Text& user,
                          const Text& password);

 private:
  class Delegate;
  void start(const Ref<Kes>& bi, const Text& eventPrefix, bool trustAll);

  std::shared_ptr<Delegate> delegate_;
  std::unique_ptr<platform::UrlSession> session_;
};

}  // namespace kes
