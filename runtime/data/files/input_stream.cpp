#include "runtime/data/files/input_stream.h"

#include "runtime/data/bytes/byte_range.h"

namespace kes {

KesInputStream KesInputStream::over(Ref<InputStream> stream) {
  KesInputStream s;
  s.wrap(Value(std::move(stream)));
  return s;
}

void KesInputStream::InitializeFromBytesArray(const Ref<KesArray>& bytes, std::int32_t offset,
                                              std::int32_t length) {
  const auto part = byteRange(bytes, offset, length);
  wrap(Value(memoryInput({part.begin(), part.end()})));
}

std::int32_t KesInputStream::ReadBytes(const Ref<KesArray>& buffer, std::int32_t offset,
                                       std::int32_t length) {
  return static_cast<std::int32_t>(read(byteRange(buffer, offset, length)));
}

void KesInputStream::Close() { native()->close(); }

std::size_t KesInputStream::read(std::span<std::uint8_t> into) {
  const auto stream = native();
  const auto n = stream->read(into);
  if (n < 0) throw KesException(formatText("Error reading from stream: %@", {stream->error()}));
  return static_cast<std::size_t>(n);
}

std::vector<std::uint8_t> KesInputStream::readAll(std::size_t expected) {
  std::vector<std::uint8_t> all;
  all.reserve(expected);
  std::uint8_t block[8192];
  while (const auto n = read(block)) all.insert(all.end(), block, block + n);
  return all;
}

}  // namespace kes
