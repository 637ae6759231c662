#include "platform/url/url_transfer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <system_error>
#include <utility>

namespace platform {

namespace {

// Bounds on what a server may send before a body, and before we lose patience with it.
constexpr int kMaxRedirects = 20;
constexpr int kMaxHeaderBlocks = 16;
constexpr std::size_t kMaxHeaderBytes = 256 * 1024;
constexpr std::size_t kMaxRedirectBody = 256 * 1024;
// For all bodies of a session that are in memory at a time.
constexpr std::size_t kBodyMemory = 64 * UrlBody::kInMemory;

struct CurlUrl {
  CURLU* handle = curl_url();
  ~CurlUrl() { curl_url_cleanup(handle); }

  bool set(const std::string& url) {
    return curl_url_set(handle, CURLUPART_URL, url.c_str(), CURLU_PATH_AS_IS) == CURLUE_OK;
  }
  std::string part(CURLUPart what, unsigned flags = 0) const {
    char* text = nullptr;
    if (curl_url_get(handle, what, &text, flags) != CURLUE_OK) return {};
    std::string s = text;
    curl_free(text);
    return s;
  }
};

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// What may be told to another host than the one for which it was set: what every browser
// says. Anything else may be a secret, whatever its name.
bool isHarmless(std::string_view header) {
  constexpr std::string_view known[] = {"Accept",
                                        "Accept-Charset",
                                        "Accept-Encoding",
                                        "Accept-Language",
                                        "Cache-Control",
                                        "Content-Encoding",
                                        "Content-Type",
                                        "Content-Language",
                                        "If-Modified-Since",
                                        "Pragma",
                                        "Range",
                                        "User-Agent"};
  return std::any_of(std::begin(known), std::end(known),
                     [header](auto name) { return HttpHeaders::sameName(header, name); });
}

// Of a host key.
bool isLoopback(std::string_view host) {
  host.remove_prefix(host.find("://") + 3);
  return host.starts_with("localhost:") || host.starts_with("127.") || host.starts_with("[::1]:");
}

// A name in the URL is no credential: those come from the delegate alone.
std::string withoutUser(const std::string& url) {
  if (url.find('@') == std::string::npos) return url;
  CurlUrl u;
  u.set(url);
  curl_url_set(u.handle, CURLUPART_USER, nullptr, 0);
  curl_url_set(u.handle, CURLUPART_PASSWORD, nullptr, 0);
  return u.part(CURLUPART_URL);
}

void reset(CURL* handle) {
  // A reset alone forgets the list of cookie files without freeing it.
  curl_easy_setopt(handle, CURLOPT_COOKIEFILE, nullptr);
  curl_easy_reset(handle);
}

std::string systemText(int code) { return std::generic_category().message(code); }

}  // namespace

std::string UrlTransfer::hostKey(const std::string& url) {
  CurlUrl u;
  if (!UrlRequest::isUrl(url) || !u.set(url)) return {};
  const auto scheme = u.part(CURLUPART_SCHEME);
  if (scheme != "http" && scheme != "https") return {};
  return scheme + "://" + u.part(CURLUPART_HOST) + ":" + u.part(CURLUPART_PORT, CURLU_DEFAULT_PORT);
}

UrlResources::UrlResources(const UrlSession::Configuration& configuration)
    : configuration_(configuration),
      memory_(std::make_shared<UrlBodyMemory>(kBodyMemory)),
      downloads_(std::make_shared<DownloadFolder>(configuration.temporaryFolder)) {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
  cookies_ = curl_share_init();
  curl_share_setopt(cookies_, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
}

UrlResources::~UrlResources() {
  for (auto* handle : idle_) curl_easy_cleanup(handle);
  curl_share_cleanup(cookies_);
}

std::shared_ptr<UrlBody> UrlResources::makeBody() const {
  return std::make_shared<UrlBody>(downloads_, memory_);
}

CURL* UrlResources::takeHandle() {
  if (idle_.empty()) return curl_easy_init();
  auto* handle = idle_.back();
  idle_.pop_back();
  return handle;
}

void UrlResources::giveHandle(CURL* handle) {
  reset(handle);
  idle_.push_back(handle);
}

UrlTransfer::UrlTransfer(std::shared_ptr<const UrlTask> task, std::string host,
                         UrlResources& resources)
    : task_(std::move(task)),
      host_(std::move(host)),
      resources_(resources),
      request_(task_->originalRequest) {}

UrlTransfer::~UrlTransfer() {
  if (easy_ && !failed_)
    resources_.giveHandle(easy_);
  else if (easy_)
    curl_easy_cleanup(easy_);
  curl_slist_free_all(headerList_);
  if (bodyFd_ >= 0) ::close(bodyFd_);
}

void UrlTransfer::fail(std::string error) {
  // Don't make the session's thread wait for a resolver that gives no answer.
  if (easy_) curl_easy_setopt(easy_, CURLOPT_QUICK_EXIT, 1L);
  error_ = std::move(error);
  failed_ = true;
}

// Remembers our own reason; false, for a callback to pass on.
bool UrlTransfer::stop(std::string why) {
  why_ = std::move(why);
  return false;
}

bool UrlTransfer::prepare(const std::optional<UrlCredential>& credential) {
  if (const char* fault = request_.fault(credential)) {
    fail(fault);
    return false;
  }
  if (!deadline_) {
    const double seconds = request_.timeout > 0 ? request_.timeout : UrlRequest::kDefaultTimeout;
    deadline_ = resources_.now + static_cast<std::int64_t>(std::min(seconds, 1e9) * 1000);
  }

  if (!easy_)
    easy_ = resources_.takeHandle();
  else
    reset(easy_);
  if (!easy_) {
    fail("out of memory");
    return false;
  }
  setOptions();
  if (credential) {
    curl_easy_setopt(easy_, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST));
    curl_easy_setopt(easy_, CURLOPT_USERNAME, credential->user.c_str());
    curl_easy_setopt(easy_, CURLOPT_PASSWORD, credential->password.c_str());
  }
  if (!openBodyFile()) return false;
  addHeaders();
  addBody();

  response_.reset();
  body_.reset();
  decoder_.reset();
  received_ = stored_ = 0;
  curlError_[0] = 0;
  blocks_ = 0;
  headerBytes_ = skipped_ = 0;
  blockEnded_ = false;
  return true;
}

void UrlTransfer::setOptions() {
  const auto set = [this](CURLoption option, auto value) {
    curl_easy_setopt(easy_, option, value);
  };
  set(CURLOPT_URL, withoutUser(request_.url).c_str());
  set(CURLOPT_PATH_AS_IS, 1L);
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_MAXREDIRS, 3L);  // bounds the rounds of a challenge, too
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_ERRORBUFFER, curlError_);
  set(CURLOPT_HTTP_CONTENT_DECODING, 0L);
  set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
  set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(CURLOPT_CONNECTTIMEOUT_MS, 2'000'000'000L);  // deadline() is the one time-out
  set(CURLOPT_SOCKOPTFUNCTION, &onSocket);
  set(CURLOPT_HEADERFUNCTION, &onHeader);
  set(CURLOPT_HEADERDATA, static_cast<void*>(this));
  set(CURLOPT_WRITEFUNCTION, &onBody);
  set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  if (isLoopback(hops_ ? hostKey(request_.url) : host_)) set(CURLOPT_PROXY, "");
  if (resources_.configuration().trustAll) {
    set(CURLOPT_SSL_VERIFYPEER, 0L);
    set(CURLOPT_SSL_VERIFYHOST, 0L);
  }
  if (const auto& trusted = resources_.configuration().authorities; !trusted.empty())
    set(CURLOPT_CAINFO, trusted.c_str());
  // Who writes a cookie by hand wants no other.
  const bool byHand = request_.headers.find("Cookie");
  set(CURLOPT_SHARE, byHand ? nullptr : resources_.cookies());
  if (!byHand) set(CURLOPT_COOKIEFILE, "");  // no file: keeps them in memory
}

