// Text as bytes for files and other programs.
//
// A text may hold half of a surrogate pair, which no UTF-8 can: on its way out each
// half becomes U+FFFD. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kes {

// Whether it is worth a closer look: every half starts with this byte.
inline bool mayHoldHalf(std::string_view text) {
  return text.find('\xED') != std::string_view::npos;
}

// The text itself when it is well-formed, else its corrected copy in `scratch`.
std::string_view wellFormedUtf8(std::string_view text, std::string& scratch);

}  // namespace kes
