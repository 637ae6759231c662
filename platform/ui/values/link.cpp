#include "platform/ui/values/link.h"

#include <algorithm>

namespace ui {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }
bool oneOf(char c, std::string_view set) { return set.find(c) != std::string_view::npos; }

int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Blanks and control characters around an address mean nothing.
std::string_view trimmed(std::string_view text) {
  const auto blank = [](char c) { return isControl(c) || c == ' '; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

// A percent sign that begins no escape stands for itself.
std::string decoded(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
                        hexValue(text[i + 2]) >= 0;
    if (!escape) {
      out += text[i];
      continue;
    }
    out += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
    i += 2;
  }
  return out;
}

// Letters and digits and `kept` as they stand, all else as an escape.
std::string encoded(std::string_view text, std::string_view kept) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (const char c : text) {
    if (isLetter(c) || isDigit(c) || oneOf(c, kept)) {
      out += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      out += '%';
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
    }
  }
  return out;
}

// The first number in the text, without what people write between its digits. What is no
// part of a number ends it: an extension, a pause, a code for the network.
std::optional<std::string> telephone(std::string_view text) {
  std::string number;
  for (const char c : decoded(text)) {
    if (isDigit(c) || (c == '+' && number.empty()))
      number += c;
    else if (!oneOf(c, " ./-()"))
      break;
  }
  if (number.find_first_of("0123456789") == std::string::npos) return std::nullopt;
  return "tel:" + number;
}

std::optional<std::string> letter(std::string_view text) {
  const auto question = std::min(text.find('?'), text.size());
  std::string address = decoded(text.substr(0, question));
  std::erase_if(address, [](char c) { return isControl(c) || c == ' '; });
  address.resize(std::min(address.find_first_of(",;"), address.size()));
  const auto at = address.find('@');
  if (at == 0 || at == std::string::npos || at + 1 == address.size() ||
      address.find('@', at + 1) != std::string::npos)
    return std::nullopt;
  std::string out = "mailto:" + encoded(address, "@.!$'*+-_~");

  std::string_view rest = text.substr(question);
  while (!rest.empty()) {
    rest.remove_prefix(1);
    const std::string_view field = rest.substr(0, rest.find('&'));
    rest.remove_prefix(field.size());
    const auto equals = field.find('=');
    if (equals == std::string_view::npos) continue;
    std::string name = decoded(field.substr(0, equals));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (name != "subject") continue;
    std::string subject = decoded(field.substr(equals + 1));
    // A line break would begin another header.
    std::replace_if(subject.begin(), subject.end(), isControl, ' ');
    return out + "?subject=" + encoded(subject, "-._~");
  }
  return out;
}

std::optional<std::string> webAddress(std::string_view address, std::size_t colon) {
  const std::string_view rest = address.substr(colon + 1);
  if (rest.size() < 3 || rest.substr(0, 2) != "//" || oneOf(rest[2], "/?#\\")) return std::nullopt;
  if (std::any_of(address.begin(), address.end(), isControl)) return std::nullopt;
  return encoded(address, "-._~:/?#[]@!$&'()*+,;=%");
}

}  // namespace

std::string schemeOf(std::string_view address) {
  address = trimmed(address);
  const auto colon = address.find(':');
  if (colon == std::string_view::npos || colon == 0 || !isLetter(address[0])) return {};
  std::string scheme(address.substr(0, colon));
  for (char& c : scheme) {
    if (!isLetter(c) && !isDigit(c) && !oneOf(c, "+-.")) return {};
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return scheme;
}

std::optional<std::string> outgoingLink(std::string_view address) {
  address = trimmed(address);
  const std::string scheme = schemeOf(address);
  const auto content = address.substr(std::min(scheme.size() + 1, address.size()));
  if (scheme == "tel") return telephone(content);
  if (scheme == "mailto") return letter(content);
  if (scheme == "http" || scheme == "https") return webAddress(address, scheme.size());
  return std::nullopt;
}

}  // namespace ui
