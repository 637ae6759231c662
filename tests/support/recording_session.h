// RecordingSession: a URL session in a test, with a delegate that writes down what it
// is told and a way to wait for it without a main queue.
//
// Used on one thread. Bodies are read while the delegate is called, as a real user of
// the session has to.
#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/base/work_queue.h"
#include "platform/url/url_session.h"

namespace testing_support {

struct Told {
  int downloads = 0;
  int completions = 0;
  std::string body;
  std::string path;
  bool answered = false;  // a response came
  int status = 0;
  std::string url;
  platform::HttpHeaders headers;
  std::string error;
};

class RecordingSession {
 public:
  explicit RecordingSession(const std::string& folder)
      : RecordingSession(platform::UrlSession::Configuration{folder, "", false, "", 6, 64}) {}
  explicit RecordingSession(platform::UrlSession::Configuration configuration);
  ~RecordingSession();

  // Under a name of its own for each task of a test.
  void start(platform::UrlRequest request, const std::string& name);
  void get(const std::string& url, const std::string& name) {
    start(platform::UrlRequest(url), name);
  }
  // What became of the task; throws when nothing did in half a minute.
  Told await(const std::string& name);
  Told run(platform::UrlRequest request);
  Told run(const std::string& url) { return run(platform::UrlRequest(url)); }

  platform::UrlSession& session() { return *session_; }
  void end();
  std::map<std::string, Told> told() const;

  // Set before the first task: answers challenges, and called in finishedDownload().
  std::function<std::optional<platform::UrlCredential>(const platform::UrlTask&)> credential;
  std::function<void(const platform::UrlTask&)> onDownload;

 private:
  class Delegate;
  std::shared_ptr<Delegate> delegate_;
  platform::SerialQueue delegateQueue_{"delegate"};
  std::unique_ptr<platform::UrlSession> session_;
  int next_ = 0;
};

}  // namespace testing_support
