// KesSerializator: a tree of values as a self-describing byte array, and back;
// compressed with zlib by default. The format is told in docs/serialized-values.md.
//
// Texts, numbers, lists, maps, arrays and custom types (objects whose class is in the
// registry and which answer IsInitialized) are written; wrappers stand for what they
// hold. An instance serves one operation at a time, on any thread, and the tree must not
// change meanwhile; one that is asked for the Async calls is held by Ref. Throws
// KesException: "Cannot serialize: %@", one named "Unknown number type", "Unknown type in
// readObject: %d", "Error decompressing data", "Error compressing data". Bytes may come
// from anywhere: a document is at most kLargestDocument bytes uncompressed when it was
// compressed, and what is made of one at most about 512 MiB of memory.
#pragma once

#include "runtime/core/array.h"
#include "runtime/core/kes.h"

namespace kes {

class KesSerializator final : public Object {
 public:
  static constexpr std::size_t kLargestDocument = std::size_t{64} << 20;

  std::string_view className() const override { return "KesSerializator"; }

  Ref<KesArray> ConvertObjectToBytes(const Value& object) { return WriteObject(object, true); }
  Value ConvertBytesToObject(const Ref<KesArray>& bytes) { return ReadObject(bytes, true); }
  Ref<KesArray> WriteObject(const Value& object, bool compress);
  Value ReadObject(const Ref<KesArray>& bytes, bool compressed);

  // Run in the background; then, on the main thread and with this as the sender, raise
  // prefix + "_objecttobytes::" or "_bytestoobject::" with 1 and the result, or with 0
  // and the null object when it failed; LastException tells why.
  void ConvertObjectToBytesAsync(const Ref<Kes>& bi, const Value& object, const Text& eventPrefix);
  void ConvertBytesToObjectAsync(const Ref<Kes>& bi, const Ref<KesArray>& bytes,
                                 const Text& eventPrefix);

  // The same for callers in C++.
  static std::vector<std::uint8_t> write(const Value& object, bool compress);
  static Value read(std::span<const std::uint8_t> bytes, bool compressed);

  Value Tag;

 private:
  void convertAsync(const Ref<Kes>& bi, const Text& event, std::function<Value()> convert);
};

}  // namespace kes
