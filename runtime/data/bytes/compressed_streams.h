// KesCompressedStreams: whole byte arrays through zlib.
//
// "zlib" names the zlib format; any other name the gzip format, which reading accepts in
// either form. Holds nothing; any thread. Throws KesException "Error compressing data",
// and "Error decompressing data" for bytes that are no whole compressed stream or that
// would unfold to more than kLargest bytes: a few kilobytes can name gigabytes, and no
// phone has a use for them. What follows the compressed stream is ignored.
#pragma once

#include <span>
#include <vector>

#include "runtime/core/array.h"

namespace kes {

class KesCompressedStreams final : public Object {
 public:
  static constexpr std::size_t kLargest = std::size_t{256} << 20;

  std::string_view className() const override { return "KesCompressedStreams"; }

  static Ref<KesArray> CompressBytes(const Ref<KesArray>& bytes, std::string_view format);
  static Ref<KesArray> DecompressBytes(const Ref<KesArray>& bytes, std::string_view format);

  // The same for callers in C++, who may ask for a lower bound.
  static std::vector<std::uint8_t> compress(std::span<const std::uint8_t> bytes,
                                            std::string_view format);
  static std::vector<std::uint8_t> decompress(std::span<const std::uint8_t> bytes,
                                              std::string_view format,
                                              std::size_t largest = kLargest);
};

}  // namespace kes
