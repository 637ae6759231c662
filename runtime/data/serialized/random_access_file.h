// KesRandomAccessFile: numbers, bytes and objects at any place of a file, or of an array.
//
// Every operation takes its position, in bytes from the start, and leaves CurrentPosition
// at the end of what it touched. Numbers are in the byte order chosen at initialisation;
// what lies behind the end reads as zeros. WriteFloat writes eight bytes, the float and
// four zeros, and moves by four: the next write is meant to cover the rest. One thread at
// a time; the last copy gone closes the file. Throws KesException "File not found: %@"
// when it cannot be opened, "Object was not initialized (%@)" before that, the system's
// reason when reading or writing fails, "Out of bounds. Index=%d Length=%d" for a buffer
// or an array that is too short, and what KesSerializator throws.
#pragma once

#include "runtime/core/wrapper.h"
#include "runtime/data/bytes/byte_order.h"
#include "runtime/data/files/memory_handle.h"

namespace kes {

class KesRandomAccessFile final : public TypedWrapper<KesRandomAccessFile, FileHandle> {
 public:
  static constexpr std::string_view kPlatformClass = "NSFileHandle";
  std::string_view className() const override { return "KesRandomAccessFile"; }

  std::int64_t CurrentPosition = 0;

  // Big-endian numbers.
  void Initialize(std::string_view dir, std::string_view file, bool readOnly) {
    Initialize2(dir, file, readOnly, false);
  }
  void Initialize2(std::string_view dir, std::string_view file, bool readOnly, bool littleEndian);
  // Over the array itself, which cannot grow.
  void Initialize3(const Ref<KesArray>& bytes, bool littleEndian);

  std::int64_t Size() const { return native()->size(); }
  void Flush() { native()->synchronizeFile(); }
  void Close() {
    native()->closeFile();
    setObject({});
  }

  std::int16_t ReadShort(std::int64_t position) { return read<std::int16_t>(position); }
  std::int32_t ReadInt(std::int64_t position) { return read<std::int32_t>(position); }
  std::int64_t ReadLong(std::int64_t position) { return read<std::int64_t>(position); }
  float ReadFloat(std::int64_t position) { return read<float>(position); }
  double ReadDouble(std::int64_t position) { return read<double>(position); }
  std::uint8_t ReadUnsignedByte(std::int64_t position) { return read<std::uint8_t>(position); }
  std::int8_t ReadSignedByte(std::int64_t position) { return read<std::int8_t>(position); }
  // The count that was read.
  std::int32_t ReadBytes(const Ref<KesArray>& buffer, std::int32_t start, std::int32_t count,
                         std::int64_t position);

  void WriteShort(std::int16_t v, std::int64_t position) { write(v, position); }
  void WriteInt(std::int32_t v, std::int64_t position) { write(v, position); }
  void WriteLong(std::int64_t v, std::int64_t position) { write(v, position); }
  void WriteByte(std::int8_t v, std::int64_t position) { write(v, position); }
  void WriteDouble(double v, std::int64_t position) { write(v, position); }
  void WriteFloat(float v, std::int64_t position);
  void WriteBytes(const Ref<KesArray>& buffer, std::int32_t start, std::int32_t count,
                  std::int64_t position);

  // The object's compressed form behind its length and a byte that says so.
  void WriteKexObject(const Value& object, std::int64_t position);
  Value ReadKexObject(std::int64_t position);

 private:
  std::vector<std::uint8_t> readAt(std::int64_t position, std::size_t length);
  void writeAt(std::int64_t position, std::span<const std::uint8_t> bytes);
  template <class T>
  T read(std::int64_t position);
  template <class T>
  void write(T v, std::int64_t position);

  ByteOrder order_ = ByteOrder::Big;
};

}  // namespace kes
