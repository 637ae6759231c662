// KesOutputStream: a wrapper over a stream of bytes that are written: a file or memory.
//
// Copies write to the same stream. Lengths and offsets are bytes. Throws "Object was not
// initialized (%@)" without a stream, "Error writing to stream: %@" when writing fails,
// and "Out of bounds. Index=%d Length=%d" for a range outside the buffer. Any thread, one
// at a time.
#pragma once

#include "runtime/core/array.h"
#include "runtime/core/wrapper.h"
#include "runtime/data/files/byte_stream.h"

namespace kes {

class KesOutputStream final : public TypedWrapper<KesOutputStream, OutputStream> {
 public:
  static constexpr std::string_view kPlatformClass = "NSOutputStream";
  std::string_view className() const override { return "KesOutputStream"; }
  static KesOutputStream over(Ref<OutputStream> stream);

  // Writes to memory; the size is a hint.
  void InitializeToBytesArray(std::int32_t initialSize);
  void WriteBytes(const Ref<KesArray>& buffer, std::int32_t offset, std::int32_t length);
  void Close();
  // What has been written to memory so far; throws for a stream over anything else.
  Ref<KesArray> ToBytesArray() const;

  // The same for callers in C++.
  void write(std::span<const std::uint8_t> bytes);
};

}  // namespace kes