bool UrlTransfer::openBodyFile() {
  if (!request_.bodyFile || bodyFd_ >= 0) return true;
  const auto& path = request_.bodyFile->path;
  bodyFd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat about {};
  if (bodyFd_ >= 0 && ::fstat(bodyFd_, &about) == 0 && S_ISREG(about.st_mode)) return true;
  fail("The body's file can't be read: " +
       (bodyFd_ < 0 ? systemText(errno) : std::string("not a plain file")));
  return false;
}

void UrlTransfer::addHeaders() {
  curl_slist_free_all(std::exchange(headerList_, nullptr));
  const auto add = [this](const std::string& line) {
    if (auto* list = curl_slist_append(headerList_, line.c_str())) headerList_ = list;
  };
  for (const auto& [name, value] : request_.headers) {
    // The framing is the transport's own affair.
    constexpr std::string_view framing[] = {"Content-Length", "Transfer-Encoding", "Connection"};
    if (std::any_of(std::begin(framing), std::end(framing),
                    [&header = name](auto f) { return HttpHeaders::sameName(header, f); }))
      continue;
    add(value.empty() ? name + ";" : name + ": " + value);
  }
  if (!request_.headers.find("Accept-Encoding"))
    add("Accept-Encoding: " + std::string(ContentDecoder::kAccepted));
  if (hasBody()) {
    if (!request_.headers.find("Expect")) add("Expect:");
    // A form's type is what a posted body has until something else is said.
    if (request_.method != "POST" && !request_.headers.find("Content-Type")) add("Content-Type:");
  }
  const auto& userAgent = resources_.configuration().userAgent;
  if (!userAgent.empty()) curl_easy_setopt(easy_, CURLOPT_USERAGENT, userAgent.c_str());
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, headerList_);
}

