#include "platform/url/url_request.h"

#include <cctype>

namespace platform {

bool UrlRequest::isUrl(std::string_view text) {
  constexpr std::string_view others = "-._~:/?#[]@!$&'()*+,;=";
  const auto isHex = [&](std::size_t i) {
    return i < text.size() && std::isxdigit(static_cast<unsigned char>(text[i]));
  };
  bool fragment = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c == '%') {
      if (!isHex(i + 1) || !isHex(i + 2)) return false;
    } else if (c == '#') {
      if (fragment) return false;
      fragment = true;
    } else if (c >= 0x80 || (!std::isalnum(c) && others.find(text[i]) == std::string_view::npos)) {
      return false;
    }
  }
  return !text.empty();
}

const char* UrlRequest::fault(const std::optional<UrlCredential>& credential) const {
  // CONNECT asks a proxy for a tunnel, which is the transport's own affair.
  if (!isHttpToken(method) || method == "CONNECT") return "The request's method is malformed.";
  for (const auto& [name, value] : headers)
    if (!HttpHeaders::isSendable(name, value)) return "A header of the request is malformed.";
  // A colon would end the name early, and the password with it.
  if (credential &&
      (!HttpHeaders::isOneLine(credential->user) || !HttpHeaders::isOneLine(credential->password) ||
       credential->user.find(':') != std::string::npos))
    return "The request's user name or password is malformed.";
  return nullptr;
}

}  // namespace platform
