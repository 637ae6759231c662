#include <turbojpeg.h>

#include <memory>

#include "platform/pictures/formats.h"
#include "platform/pictures/shrinker.h"

namespace pictures {

namespace {

using Handle = std::unique_ptr<void, int (*)(tjhandle)>;

Handle opened(tjhandle handle) {
  if (!handle) throw std::runtime_error("no JPEG codec");
  return {handle, tjDestroy};
}

// What stands before the pixels and the library doesn't tell.
struct Preamble {
  int orientation = 1;
  bool progressive = false;
};

Preamble preambleOf(Bytes file) {
  Preamble result;
  std::size_t at = 2;
  while (at + 4 <= file.size() && file[at] == 0xFF) {
    const unsigned marker = file[at + 1];
    if (marker == 0xFF) {  // padding
      ++at;
      continue;
    }
    if (marker == 0xDA) break;  // the pixels
    const std::size_t length = file[at + 2] << 8u | file[at + 3];
    if (length < 2 || at + 2 + length > file.size()) break;
    const Bytes segment = file.subspan(at + 4, length - 2);
    if (marker == 0xE1 && startsWith(segment, {"Exif\0\0", 6}))
      result.orientation = orientationOf(segment.subspan(6));
    if (marker == 0xC2) result.progressive = true;
    at += 2 + length;
  }
  return result;
}

bool isJpeg(Bytes file) { return startsWith(file, "\xFF\xD8\xFF"); }

struct Frame {
  Extent size;
  int sampling = 0, colors = 0;
};

Frame frameOf(tjhandle codec, Bytes file) {
  Frame frame;
  if (tjDecompressHeader3(codec, file.data(), file.size(), &frame.size.width, &frame.size.height,
                          &frame.sampling, &frame.colors) != 0)
    throw Unreadable(tjGetErrorStr2(codec));
  return frame;
}

Header jpegHeader(Bytes file) {
  const Handle codec = opened(tjInitDecompress());
  return {frameOf(codec.get(), file).size, preambleOf(file).orientation};
}

// A progressive picture's coefficients are all in memory until its last scan is read.
void limitScans(const Frame& frame) {
  const std::int64_t luma = frame.size.area();
  std::int64_t samples = luma;
  if (frame.sampling != TJSAMP_GRAY && frame.sampling >= 0)
    samples += 2 * luma * 64 / (tjMCUWidth[frame.sampling] * tjMCUHeight[frame.sampling]);
  limitWork(samples * 2);
}

// The least of the codec's own sizes that is no smaller than what is wanted: it skips most
// of the work of a picture that is shown small.
Extent decodedSize(Extent stored, Extent wanted) {
  int count = 0;
  const tjscalingfactor* factors = tjGetScalingFactors(&count);
  Extent best = stored;
  for (int i = 0; i < count; ++i) {
    const Extent size{TJSCALED(stored.width, factors[i]), TJSCALED(stored.height, factors[i])};
    if (size.width >= wanted.width && size.height >= wanted.height && size.area() < best.area())
      best = size;
  }
  return best;
}

// Four inks, as printers write them: upside down.
void inksToColors(std::vector<std::uint8_t>& pixels) {
  for (std::size_t i = 0; i + 4 <= pixels.size(); i += 4) {
    const unsigned black = pixels[i + 3];
    for (std::size_t k = 0; k < 3; ++k)
      pixels[i + k] = static_cast<std::uint8_t>(pixels[i + k] * black / 255);
    pixels[i + 3] = 255;
  }
}

Bitmap decodeJpeg(Bytes file, Extent wanted) {
  const Handle codec = opened(tjInitDecompress());
  const Frame frame = frameOf(codec.get(), file);
  if (preambleOf(file).progressive) limitScans(frame);
  const bool inks = frame.colors == TJCS_CMYK || frame.colors == TJCS_YCCK;
  Bitmap read(decodedSize(frame.size, wanted));
  if (tjDecompress2(codec.get(), file.data(), file.size(), read.rgba.data(), read.size.width, 0,
                    read.size.height, inks ? TJPF_CMYK : TJPF_RGBA, TJFLAG_LIMITSCANS) != 0 &&
      tjGetErrorCode(codec.get()) != TJERR_WARNING)
    throw Unreadable(tjGetErrorStr2(codec.get()));
  if (inks) inksToColors(read.rgba);
  if (read.size == wanted) return read;
  Shrinker shrinker(read.size, wanted);
  for (int y = 0; y < read.size.height; ++y) shrinker.add(read.row(y));
  return shrinker.take();
}

}  // namespace

const Format kJpeg{isJpeg, jpegHeader, decodeJpeg};

std::vector<std::uint8_t> encodeJpeg(const Bitmap& bitmap, int quality) {
  // There is no alpha in the format: what shows through is white.
  std::vector<std::uint8_t> opaque(bitmap.rgba);
  for (std::size_t i = 0; i + 4 <= opaque.size(); i += 4)
    for (std::size_t k = 0; k < 3; ++k)
      opaque[i + k] = static_cast<std::uint8_t>(std::min(255, opaque[i + k] + 255 - opaque[i + 3]));
  const Handle codec = opened(tjInitCompress());
  unsigned char* out = nullptr;
  unsigned long size = 0;
  const int failed =
      tjCompress2(codec.get(), opaque.data(), bitmap.size.width, 0, bitmap.size.height, TJPF_RGBX,
                  &out, &size, TJSAMP_420, quality, 0);
  const std::unique_ptr<unsigned char, void (*)(unsigned char*)> owned(out, tjFree);
  if (failed != 0) throw std::runtime_error(tjGetErrorStr2(codec.get()));
  return {out, out + size};
}

}  // namespace pictures
