#include "checker/source.h"

#include <curl/curl.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace check {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestBody = 32 * 1024 * 1024;  // a map's document has a few megabytes
constexpr long kLongestWait = 20;                       // seconds

const Words kTooLarge{"ha più di 32 MB", "it has more than 32 MB"};

// What a clerk meets, in the clerk's language; the rest in the library's words.
Words faultOf(CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return {"nessun host ha questo nome", "no host has that name"};
    case CURLE_COULDNT_CONNECT:
      return {"l'host non accetta la connessione", "the host accepts no connection"};
    case CURLE_OPERATION_TIMEDOUT:
      return {"nessuna risposta in tempo", "no answer in time"};
    case CURLE_TOO_MANY_REDIRECTS:
      return {"i rinvii non finiscono", "the redirects do not end"};
    case CURLE_PEER_FAILED_VERIFICATION:
      return {"il certificato dell'host non è valido", "the host's certificate is not valid"};
    case CURLE_URL_MALFORMAT:
      return {"l'indirizzo non è scritto bene", "the address is not well written"};
    default:
      return {curl_easy_strerror(code), curl_easy_strerror(code)};
  }
}

enum class Wanted { Head, Beginning, Whole };

struct Body {
  Wanted wanted;
  std::string text;
};

// Taking nothing ends the transfer.
std::size_t collect(char* bytes, std::size_t, std::size_t count, void* to) {
  auto& body = *static_cast<Body*>(to);
  if (body.wanted != Wanted::Whole || body.text.size() + count > kLargestBody) return 0;
  body.text.append(bytes, count);
  return count;
}

Answer request(const std::string& url, Wanted wanted) {
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy(curl_easy_init(),
                                                                 curl_easy_cleanup);
  Body body{wanted, {}};
  curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy.get(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy.get(), CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_MAXREDIRS, 10L);
  curl_easy_setopt(easy.get(), CURLOPT_TIMEOUT, kLongestWait);
  curl_easy_setopt(easy.get(), CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(easy.get(), CURLOPT_USERAGENT, "InfoVARLO");
  curl_easy_setopt(easy.get(), CURLOPT_NOBODY, wanted == Wanted::Head ? 1L : 0L);
  curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, collect);
  curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &body);
  const CURLcode result = curl_easy_perform(easy.get());
  const bool cut = result == CURLE_WRITE_ERROR;
  if (cut && wanted == Wanted::Whole) return {0, {}, kTooLarge};
  if (result != CURLE_OK && !cut) return {0, {}, faultOf(result)};
  long status = 0;
  curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
  Answer answer{static_cast<int>(status), std::move(body.text), {}};
  const std::string said = "HTTP " + std::to_string(status);
  if (!answer.good()) answer.fault = {said, said};
  return answer;
}

Answer requestAny(const std::string& url, bool wholeBody) {
  if (wholeBody) return request(url, Wanted::Whole);
  const auto answer = request(url, Wanted::Head);
  // Some hosts know no HEAD.
  constexpr int kNotAllowed = 405, kNotImplemented = 501;
  return answer.status == kNotAllowed || answer.status == kNotImplemented
             ? request(url, Wanted::Beginning)
             : answer;
}

class Host final : public Source {
 public:
  explicit Host(std::string url) : url_(std::move(url)) {
    while (url_.ends_with('/')) url_.pop_back();
  }
  Answer read(const std::string& path) override { return request(url_ + path, Wanted::Whole); }
  Answer ask(const std::string& url, bool wholeBody) override { return requestAny(url, wholeBody); }

 private:
  std::string url_;
};

class Folder final : public Source {
 public:
  explicit Folder(fs::path root) : root_(std::move(root)) {}

  Answer read(const std::string& path) override {
    const fs::path relative =
        fs::path(path.substr(0, path.find('?'))).relative_path().lexically_normal();
    if (relative.empty() || *relative.begin() == "..")
      return {0, {}, {"fuori dalla cartella", "outside of the folder"}};
    const fs::path place = root_ / relative;
    const std::string name = place.string();
    std::error_code error;
    const auto kind = fs::status(place, error).type();
    if (kind == fs::file_type::not_found)
      return {0, {}, {"non c'è il file " + name, "there is no file " + name}, true};
    // Looked at before it is opened: a pipe would be waited for.
    if (kind == fs::file_type::regular) {
      if (fs::file_size(place, error) > kLargestBody) return {0, {}, kTooLarge};
      if (std::ifstream file(place, std::ios::binary); file)
        return {200, {std::istreambuf_iterator<char>(file), {}}, {}};
    }
    return {0, {}, {"il file " + name + " non si apre", "the file " + name + " can't be opened"}};
  }
  // An address of the town itself is that of a file here.
  Answer ask(const std::string& url, bool wholeBody) override {
    const auto host = url.find("://");
    const auto path = host == url.npos ? host : url.find('/', host + 3);
    if (path != url.npos)
      if (auto own = read(url.substr(path, url.find_first_of("?#", path) - path)); own.good())
        return own;
    return requestAny(url, wholeBody);
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
  throw std::invalid_argument("no address and no folder: " + town);
}

}  // namespace check
