// Walking UTF-8 quickly. Any thread; throws nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kes::detail {

// How many 16-bit units the text has, or nothing when the bytes are not well-formed
// UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
std::optional<std::uint32_t> unitsIfUtf8(std::string_view bytes) noexcept;

}  // namespace kes::detail
