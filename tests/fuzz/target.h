// What a fuzz target is: a function that feeds bytes from anywhere to a parser.
//
// It returns when the bytes were taken, and also when they were refused in the way that
// the parser promises, by KesException. Everything else that goes wrong leaves it: a
// promise that does not hold is thrown by require(), the sanitizers see the rest. A target
// keeps nothing from one input to the next. Runs inside a testing_support::TestPlatform.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>

#include "runtime/core/exception.h"

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

using Target = void(Bytes input);
Target coding, compressed, date, framing, json, kil, map_file, multipart, picture, regex;
Target serialized, url;

inline void require(bool promise, const char* what) {
  if (!promise) throw std::logic_error(what);
}

inline std::string_view textOf(Bytes input) {
  return {reinterpret_cast<const char*>(input.data()), input.size()};
}

// Takes the next part of the input, up to a line feed or the end.
inline std::string_view takeLine(std::string_view& rest) {
  const auto end = rest.find('\n');
  const auto line = rest.substr(0, end);
  rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  return line;
}

// Runs an operation that may refuse what it is given; false when it did.
template <class F>
bool accepts(F&& operation) {
  try {
    operation();
    return true;
  } catch (const kes::KesException&) {
    return false;
  }
}

}  // namespace fuzz
