// Bytes as they are compressed, and as they would come out of compression.
#include <algorithm>

#include "runtime/data/bytes/compressed_streams.h"
#include "runtime/data/serialized/serializer.h"
#include "target.h"

using kes::KesCompressedStreams, kes::KesSerializator;

void fuzz::compressed(Bytes input) {
  accepts([&] { KesSerializator::read(input, true); });
  const char* format = !input.empty() && input[0] & 1 ? "gzip" : "zlib";
  accepts([&] { KesCompressedStreams::decompress(input, format); });
  const auto there = KesCompressedStreams::compress(input, format);
  const auto back = KesCompressedStreams::decompress(there, format);
  require(std::ranges::equal(back, input), "compressed bytes come back");
  for (std::size_t n = 0; n < there.size(); n += 1 + there.size() / 8)
    require(!accepts([&] { KesCompressedStreams::decompress(std::span(there).first(n), format); }),
            "what is cut off is refused");
}
