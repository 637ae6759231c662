// The byte format of serialized values, for the writer and the reader alike. The
// format itself is told in docs/serialized-values.md.
#pragma once

#include <cstddef>
#include <cstdint>

#include "runtime/data/bytes/byte_order.h"

namespace kes::serialized {

inline constexpr ByteOrder kOrder = ByteOrder::Little;

enum Tag : std::uint8_t {
  kNull = 0,
  kString = 1,
  kShort = 2,
  kInt = 3,
  kLong = 4,
  kFloat = 5,
  kDouble = 6,
  kBoolean = 7,
  kByte = 10,
  kChar = 14,
  kMap = 20,
  kList = 21,
  kObjectArray = 22,
  kByteArray = 23,
  kCustomType = 24,
};

// What the end of the data reads as in place of a tag.
inline constexpr int kEndOfData = 255;

// In the name of a custom type, all up to the last one of these is another system's
// way to say where the type lives.
inline constexpr char kNamePrefixEnd = '$';

// Values inside values. A tree that is deeper can only be one that holds itself.
inline constexpr std::size_t kDeepest = 1'000'000;

// Custom types directly in a field of each other. Containers of any depth end without
// recursion, but objects end inside each other.
inline constexpr std::size_t kLongestCustomRun = 4'000;

// A map whose keys are themselves maps or lists costs its reader a comparison of each
// with each. Nobody writes such maps in earnest; these bounds keep a forged one cheap.
inline constexpr std::size_t kMostObjectKeys = 256;
inline constexpr std::size_t kDeepestKey = 128;

// What a reader makes of one document, in bytes. Small values take more room than their
// bytes, an empty map some fifty times as much.
inline constexpr std::size_t kMostMemory = std::size_t{512} << 20;
inline constexpr std::size_t kContainerCost = 256;

}  // namespace kes::serialized
