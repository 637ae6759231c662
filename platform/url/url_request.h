// What a URL session is asked to send, and what came back.
//
// Plain values, copied freely and each used by one thread at a time; a body of bytes is
// shared, not copied. Time-outs are seconds. Nothing here throws but bad_alloc.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/url/http_headers.h"

namespace platform {

// A file sent as a body: `length` bytes from its start, read while they are sent and
// read again from the start when the request has to be repeated.
struct BodyFile {
  std::string path;
  std::int64_t length = 0;
};

struct UrlCredential {
  std::string user;
  std::string password;
};

struct UrlRequest {
  static constexpr double kDefaultTimeout = 30.0;
  static constexpr std::int64_t kDefaultBodyLimit = std::int64_t{64} << 20;

  UrlRequest() = default;
  // A text that is no URL leaves `url` empty; such a request fails when it is sent.
  explicit UrlRequest(std::string_view text) : url(isUrl(text) ? text : "") {}

  // Whether the text holds nothing but the characters of a URL, with sound escapes.
  static bool isUrl(std::string_view text);
  // Why the request must not go out with that credential, null when it may: the one place
  // where what a caller gave is looked at before it reaches the wire.
  const char* fault(const std::optional<UrlCredential>& credential) const;

  std::string url;
  std::string method = "GET";
  HttpHeaders headers;
  std::shared_ptr<const std::string> body;
  std::optional<BodyFile> bodyFile;  // taken in place of `body` when set
  // For the whole of it, redirects and challenges included, from the moment at which it has
  // a connection to use. Zero or less means the default.
  double timeout = kDefaultTimeout;
  // The most bytes that the answer's body may have, any compression undone.
  std::int64_t bodyLimit = kDefaultBodyLimit;
};

struct UrlResponse {
  std::string url;  // after redirects
  int status = 0;
  HttpHeaders headers;
};

}  // namespace platform
