#include "runtime/net/string_utils.h"

#include "runtime/core/language/common.h"

namespace kes {

namespace {

bool isUnreserved(std::uint8_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '.' || c == '_' || c == '~';
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

Text iStringUtils::EncodeUrl(std::string_view text, std::string_view charset) {
  std::string out;
  for (const std::uint8_t c : KesCommon::GetBytes(text, charset)) {
    if (isUnreserved(c)) {
      out += static_cast<char>(c);
    } else {
      out += '%';
      out += "0123456789ABCDEF"[c >> 4];
      out += "0123456789ABCDEF"[c & 15];
    }
  }
  return Text(out);
}

Text iStringUtils::DecodeUrl(std::string_view text, std::string_view charset) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < text.size();) {
    const int high = text[i] == '%' && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
    if (low >= 0) {
      bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
      i += 3;
    } else if (static_cast<unsigned char>(text[i]) < 0x80) {
      bytes.push_back(static_cast<std::uint8_t>(text[i++]));
    } else {
      // Characters that nobody escaped.
      const auto begin = i;
      while (i < text.size() && static_cast<unsigned char>(text[i]) >= 0x80) ++i;
      const auto run = KesCommon::GetBytes(text.substr(begin, i - begin), charset);
      bytes.insert(bytes.end(), run.begin(), run.end());
    }
  }
  return KesCommon::BytesToString(bytes, 0, static_cast<int>(bytes.size()), charset);
}

}  // namespace kes
