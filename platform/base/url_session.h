// Sends HTTP requests and streams each answer's body to a temporary file.
//
// A session owns one thread for all its transfers, started with the first task, and
// one delegate queue; the delegate is shared with whoever made it. start() is called
// from any thread. Any number of tasks may be under way: those beyond the session's
// connections wait their turn, and their time-outs count from when they get it.
// Only http and https are spoken, redirects followed, nothing is cached. Nothing is
// thrown: what goes wrong is told to the delegate, with a text for people.
//
// Destroying the session cancels what is under way: each such task still gets its
// completed(), and after the destructor has returned nothing is called any more and
// no file of the session's is left. It may be destroyed on its delegate queue too; the
// task that is being told then is told to its end.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/base/url_request.h"

namespace platform {

struct UrlTask {
  UrlRequest originalRequest;
  std::string description;  // the caller's, untouched
};

class UrlSessionDelegate {
 public:
  virtual ~UrlSessionDelegate() = default;

  // On the delegate queue: a whole body has come, whatever the status. The file is
  // removed as soon as this returns.
  virtual void finishedDownload(const UrlTask& task, const UrlResponse& response,
                                const std::string& path) = 0;
  // On the delegate queue, once for each task, and last: `error` is null when the
  // server's answer came whole, `response` is null when no answer came.
  virtual void completed(const UrlTask& task, const UrlResponse* response,
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
    std::string userAgent;  // for requests that name none
    bool trustAll = false;  // takes any TLS certificate
    int connectionsPerHost = 6;
    int connections = 64;
  };

  UrlSession(Configuration configuration, std::shared_ptr<UrlSessionDelegate> delegate);
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
