#include <spng.h>

#include <cstdlib>
#include <memory>

#include "platform/pictures/formats.h"
#include "platform/pictures/shrinker.h"

namespace pictures {

namespace {

using Context = std::unique_ptr<spng_ctx, void (*)(spng_ctx*)>;

constexpr std::size_t kMostInChunk = 16 << 20, kMostInChunks = 32 << 20;
constexpr int kPackFast = 3;  // of zlib's 9: these files live as long as a page

void check(int result) {
  if (result != 0) throw Unreadable(spng_strerror(result));
}

Context opened(Bytes file) {
  Context context(spng_ctx_new(0), spng_ctx_free);
  if (!context) throw std::bad_alloc();
  check(spng_set_chunk_limits(context.get(), kMostInChunk, kMostInChunks));
  check(spng_set_png_buffer(context.get(), file.data(), file.size()));
  return context;
}

spng_ihdr ihdrOf(spng_ctx* context) {
  spng_ihdr ihdr{};
  check(spng_get_ihdr(context, &ihdr));
  return ihdr;
}

Extent extentOf(const spng_ihdr& ihdr) {
  return {static_cast<int>(ihdr.width), static_cast<int>(ihdr.height)};
}

bool isPng(Bytes file) { return startsWith(file, {"\x89PNG\r\n\x1A\n", 8}); }

Header pngHeader(Bytes file) { return {extentOf(ihdrOf(opened(file).get())), 1}; }

// Rows that come in passes have to be together before the first is whole.
Bitmap decodeInterlaced(spng_ctx* context, Extent stored, Extent wanted) {
  limitWork(stored.area() * 4);
  std::vector<std::uint8_t> all(static_cast<std::size_t>(stored.area()) * 4);
  check(spng_decode_image(context, all.data(), all.size(), SPNG_FMT_RGBA8, SPNG_DECODE_TRNS));
  Shrinker shrinker(stored, wanted);
  for (int y = 0; y < stored.height; ++y)
    shrinker.add(all.data() + static_cast<std::size_t>(stored.width) * 4 * y);
  return shrinker.take();
}

Bitmap decodePng(Bytes file, Extent wanted) {
  const Context context = opened(file);
  const spng_ihdr ihdr = ihdrOf(context.get());
  const Extent stored = extentOf(ihdr);
  if (ihdr.interlace_method != 0) return decodeInterlaced(context.get(), stored, wanted);
  check(spng_decode_image(context.get(), nullptr, 0, SPNG_FMT_RGBA8,
                          SPNG_DECODE_TRNS | SPNG_DECODE_PROGRESSIVE));
  Shrinker shrinker(stored, wanted);
  std::vector<std::uint8_t> row(static_cast<std::size_t>(stored.width) * 4);
  int result = 0;
  while (result == 0 && shrinker.rows() < stored.height) {
    result = spng_decode_row(context.get(), row.data(), row.size());
    if (result == 0 || result == SPNG_EOI) shrinker.add(row.data());
  }
  if (shrinker.rows() == 0) check(result);
  return shrinker.take();
}

}  // namespace

const Format kPng{isPng, pngHeader, decodePng};

std::vector<std::uint8_t> encodePng(const Bitmap& bitmap) {
  std::vector<std::uint8_t> straight(bitmap.rgba);
  for (std::size_t i = 0; i + 4 <= straight.size(); i += 4)
    if (const unsigned alpha = straight[i + 3]; alpha != 0 && alpha != 255)
      for (std::size_t k = 0; k < 3; ++k)
        straight[i + k] =
            static_cast<std::uint8_t>(std::min(255u, (straight[i + k] * 255 + alpha / 2) / alpha));
  const Context context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free);
  if (!context) throw std::bad_alloc();
  spng_ihdr ihdr{};
  ihdr.width = static_cast<std::uint32_t>(bitmap.size.width);
  ihdr.height = static_cast<std::uint32_t>(bitmap.size.height);
  ihdr.bit_depth = 8;
  ihdr.color_type = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
  check(spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1));
  check(spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, kPackFast));
  check(spng_set_ihdr(context.get(), &ihdr));
  check(spng_encode_image(context.get(), straight.data(), straight.size(), SPNG_FMT_PNG,
                          SPNG_ENCODE_FINALIZE));
  std::size_t size = 0;
  int failed = 0;
  auto* out = static_cast<std::uint8_t*>(spng_get_png_buffer(context.get(), &size, &failed));
  const std::unique_ptr<std::uint8_t, void (*)(void*)> owned(out, std::free);
  check(failed);
  return {out, out + size};
}

}  // namespace pictures
