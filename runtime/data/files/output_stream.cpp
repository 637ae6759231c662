#include "runtime/data/files/output_stream.h"

#include <algorithm>

#include "runtime/data/bytes/byte_range.h"

namespace kes {

KesOutputStream KesOutputStream::over(Ref<OutputStream> stream) {
  KesOutputStream s;
  s.wrap(Value(std::move(stream)));
  return s;
}

void KesOutputStream::InitializeToBytesArray(std::int32_t initialSize) {
  auto memory = platform::makeShared<MemoryOutputStream>();
  memory->reserve(static_cast<std::size_t>(std::clamp(initialSize, 0, 1 << 20)));
  wrap(Value(std::move(memory)));
}

void KesOutputStream::WriteBytes(const Ref<KesArray>& buffer, std::int32_t offset,
                                 std::int32_t length) {
  write(byteRange(buffer, offset, length));
}

void KesOutputStream::Close() {
  const auto stream = native();
  const bool wasWell = stream->error().empty();
  stream->close();
  if (wasWell && !stream->error().empty())
    throw KesException(formatText("Error writing to stream: %@", {stream->error()}));
}

Ref<KesArray> KesOutputStream::ToBytesArray() const {
  const auto memory = object().as<MemoryOutputStream>();
  if (!memory)
    throw KesException(
        "Invalid object type",
        formatText("Expected: %@, object type: %@", {"a stream in memory", native()->className()}));
  return KesArray::initBytesWithData(memory->bytes());
}

void KesOutputStream::write(std::span<const std::uint8_t> bytes) {
  const auto stream = native();
  if (stream->write(bytes) < 0)
    throw KesException(formatText("Error writing to stream: %@", {stream->error()}));
}

}  // namespace kes
