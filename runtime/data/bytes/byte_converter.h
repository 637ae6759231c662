// KesByteConverter: whole arrays of numbers, texts and hexadecimal digits as bytes, and
// back.
//
// Number arrays are KesArrays of objects that hold numbers; bytes left over behind the
// last whole number are ignored. LittleEndian, false at first, says the byte order of the
// numbers. It holds nothing else, and every result is a new array. Any thread, one at a
// time. Positions and counts are items of their array. Throws "Out of bounds. Index=%d
// Length=%d" for a range outside its array, "An array of bytes is expected." and its kind
// for an array of the other one, and the charset failures of the language services.
#pragma once

#include "runtime/core/array.h"
#include "runtime/data/bytes/byte_order.h"

namespace kes {

class KesByteConverter final : public Object {
 public:
  std::string_view className() const override { return "KesByteConverter"; }

  bool LittleEndian = false;

  Ref<KesArray> ShortsToBytes(const Ref<KesArray>& numbers) const;
  Ref<KesArray> ShortsFromBytes(const Ref<KesArray>& bytes) const;
  Ref<KesArray> IntsToBytes(const Ref<KesArray>& numbers) const;
  Ref<KesArray> IntsFromBytes(const Ref<KesArray>& bytes) const;
  Ref<KesArray> LongsToBytes(const Ref<KesArray>& numbers) const;
  Ref<KesArray> LongsFromBytes(const Ref<KesArray>& bytes) const;
  Ref<KesArray> FloatsToBytes(const Ref<KesArray>& numbers) const;
  Ref<KesArray> FloatsFromBytes(const Ref<KesArray>& bytes) const;
  Ref<KesArray> DoublesToBytes(const Ref<KesArray>& numbers) const;
  Ref<KesArray> DoublesFromBytes(const Ref<KesArray>& bytes) const;

  static Ref<KesArray> StringToBytes(std::string_view text, std::string_view charset);
  static Text StringFromBytes(const Ref<KesArray>& bytes, std::string_view charset);

  // Upper-case digits, two for each byte.
  static Text HexFromBytes(const Ref<KesArray>& bytes);
  // Two characters at a time; a pair is read as far as it is a number, so "1x" gives 1 and
  // "xx" gives 0, and a character left over is ignored.
  static Ref<KesArray> HexToBytes(const Text& hex);

  // Two arrays of bytes, or two of objects; the ranges may overlap.
  static void ArrayCopy(const Ref<KesArray>& source, std::int32_t sourceStart,
                        const Ref<KesArray>& destination, std::int32_t destinationStart,
                        std::int32_t count);

  // Names of the charsets at hand, built once: always the same array.
  static Ref<KesArray> SupportedEncodings();

 private:
  ByteOrder order() const { return LittleEndian ? ByteOrder::Little : ByteOrder::Big; }
  template <class T>
  Ref<KesArray> toBytes(const Ref<KesArray>& numbers) const;
  template <class T>
  Ref<KesArray> fromBytes(const Ref<KesArray>& bytes) const;
};

}  // namespace kes