bool UrlTransfer::hasBody() const {
  const auto& method = request_.method;
  return request_.bodyFile || request_.body || method == "POST" || method == "PUT" ||
         method == "PATCH";
}

void UrlTransfer::addBody() {
  const auto& method = request_.method;
  const auto set = [this](CURLoption option, auto value) {
    curl_easy_setopt(easy_, option, value);
  };
  if (request_.bodyFile) {
    set(CURLOPT_POST, 1L);
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.bodyFile->length));
    set(CURLOPT_READFUNCTION, &onRead);
    set(CURLOPT_READDATA, static_cast<void*>(this));
    set(CURLOPT_SEEKFUNCTION, &onSeek);
    set(CURLOPT_SEEKDATA, static_cast<void*>(this));
    onSeek(this, 0, SEEK_SET);
  } else if (hasBody()) {
    set(CURLOPT_POST, 1L);
    set(CURLOPT_POSTFIELDSIZE_LARGE,
        static_cast<curl_off_t>(request_.body ? request_.body->size() : 0));
    set(CURLOPT_POSTFIELDS, request_.body ? request_.body->data() : "");
  } else if (method == "HEAD") {
    set(CURLOPT_NOBODY, 1L);
  }
  if (method != "HEAD") set(CURLOPT_CUSTOMREQUEST, method.c_str());
}

std::size_t UrlTransfer::onHeader(char* bytes, std::size_t size, std::size_t n, void* self) {
  try {
    return static_cast<UrlTransfer*>(self)->headerLine({bytes, size * n}) ? size * n : 0;
  } catch (...) {
    return 0;
  }
}

bool UrlTransfer::headerLine(std::string_view line) {
  headerBytes_ += line.size();
  if (headerBytes_ > kMaxHeaderBytes) return stop("The server's headers are too large.");
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);

  if (line.starts_with("HTTP/") && (blockEnded_ || blocks_ == 0)) {
    if (++blocks_ > kMaxHeaderBlocks) return stop("The server gives no final answer.");
    // What came before was a challenge or an interim answer.
    if (body_ && !body_->clear()) return stop(body_->error());
    decoder_.reset();
    received_ = stored_ = 0;
    long status = 0;
    curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
    response_ = std::make_shared<UrlResponse>();
    response_->status = static_cast<int>(status);
    blockEnded_ = false;
  } else if (line.empty()) {
    blockEnded_ = true;
  } else if (response_ && !blockEnded_) {
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return true;
    auto value = line.substr(colon + 1);
    while (!value.empty() && (value.front() == ' ' || value.front() == '\t'))
      value.remove_prefix(1);
    while (!value.empty() && (value.back() == ' ' || value.back() == '\t')) value.remove_suffix(1);
    response_->headers.add(line.substr(0, colon), value);
  }
  return true;
}

std::size_t UrlTransfer::onBody(char* bytes, std::size_t size, std::size_t n, void* self) {
  try {
    return static_cast<UrlTransfer*>(self)->bodyBytes({bytes, size * n}) ? size * n : 0;
  } catch (...) {
    return 0;
  }
}

bool UrlTransfer::bodyBytes(std::string_view bytes) {
  if (redirects()) {
    skipped_ += bytes.size();
    return skipped_ <= kMaxRedirectBody;
  }
  if (received_ == 0 && !beginBody()) return false;
  received_ += static_cast<std::int64_t>(bytes.size());
  if (received_ > request_.bodyLimit) return stopTooLarge();
  if (!decoder_) return store(bytes);
  if (decoder_->write(bytes)) return true;
  return why_.empty() ? stop(decoder_->error()) : false;
}

// The first byte of a body is there, and its headers are.
bool UrlTransfer::beginBody() {
  if (!body_) body_ = resources_.makeBody();
  if (!response_) return true;
  if (const auto* length = response_->headers.find("Content-Length");
      length && std::strtoll(length->c_str(), nullptr, 10) > request_.bodyLimit)
    return stopTooLarge();
  if (const auto* coding = response_->headers.find("Content-Encoding"))
    decoder_ = ContentDecoder::make(*coding, [this](auto plain) { return store(plain); });
  return true;
}

