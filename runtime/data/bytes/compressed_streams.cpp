#include "runtime/data/bytes/compressed_streams.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

#include "runtime/data/bytes/byte_range.h"

namespace kes {

namespace {

constexpr std::size_t kStep = 16384;
constexpr int kMemoryLevel = 8;
constexpr int kZlibWindow = 15;
constexpr int kGzip = 16;        // added to the window bits: gzip
constexpr int kGzipOrZlib = 32;  // whichever the bytes are
constexpr std::size_t kLongest = std::numeric_limits<std::int32_t>::max();

[[noreturn]] void failCompressing() { throw KesException("Error compressing data"); }
[[noreturn]] void failDecompressing() { throw KesException("Error decompressing data"); }

bool isZlib(std::string_view format) { return format == "zlib"; }

void setInput(z_stream& z, std::span<const std::uint8_t> bytes) {
  z.next_in = const_cast<Bytef*>(bytes.data());
  z.avail_in = static_cast<uInt>(bytes.size());
}

// Points the stream at what is free behind what it has written so far.
void setOutput(z_stream& z, std::vector<std::uint8_t>& out) {
  z.next_out = out.data() + z.total_out;
  z.avail_out = static_cast<uInt>(out.size() - z.total_out);
}

struct Deflating {
  z_stream z{};
  explicit Deflating(int windowBits) {
    if (deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, windowBits, kMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK)
      failCompressing();
  }
  Deflating(const Deflating&) = delete;
  Deflating& operator=(const Deflating&) = delete;
  ~Deflating() { deflateEnd(&z); }
};

struct Inflating {
  z_stream z{};
  explicit Inflating(int windowBits) {
    if (inflateInit2(&z, windowBits) != Z_OK) failDecompressing();
  }
  Inflating(const Inflating&) = delete;
  Inflating& operator=(const Inflating&) = delete;
  ~Inflating() { inflateEnd(&z); }
};

}  // namespace

std::vector<std::uint8_t> KesCompressedStreams::compress(std::span<const std::uint8_t> bytes,
                                                         std::string_view format) {
  if (bytes.size() > kLongest) failCompressing();
  Deflating deflating(isZlib(format) ? kZlibWindow : kZlibWindow + kGzip);
  auto& z = deflating.z;
  setInput(z, bytes);
  std::vector<std::uint8_t> out;
  int result = Z_OK;
  while (result == Z_OK) {
    out.resize(out.size() + kStep);
    setOutput(z, out);
    result = deflate(&z, Z_FINISH);
  }
  if (result != Z_STREAM_END) failCompressing();
  out.resize(z.total_out);
  return out;
}

std::vector<std::uint8_t> KesCompressedStreams::decompress(std::span<const std::uint8_t> bytes,
                                                           std::string_view format,
                                                           std::size_t largest) {
  if (bytes.size() > kLongest) failDecompressing();
  Inflating inflating(isZlib(format) ? kZlibWindow : kZlibWindow + kGzipOrZlib);
  auto& z = inflating.z;
  setInput(z, bytes);
  std::vector<std::uint8_t> out(std::min(largest, std::max<std::size_t>(64, bytes.size() * 3 / 2)));
  const auto step = std::max<std::size_t>(64, bytes.size() / 2);
  for (;;) {
    setOutput(z, out);
    const int result = inflate(&z, Z_SYNC_FLUSH);
    if (result == Z_STREAM_END) break;
    if (result != Z_OK || z.avail_out != 0 || out.size() == largest) failDecompressing();
    // Room is doubled, but never beyond what may be used of it.
    const auto size = std::min(largest, out.size() + step);
    if (size > out.capacity()) out.reserve(std::min(largest, std::max(size, out.size() * 2)));
    out.resize(size);
  }
  out.resize(z.total_out);
  return out;
}

Ref<KesArray> KesCompressedStreams::CompressBytes(const Ref<KesArray>& bytes,
                                                  std::string_view format) {
  return KesArray::initBytesWithData(compress(wholeBytes(bytes), format));
}

Ref<KesArray> KesCompressedStreams::DecompressBytes(const Ref<KesArray>& bytes,
                                                    std::string_view format) {
  return KesArray::initBytesWithData(decompress(wholeBytes(bytes), format));
}

}  // namespace kes
