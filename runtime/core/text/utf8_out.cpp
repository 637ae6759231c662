#include "runtime/core/text/utf8_out.h"

#include <cstring>

namespace kes {

std::string_view wellFormedUtf8(std::string_view text, std::string& scratch) {
  // A half is kept as 0xED and two more bytes, the first of them 0xA0 or above.
  const auto half = [&](std::size_t i) {
    return i + 2 < text.size() && static_cast<unsigned char>(text[i + 1]) >= 0xA0;
  };
  const auto next = [&](std::size_t from) {
    const void* found =
        from < text.size() ? std::memchr(text.data() + from, 0xED, text.size() - from) : nullptr;
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data())
                 : text.size();
  };

  std::size_t at = next(0);
  while (at < text.size() && !half(at)) at = next(at + 1);
  if (at == text.size()) return text;

  scratch.assign(text);
  for (; at < text.size(); at = next(at + 1))
    if (half(at)) scratch.replace(at, 3, "\xEF\xBF\xBD");
  return scratch;
}

}  // namespace kes
