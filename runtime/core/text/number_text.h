// Numbers as text and text as numbers, by the fixed rules of the language: "." for the
// fraction, no grouping, whatever the phone's locale. Any thread; nothing here throws.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kes::detail {

struct ScannedDouble {
  double value;
  std::size_t used;  // bytes, white space before the number counted
};

// The longest floating number at the start, white space before it skipped.
std::optional<ScannedDouble> scanDouble(std::string_view text);
// The integer at the start, held within 64 bits; 0 when there is none.
std::int64_t scanInteger(std::string_view text);

// The shortest text that reads back as the same number.
std::string doubleText(double v);
std::string floatText(float v);

}  // namespace kes::detail
