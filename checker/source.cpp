#include "checker/source.h"

#include <curl/curl.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace check {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestBody = 32 * 1024 * 1024;  // a map's document has a few megabytes
constexpr long kLongestWait = 20;                       // seconds

std::size_t collect(char* bytes, std::size_t, std::size_t count, void* body) {
  auto& text = *static_cast<std::string*>(body);
  if (text.size() + count > kLargestBody) return 0;
  text.append(bytes, count);
  return count;
}

Answer request(const std::string& url, bool wholeBody) {
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy(curl_easy_init(),
                                                                 curl_easy_cleanup);
  Answer answer;
  curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy.get(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy.get(), CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_MAXREDIRS, 10L);
  curl_easy_setopt(easy.get(), CURLOPT_TIMEOUT, kLongestWait);
  curl_easy_setopt(easy.get(), CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(easy.get(), CURLOPT_USERAGENT, "InfoVARLO");
  curl_easy_setopt(easy.get(), CURLOPT_NOBODY, wholeBody ? 0L : 1L);
  curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, collect);
  curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &answer.body);
  const CURLcode result = curl_easy_perform(easy.get());
  if (result != CURLE_OK) {
    answer.fault = curl_easy_strerror(result);
    return answer;
  }
  long status = 0;
  curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
  answer.status = static_cast<int>(status);
  if (!answer.good()) answer.fault = "HTTP " + std::to_string(status);
  return answer;
}

class Host final : public Source {
 public:
  explicit Host(std::string url) : url_(std::move(url)) {
    while (url_.ends_with('/')) url_.pop_back();
  }
  Answer read(const std::string& path) override { return request(url_ + path, true); }
  Answer ask(const std::string& url, bool wholeBody) override {
    auto answer = request(url, wholeBody);
    // Some hosts know no HEAD.
    constexpr int kNotAllowed = 405, kNotImplemented = 501;
    if (!wholeBody && (answer.status == kNotAllowed || answer.status == kNotImplemented))
      answer = request(url, true);
    return answer;
  }

 private:
  std::string url_;
};

class Folder final : public Source {
 public:
  explicit Folder(fs::path root) : root_(std::move(root)) {}

  Answer read(const std::string& path) override {
    const fs::path relative =
        fs::path(path.substr(0, path.find('?'))).relative_path().lexically_normal();
    if (relative.empty() || *relative.begin() == "..") return {0, {}, "outside of the folder"};
    std::ifstream file(root_ / relative, std::ios::binary);
    std::error_code error;
    if (!file || !fs::is_regular_file(root_ / relative, error))
      return {0, {}, "no such file: " + (root_ / relative).string(), true};
    return {200, {std::istreambuf_iterator<char>(file), {}}, {}};
  }
  // An address of the town itself is that of a file here.
  Answer ask(const std::string& url, bool wholeBody) override {
    const auto host = url.find("://");
    const auto path = host == url.npos ? host : url.find('/', host + 3);
    if (path != url.npos)
      if (auto own = read(url.substr(path, url.find_first_of("?#", path) - path)); own.good())
        return own;
    return request(url, wholeBody);
  }

 private:
  fs::path root_;
};

}  // namespace

std::unique_ptr<Source> openTown(const std::string& town) {
  if (town.starts_with("http://") || town.starts_with("https://"))
    return std::make_unique<Host>(town);
  std::error_code error;
  if (fs::is_directory(town, error)) return std::make_unique<Folder>(town);
  throw std::invalid_argument(town);
}

}  // namespace check
