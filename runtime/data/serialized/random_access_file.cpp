#include "runtime/data/serialized/random_access_file.h"

#include "runtime/core/kes.h"
#include "runtime/data/bytes/byte_range.h"
#include "runtime/data/files/file.h"
#include "runtime/data/serialized/serializer.h"

namespace kes {

void KesRandomAccessFile::Initialize2(std::string_view dir, std::string_view file, bool readOnly,
                                      bool littleEndian) {
  const auto name = File().checkAssets(dir, file, false);
  const auto path = KesFile::pathToOpen(dir, name, !readOnly);
  auto handle = path.error.empty() ? openFileHandle(path.text, readOnly) : nullptr;
  if (!handle) throw KesException(formatText("File not found: %@", {path.text}));
  wrap(Value(std::move(handle)));
  order_ = littleEndian ? ByteOrder::Little : ByteOrder::Big;
  CurrentPosition = 0;
}

void KesRandomAccessFile::Initialize3(const Ref<KesArray>& bytes, bool littleEndian) {
  wrap(Value(platform::makeShared<KesMemoryHandle>(bytes)));
  order_ = littleEndian ? ByteOrder::Little : ByteOrder::Big;
  CurrentPosition = 0;
}

std::vector<std::uint8_t> KesRandomAccessFile::readAt(std::int64_t position, std::size_t length) {
  const auto handle = native();
  handle->seekToFileOffset(position);
  return handle->readDataOfLength(length);
}

void KesRandomAccessFile::writeAt(std::int64_t position, std::span<const std::uint8_t> bytes) {
  const auto handle = native();
  handle->seekToFileOffset(position);
  handle->writeData(bytes);
}

template <class T>
T KesRandomAccessFile::read(std::int64_t position) {
  auto bytes = readAt(position, sizeof(T));
  bytes.resize(sizeof(T));
  CurrentPosition = position + static_cast<std::int64_t>(sizeof(T));
  return loadNumber<T>(bytes.data(), order_);
}

template <class T>
void KesRandomAccessFile::write(T v, std::int64_t position) {
  std::uint8_t bytes[sizeof v];
  storeNumber(bytes, v, order_);
  writeAt(position, bytes);
  CurrentPosition = position + static_cast<std::int64_t>(sizeof v);
}

template std::int16_t KesRandomAccessFile::read(std::int64_t);
template std::int32_t KesRandomAccessFile::read(std::int64_t);
template std::int64_t KesRandomAccessFile::read(std::int64_t);
template float KesRandomAccessFile::read(std::int64_t);
template double KesRandomAccessFile::read(std::int64_t);
template std::uint8_t KesRandomAccessFile::read(std::int64_t);
template std::int8_t KesRandomAccessFile::read(std::int64_t);
template void KesRandomAccessFile::write(std::int16_t, std::int64_t);
template void KesRandomAccessFile::write(std::int32_t, std::int64_t);
template void KesRandomAccessFile::write(std::int64_t, std::int64_t);
template void KesRandomAccessFile::write(std::int8_t, std::int64_t);
template void KesRandomAccessFile::write(double, std::int64_t);

void KesRandomAccessFile::WriteFloat(float v, std::int64_t position) {
  std::uint8_t bytes[8] = {};
  storeNumber(bytes, v, order_);
  writeAt(position, bytes);
  CurrentPosition = position + 4;
}

std::int32_t KesRandomAccessFile::ReadBytes(const Ref<KesArray>& buffer, std::int32_t start,
                                            std::int32_t count, std::int64_t position) {
  const auto into = byteRange(buffer, start, count);
  const auto bytes = readAt(position, into.size());
  std::copy(bytes.begin(), bytes.end(), into.begin());
  CurrentPosition = position + static_cast<std::int64_t>(bytes.size());
  return static_cast<std::int32_t>(bytes.size());
}

void KesRandomAccessFile::WriteBytes(const Ref<KesArray>& buffer, std::int32_t start,
                                     std::int32_t count, std::int64_t position) {
  const auto bytes = byteRange(buffer, start, count);
  writeAt(position, bytes);
  CurrentPosition = position + count;
}

void KesRandomAccessFile::WriteKexObject(const Value& object, std::int64_t position) {
  const auto bytes = KesSerializator::write(object, true);
  WriteInt(static_cast<std::int32_t>(bytes.size()), position);
  WriteByte(1, CurrentPosition);
  writeAt(CurrentPosition, bytes);
  CurrentPosition += static_cast<std::int64_t>(bytes.size());
}

// The length is the file's own word: no more is read, or made room for, than is there.
Value KesRandomAccessFile::ReadKexObject(std::int64_t position) {
  const auto length = std::max(ReadInt(position), 0);
  const bool compressed = ReadUnsignedByte(CurrentPosition) == 1;
  const auto bytes = readAt(CurrentPosition, static_cast<std::size_t>(length));
  CurrentPosition += static_cast<std::int64_t>(bytes.size());
  return KesSerializator::read(bytes, compressed);
}

}  // namespace kes
