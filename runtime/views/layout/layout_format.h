// The numbers of the layout file format, shared by its writer and its reader. The bytes
// are described in docs/layout-format.md. Needs nothing but the standard library.
#pragma once

#include <cstdint>
#include <string_view>

namespace kes::layout_format {

enum Tag : std::int8_t {
  kInteger = 1,
  kString = 2,
  kMap = 3,
  kEnd = 4,
  kBoolean = 5,
  kColor = 6,
  kFloat = 7,
  kCachedString = 9,
  kDouble = 10,
};

inline constexpr std::string_view kExtension = ".kil";
inline constexpr std::string_view kKids = ":kids";
inline constexpr std::string_view kVariant = "variant";  // followed by the variant's number
// Maps within maps; a view costs two. What is deeper is refused.
inline constexpr int kMaxDepth = 200;

}  // namespace kes::layout_format
