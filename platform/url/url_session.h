// Sends HTTP requests and brings each answer's body, in a temporary file or in memory.
//
// A session owns one thread for all its transfers, started with the first task. It tells
// its delegate, which is shared with whoever made it, on the delegate queue that the owner
// names: one task at a time, in the order in which they ended, each as a turn of its own.
// Transfers go on meanwhile; a task that waits for its turn keeps its body. start() is
// called from any thread. Any number of tasks may be under way: those beyond the session's
// connections wait for one, and their time-outs count from when they get it. Only http and
// https are spoken, redirects followed, cookies kept as long as the session; nothing is
// cached. Bodies come as they were before the server compressed them (gzip, deflate); other
// codings pass through. Another host than the one of the request learns none of the headers
// that may be a secret. The machine's own proxy settings hold, but not for loopback. What a
// killed process left in the temporary folder goes with the first task. Nothing is thrown: what
// goes wrong is told to the delegate, with a text for people.
//
// A session is destroyed on its delegate queue, inside a call of its delegate if need be.
// That cancels what is under way: each such task gets its completed() at once, and after
// the destructor has returned nothing more is begun and no file of the session's is left.
// The task that is being told then is told to its end.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/url/url_body.h"
#include "platform/url/url_request.h"

namespace platform {

struct UrlTask {
  UrlRequest originalRequest;
  std::string description;  // the caller's, untouched
};

class UrlSessionDelegate {
 public:
  virtual ~UrlSessionDelegate() = default;

  // On the delegate queue: a whole body has come, whatever the status. The body is
  // discarded as soon as this returns, even for those who kept it. What this throws goes
  // to the delegate queue after the task's completed().
  virtual void finishedDownload(const UrlTask& task,
                                const std::shared_ptr<const UrlResponse>& response,
                                const std::shared_ptr<UrlBody>& body) = 0;
  // On the delegate queue, once for each task, and last: `error` is null when the
  // server's answer came whole, `response` is null when no answer came.
  virtual void completed(const UrlTask& task, const std::shared_ptr<const UrlResponse>& response,
                         const std::string* error) = 0;
  // On the session's thread, before a request goes out: what to answer if the server
  // asks for a name and a password (basic or digest). It is tried once for each
  // server that asks. Must return at once and not call the session.
  virtual std::optional<UrlCredential> credential(const UrlTask& task) = 0;
};

class UrlSession {
 public:
  struct Configuration {
    std::string temporaryFolder;
    std::string userAgent;    // for requests that name none
    bool trustAll = false;    // takes any TLS certificate
    std::string authorities;  // a file of certificates to trust in place of the system's
    int connectionsPerHost = 16;
    int connections = 64;
  };
  // Posts a task to the queue on which the delegate is called. Called from any thread,
  // and after the session's end no more.
  using DelegateQueue = std::function<void(std::function<void()>)>;

  UrlSession(Configuration configuration, std::shared_ptr<UrlSessionDelegate> delegate,
             DelegateQueue delegateQueue);
  ~UrlSession();
  UrlSession(const UrlSession&) = delete;
  UrlSession& operator=(const UrlSession&) = delete;

  void start(UrlRequest request, std::string description);
  // Tasks whose completed() has not been called yet.
  std::size_t tasksUnderWay() const;

 private:
  class Engine;
  std::unique_ptr<Engine> engine_;
};

}  // namespace platform
