// One task of a URL session on its way through libcurl: the request that goes out,
// redirects included, and the answer that gathers. Internal to UrlSession.
//
// Owned by the session's engine and used on its thread only, as is what the transfers of
// a session share. Failures are kept as the outcome's text; the callbacks that libcurl
// runs let nothing out.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/url/content_decoder.h"
#include "platform/url/url_session.h"
#include "platform/url/url_teller.h"

namespace platform {

// What the transfers of one session share: its settings, its cookies, the memory for
// bodies, and the handles that are free for the next transfer.
class UrlResources {
 public:
  explicit UrlResources(const UrlSession::Configuration& configuration);
  ~UrlResources();
  UrlResources(const UrlResources&) = delete;
  UrlResources& operator=(const UrlResources&) = delete;

  const UrlSession::Configuration& configuration() const { return configuration_; }
  CURLSH* cookies() const { return cookies_; }
  std::shared_ptr<UrlBody> makeBody() const;
  CURL* takeHandle();  // null when there is no memory for one
  void giveHandle(CURL* handle);

  std::int64_t now = 0;  // milliseconds of the monotonic clock, when the session last looked

 private:
  const UrlSession::Configuration& configuration_;
  const std::shared_ptr<UrlBodyMemory> memory_;
  const std::shared_ptr<DownloadFolder> downloads_;
  CURLSH* cookies_ = nullptr;
  std::vector<CURL*> idle_;
};

class UrlTransfer {
 public:
  UrlTransfer(std::shared_ptr<const UrlTask> task, std::string host, UrlResources& resources);
  ~UrlTransfer();
  UrlTransfer(const UrlTransfer&) = delete;
  UrlTransfer& operator=(const UrlTransfer&) = delete;

  // The scheme, host and port that share connections; empty for what can't be sent.
  static std::string hostKey(const std::string& url);

  CURL* handle() const { return easy_; }
  const UrlTask& task() const { return *task_; }
  // The host of the original request.
  const std::string& host() const { return host_; }

  // Readies the handle for the next request of the task; false when there is nothing
  // to send (the outcome then says why).
  bool prepare(const std::optional<UrlCredential>& credential);
  // libcurl is done with the handle. True when the task needs one more request.
  bool ended(CURLcode code);
  // Ends the task with an error of our own.
  void fail(std::string error);

  // Milliseconds of the monotonic clock at which the server has had its time.
  std::int64_t deadline() const { return deadline_; }
  UrlOutcome takeOutcome();

 private:
  static std::size_t onHeader(char* bytes, std::size_t size, std::size_t n, void* self);
  static std::size_t onBody(char* bytes, std::size_t size, std::size_t n, void* self);
  static std::size_t onRead(char* into, std::size_t size, std::size_t n, void* self);
  static int onSeek(void* self, curl_off_t offset, int origin);
  static int onSocket(void*, curl_socket_t socket, curlsocktype);

  bool headerLine(std::string_view line);
  bool bodyBytes(std::string_view bytes);
  bool beginBody();
  bool store(std::string_view bytes);
  void endBody();
  bool stopTooLarge();
  void setOptions();
  bool openBodyFile();
  void addHeaders();
  bool hasBody() const;
  void addBody();
  bool redirects() const;
  bool follow();
  bool stop(std::string why);

  std::shared_ptr<const UrlTask> task_;
  const std::string host_;
  UrlResources& resources_;
  UrlRequest request_;  // of the present hop
  CURL* easy_ = nullptr;
  curl_slist* headerList_ = nullptr;
  char curlError_[CURL_ERROR_SIZE] = "";
  std::int64_t deadline_ = 0;  // 0 until the first request of the task is readied

  int hops_ = 0;
  int blocks_ = 0;               // header blocks seen, interim ones included
  std::size_t headerBytes_ = 0;  // of all blocks of the hop
  std::size_t skipped_ = 0;      // body bytes of a redirect
  bool blockEnded_ = false;
  std::shared_ptr<UrlResponse> response_;
  std::string why_;  // our own reason for having stopped libcurl
  bool failed_ = false;
  std::string error_;
  std::shared_ptr<UrlBody> body_;
  std::unique_ptr<ContentDecoder> decoder_;  // null when the body is plain
  std::int64_t received_ = 0;                // bytes of the body as they came
  std::int64_t stored_ = 0;                  // and as they are kept
  int bodyFd_ = -1;
  std::int64_t bodyLeft_ = 0;
};

}  // namespace platform
