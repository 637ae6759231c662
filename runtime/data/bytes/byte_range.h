// A part of an array of bytes, checked: offset and length are bytes and have to lie inside
// it, else "Out of bounds. Index=%d Length=%d"; what is no array of bytes throws "An array
// of bytes is expected.". The span lives as long as the array keeps its length. Any thread.
#pragma once

#include <span>
#include <string>

#include "runtime/core/array.h"

namespace kes {

inline std::span<std::uint8_t> wholeBytes(const Ref<KesArray>& array) {
  if (!array || !array->isBytes()) throw KesException("An array of bytes is expected.");
  return array->bytesData();
}

inline std::span<std::uint8_t> byteRange(const Ref<KesArray>& array, std::int32_t offset,
                                         std::int32_t length) {
  const auto bytes = wholeBytes(array);
  const std::int64_t end = static_cast<std::int64_t>(offset) + length;
  if (offset < 0 || length < 0 || end > static_cast<std::int64_t>(bytes.size()))
    throw KesException("Out of bounds. Index=" +
                       std::to_string(offset < 0 || length < 0 ? std::int64_t{offset} : end) +
                       " Length=" + std::to_string(bytes.size()));
  return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
}

}  // namespace kes
