// From the readable source of a layout to the layout. The form is described in
// docs/layout-format.md. Any thread.
#pragma once

#include "tools/layout_file.h"
#include "tools/layout_schema.h"

namespace layouts {

// Throws Error "<fileName>:<line>: <what is wrong>".
Layout compile(std::string_view source, std::string_view fileName);

// A single value as sources write it. Throws Error without a place.
Value parseValue(const Property& property, std::string_view text);

inline constexpr std::uint32_t kKeepColor = 0xFFF0F8FF;

}  // namespace layouts