bool UrlTransfer::store(std::string_view bytes) {
  stored_ += static_cast<std::int64_t>(bytes.size());
  if (stored_ > request_.bodyLimit) return stopTooLarge();
  return body_->write(bytes) || stop("The body can't be stored: " + body_->error());
}

// Nothing more comes; the task fails when the body is not whole.
void UrlTransfer::endBody() {
  if (!body_) body_ = resources_.makeBody();
  if (decoder_ && !decoder_->end())
    fail(decoder_->error());
  else if (!body_->close())
    fail("The body can't be stored: " + body_->error());
}

bool UrlTransfer::stopTooLarge() {
  return stop("The body is too large: more than " + std::to_string(request_.bodyLimit) + " bytes.");
}

std::size_t UrlTransfer::onRead(char* into, std::size_t size, std::size_t n, void* self) {
  auto& t = *static_cast<UrlTransfer*>(self);
  const auto wanted = std::min<std::int64_t>(static_cast<std::int64_t>(size * n), t.bodyLeft_);
  if (wanted <= 0) return 0;
  ssize_t got;
  do {
    got = ::read(t.bodyFd_, into, static_cast<std::size_t>(wanted));
  } while (got < 0 && errno == EINTR);
  if (got <= 0) {
    t.stop("The body's file can't be read: " +
           (got < 0 ? systemText(errno) : std::string("it is shorter than announced")));
    return CURL_READFUNC_ABORT;
  }
  t.bodyLeft_ -= got;
  return static_cast<std::size_t>(got);
}

int UrlTransfer::onSeek(void* self, curl_off_t offset, int origin) {
  auto& t = *static_cast<UrlTransfer*>(self);
  if (origin != SEEK_SET || ::lseek(t.bodyFd_, offset, SEEK_SET) != offset)
    return CURL_SEEKFUNC_FAIL;
  t.bodyLeft_ = t.request_.bodyFile->length - offset;
  return CURL_SEEKFUNC_OK;
}

int UrlTransfer::onSocket(void*, curl_socket_t socket, curlsocktype) {
  ::fcntl(socket, F_SETFD, FD_CLOEXEC);
  return CURL_SOCKOPT_OK;
}

bool UrlTransfer::ended(CURLcode code) {
  if (!blockEnded_) response_.reset();
  if (why_.empty() && redirects()) return follow();

  // An interim answer that no standard knows, with nothing sound after it, was meant to be
  // the final one.
  const bool lastWord =
      why_.empty() && response_ && response_->status > 103 && response_->status < 200;
  if (code != CURLE_OK && !lastWord) {
    fail(!why_.empty() ? why_ : curlError_[0] ? curlError_ : curl_easy_strerror(code));
    return false;
  }
  if (!response_) {
    fail("The server's answer has no headers.");
    return false;
  }
  endBody();
  return false;
}

bool UrlTransfer::redirects() const {
  return response_ && isRedirect(response_->status) && response_->headers.find("Location");
}

// Turns the request into the one that the redirect asks for.
bool UrlTransfer::follow() {
  CurlUrl url;
  std::string target;
  const auto& location = *response_->headers.find("Location");
  if (url.set(request_.url) && curl_url_set(url.handle, CURLUPART_URL, location.c_str(),
                                            CURLU_PATH_AS_IS | CURLU_URLENCODE) == CURLUE_OK)
    target = url.part(CURLUPART_URL);
  const int status = response_->status;
  response_.reset();
  if (hostKey(target).empty()) {
    fail("The server redirects to an unsupported URL.");
    return false;
  }
  if (++hops_ > kMaxRedirects) {
    fail("too many HTTP redirects");
    return false;
  }
  if (hostKey(target) != hostKey(request_.url)) {
    request_.headers.keep(isHarmless);
  }
  const bool asGet = (status == 303 && request_.method != "HEAD") ||
                     ((status == 301 || status == 302) && request_.method == "POST");
  if (asGet) {
    request_.method = "GET";
    request_.body.reset();
    request_.bodyFile.reset();
    for (auto name : {"Content-Type", "Content-Encoding", "Content-Language"})
      request_.headers.remove(name);
  }
  request_.url = std::move(target);
  return true;
}

UrlOutcome UrlTransfer::takeOutcome() {
  UrlOutcome o;
  o.task = task_;
  if (!failed_) {
    o.body = std::move(body_);
  } else {
    o.error = std::move(error_);
    // Only a final answer whose headers came whole is worth telling.
    if (response_ && (!blockEnded_ || response_->status < 200 || redirects())) response_.reset();
  }
  if (response_) {
    char* url = nullptr;
    curl_easy_getinfo(easy_, CURLINFO_EFFECTIVE_URL, &url);
    response_->url = url ? url : "";
  }
  o.response = std::move(response_);
  return o;
}

}  // namespace platform
