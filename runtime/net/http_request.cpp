#include "runtime/net/http_request.h"

#include "runtime/data/files/file.h"

namespace kes {

void MutableUrlRequest::describe(ClassBuilder<MutableUrlRequest>& c) {
  c.name("NSMutableURLRequest");
  c.method<&MutableUrlRequest::setMethod>("setHTTPMethod:");
  c.method<&MutableUrlRequest::setBody>("setHTTPBody:");
}

void MutableUrlRequest::setMethod(const Text& method) { request.method = method.str(); }

void MutableUrlRequest::setBody(const Ref<KesArray>& bytes) {
  request.bodyFile.reset();
  if (!bytes) {
    request.body.reset();
    return;
  }
  const auto& data = bytes->bytesData();
  request.body = std::make_shared<const std::string>(data.begin(), data.end());
}

void KesHttpRequest::initialize(std::string_view link, std::string_view method) {
  auto made = platform::makeShared<MutableUrlRequest>();
  made->request = platform::UrlRequest(link);
  made->request.method = method;
  wrap(Value(std::move(made)));
}

void KesHttpRequest::InitializeGet(std::string_view link) { initialize(link, "GET"); }

void KesHttpRequest::InitializeDelete(std::string_view link) { initialize(link, "DELETE"); }

void KesHttpRequest::InitializeHead(std::string_view link) { initialize(link, "HEAD"); }

void KesHttpRequest::InitializePost2(std::string_view link, const Ref<KesArray>& body) {
  initialize(link, "POST");
  native()->setBody(body);
}

void KesHttpRequest::InitializePut2(std::string_view link, const Ref<KesArray>& body) {
  initialize(link, "PUT");
  native()->setBody(body);
}

void KesHttpRequest::InitializePost(std::string_view link, std::string_view dir,
                                    std::string_view fileName) {
  const auto& files = File();
  const Text name = files.checkAssets(dir, fileName, false);
  const auto size = files.Size(dir, name);
  initialize(link, "POST");
  request().bodyFile = platform::BodyFile{KesFile::Combine(dir, name).str(), size};
  SetHeader("Content-Length", std::to_string(size));
}

void KesHttpRequest::InitializePut(std::string_view link, std::string_view dir,
                                   std::string_view fileName) {
  InitializePost(link, dir, fileName);
  request().method = "PUT";
}

void KesHttpRequest::SetHeader(std::string_view name, std::string_view value) {
  request().headers.set(name, value);
}

std::int32_t KesHttpRequest::Timeout() const {
  return static_cast<std::int32_t>(request().timeout * 1000);
}

void KesHttpRequest::setTimeout(std::int32_t milliseconds) {
  request().timeout = milliseconds / 1000.0;
}

}  // namespace kes
