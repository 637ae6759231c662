#include "townhost/gatekeeper.h"

#include <openssl/evp.h>
#include <strings.h>

#include <cctype>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string_view>

namespace town {
namespace {

std::string md5(const std::string& text) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned size = 0;
  if (EVP_Digest(text.data(), text.size(), digest, &size, EVP_md5(), nullptr) != 1)
    throw std::runtime_error("MD5 is not available");
  std::string hex;
  for (unsigned i = 0; i < size; ++i) {
    hex += "0123456789abcdef"[digest[i] >> 4];
    hex += "0123456789abcdef"[digest[i] & 15];
  }
  return hex;
}

std::string base64(const std::string& text) {
  std::string out(4 * ((text.size() + 2) / 3) + 1, '\0');
  const int size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()),
                                   reinterpret_cast<const unsigned char*>(text.data()),
                                   static_cast<int>(text.size()));
  out.resize(static_cast<std::size_t>(size));
  return out;
}

// What follows the scheme's name, if it is that scheme.
std::optional<std::string_view> credentials(std::string_view header, std::string_view scheme) {
  if (header.size() <= scheme.size() || header[scheme.size()] != ' ') return std::nullopt;
  if (::strncasecmp(header.data(), scheme.data(), scheme.size()) != 0) return std::nullopt;
  return header.substr(scheme.size() + 1);
}

// name=value, name="value", … ; a part that can't be read ends the list.
std::map<std::string, std::string> parameters(std::string_view text) {
  std::map<std::string, std::string> all;
  std::size_t at = 0;
  while (at < text.size()) {
    while (at < text.size() && (text[at] == ' ' || text[at] == ',')) ++at;
    const auto equals = text.find('=', at);
    if (equals == std::string_view::npos) break;
    std::string name;
    for (char c : text.substr(at, equals - at))
      name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    std::string value;
    at = equals + 1;
    if (at < text.size() && text[at] == '"') {
      for (++at; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size()) ++at;
        value += text[at];
      }
      ++at;
    } else {
      for (; at < text.size() && text[at] != ',' && text[at] != ' '; ++at) value += text[at];
    }
    all[name] = value;
  }
  return all;
}

}  // namespace

Gatekeeper::Gatekeeper() {
  std::random_device random;
  for (int i = 0; i < 4; ++i) secret_ += std::to_string(random()) + ".";
}

bool Gatekeeper::basicAllows(const std::string& authorization) {
  const auto given = credentials(authorization, "Basic");
  return given && *given == base64(std::string(user) + ":" + password);
}

bool Gatekeeper::digestAllows(const std::string& authorization, const std::string& method,
                              const std::string& target) const {
  const auto given = credentials(authorization, "Digest");
  if (!given) return false;
  auto p = parameters(*given);
  const auto dot = p["nonce"].find('.');
  if (dot == std::string::npos || sealed(p["nonce"].substr(0, dot)) != p["nonce"]) return false;
  if (p["username"] != user || p["realm"] != realm || p["uri"] != target) return false;
  if (p["qop"] != "auth" || p["nc"].empty() || p["cnonce"].empty()) return false;
  const auto who = md5(p["username"] + ":" + realm + ":" + password);
  const auto what = md5(method + ":" + target);
  return p["response"] == md5(who + ":" + p["nonce"] + ":" + p["nc"] + ":" + p["cnonce"] + ":" +
                              p["qop"] + ":" + what);
}

std::string Gatekeeper::basicChallenge() {
  return std::string("Basic realm=\"") + realm + "\", charset=\"UTF-8\"";
}

std::string Gatekeeper::digestChallenge() {
  return std::string("Digest realm=\"") + realm + "\", qop=\"auth\", algorithm=MD5, nonce=\"" +
         sealed(std::to_string(++serial_)) + "\"";
}

std::string Gatekeeper::sealed(const std::string& serial) const {
  return serial + "." + md5(secret_ + serial);
}

}  // namespace town
