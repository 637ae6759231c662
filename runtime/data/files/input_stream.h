// KesInputStream: a wrapper over a stream of bytes that are read: a file, memory, the
// body of a response.
//
// Copies read from the same stream. Lengths and offsets are bytes. Throws "Object was not
// initialized (%@)" without a stream, "Error reading from stream: %@" when reading fails,
// and "Out of bounds. Index=%d Length=%d" for a range outside the buffer. Any thread, one
// at a time.
#pragma once

#include "runtime/core/array.h"
#include "runtime/core/wrapper.h"
#include "runtime/data/files/byte_stream.h"

namespace kes {

class KesInputStream final : public TypedWrapper<KesInputStream, InputStream> {
 public:
  static constexpr std::string_view kPlatformClass = "NSInputStream";
  std::string_view className() const override { return "KesInputStream"; }
  static KesInputStream over(Ref<InputStream> stream);

  // Reads from a copy of that part of the array.
  void InitializeFromBytesArray(const Ref<KesArray>& bytes, std::int32_t offset,
                                std::int32_t length);
  // The count read, which may be less than asked for; 0 at the end.
  std::int32_t ReadBytes(const Ref<KesArray>& buffer, std::int32_t offset, std::int32_t length);
  void Close();

  // For callers in C++: one read, and everything up to the end; whoever knows how much that
  // is spares the memory for growing.
  std::size_t read(std::span<std::uint8_t> into);
  std::vector<std::uint8_t> readAll(std::size_t expected = 0);
};

}  // namespace kes
