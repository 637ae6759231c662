#include "runtime/data/files/memory_handle.h"

#include <algorithm>
#include <string>

#include "runtime/data/bytes/byte_range.h"

namespace kes {

namespace {
[[noreturn]] void failBounds(std::int64_t index, std::int64_t length) {
  throw KesException("Out of bounds. Index=" + std::to_string(index) +
                     " Length=" + std::to_string(length));
}
}  // namespace

KesMemoryHandle::KesMemoryHandle(Ref<KesArray> bytes) : ms(std::move(bytes)) { wholeBytes(ms); }

std::int64_t KesMemoryHandle::size() const {
  return static_cast<std::int64_t>(ms->bytesData().size());
}

void KesMemoryHandle::seekToFileOffset(std::int64_t offset) {
  if (offset < 0) failBounds(offset, size());
  position = offset;
}

std::vector<std::uint8_t> KesMemoryHandle::readDataOfLength(std::size_t length) {
  const auto from = std::min(position, size());
  const auto count = std::min(length, static_cast<std::size_t>(size() - from));
  const auto begin = ms->bytesData().begin() + from;
  position = from + static_cast<std::int64_t>(count);
  return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

void KesMemoryHandle::writeData(std::span<const std::uint8_t> bytes) {
  const auto count = static_cast<std::int64_t>(bytes.size());
  if (position > size() || count > size() - position) failBounds(size(), size());
  std::copy(bytes.begin(), bytes.end(), ms->bytesData().begin() + position);
  position += count;
}

}  // namespace kes
