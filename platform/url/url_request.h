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

struct UrlRequest {
  static constexpr double kDefaultTimeout = 30.0;

  UrlRequest() = default;
  // A text that is no URL leaves `url` empty; such a request fails when it is sent.
  explicit UrlRequest(std::string_view text) : url(isUrl(text) ? text : "") {}

  // Whether the text holds nothing but the characters of a URL, with sound escapes.
  static bool isUrl(std::string_view text);

  std::string url;
  std::string method = "GET";
  HttpHeaders headers;
  std::shared_ptr<const std::string> body;
  std::optional<BodyFile> bodyFile;  // taken in place of `body` when set
  // How long the server may be silent; each byte in either direction starts the
  // count anew. Zero or less means the default.
  double timeout = kDefaultTimeout;
};

struct UrlResponse {
  std::string url;  // after redirects
  int status = 0;
  HttpHeaders headers;
};

struct UrlCredential {
  std::string user;
  std::string password;
};

}  // namespace platform
