// KesDataInputStream: reads the numbers, texts and maps of a layout file from a stream.
//
// Numbers are little-endian. A short stream is not an error of its own: what could not
// be read is 0 (a one-byte value -1), and atEnd() tells. Damage is: an unknown type tag
// throws "Unknown type: %d", and impossible lengths, string numbers and depths throw with
// a text of their own. Memory stays within a small multiple of the bytes really there.
// Owned by whoever reads; one thread.
#pragma once

#include <vector>

#include "runtime/core/dictionary.h"
#include "runtime/data/bytes/byte_order.h"
#include "runtime/data/files/input_stream.h"

namespace kes {

class KesDataInputStream {
 public:
  explicit KesDataInputStream(KesInputStream source) : socket(std::move(source)) {}

  KesInputStream socket;

  std::int32_t readInt() { return number<std::int32_t>(); }
  std::int8_t readByte();
  std::uint8_t readUnsignedByte() { return static_cast<std::uint8_t>(readByte()); }
  std::int16_t readShort() { return number<std::int16_t>(); }
  std::int64_t readLong() { return number<std::int64_t>(); }
  float readFloat() { return number<float>(); }
  double readDouble() { return number<double>(); }
  Text readString();
  // The string of the number that follows, in a table read before.
  const Text& readCachedString(const std::vector<Text>& table);
  std::vector<Text> readStringTable();
  // Keys are numbers in the table; without one they stand in place.
  Ref<Dictionary> readMap(const std::vector<Text>& table) { return mapWith(&table); }
  Ref<Dictionary> readMap() { return mapWith(nullptr); }
  // So many bytes; false when fewer came.
  bool readFully(std::uint8_t* into, std::size_t length) { return receiveBytes(into, length); }
  // What comes, up to the limit.
  std::size_t readNotFull(std::uint8_t* into, std::size_t limit);
  void readAndDiscard(std::int64_t length);

  bool atEnd() const { return ended_; }

 private:
  template <class T>
  T number() {
    if (filled_ - next_ < sizeof(T)) return numberAcross<T>();
    const T n = loadNumber<T>(buffer_.data() + next_, ByteOrder::Little);
    next_ += sizeof(T);
    return n;
  }
  // The same where the block at hand ends within it.
  template <class T>
  T numberAcross() {
    std::uint8_t bytes[sizeof(T)];
    return receiveBytes(bytes, sizeof bytes) ? loadNumber<T>(bytes, ByteOrder::Little) : T();
  }
  bool receiveBytes(std::uint8_t* into, std::size_t count);
  bool fill();
  Ref<Dictionary> mapWith(const std::vector<Text>* table);
  Value readValue(std::int8_t tag, const std::vector<Text>* table);

  std::vector<std::uint8_t> buffer_;
  std::size_t next_ = 0, filled_ = 0;
  bool ended_ = false;
};

}  // namespace kes
