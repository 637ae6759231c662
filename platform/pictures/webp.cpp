#include <webp/decode.h>
#include <webp/demux.h>

#include <memory>

#include "platform/pictures/formats.h"

namespace pictures {

namespace {

bool isWebp(Bytes file) {
  return startsWith(file, "RIFF") && file.size() >= 12 && startsWith(file.subspan(8), "WEBP");
}

// A file's boxes: its first frame and its camera's notes.
class Boxes {
 public:
  explicit Boxes(Bytes file) {
    const WebPData data{file.data(), file.size()};
    WebPDemuxState state{};
    demux_.reset(WebPDemuxPartial(&data, &state));
    if (!demux_ || !WebPDemuxGetFrame(demux_.get(), 1, &frame_)) {
      // Not an error yet: a plain file that is cut off has no whole frame.
      frame_.fragment = data;
    }
  }
  ~Boxes() { WebPDemuxReleaseIterator(&frame_); }
  Boxes(const Boxes&) = delete;
  Boxes& operator=(const Boxes&) = delete;

  const WebPData& frame() const { return frame_.fragment; }
  int orientation() const {
    WebPChunkIterator notes{};
    int result = 1;
    if (demux_ && WebPDemuxGetChunk(demux_.get(), "EXIF", 1, &notes)) {
      Bytes exif(notes.chunk.bytes, notes.chunk.size);
      if (startsWith(exif, {"Exif\0\0", 6})) exif = exif.subspan(6);
      result = orientationOf(exif);
    }
    WebPDemuxReleaseChunkIterator(&notes);
    return result;
  }

 private:
  struct Delete {
    void operator()(WebPDemuxer* demux) const { WebPDemuxDelete(demux); }
  };
  std::unique_ptr<WebPDemuxer, Delete> demux_;
  WebPIterator frame_{};
};

WebPBitstreamFeatures featuresOf(const WebPData& frame) {
  WebPBitstreamFeatures features{};
  if (WebPGetFeatures(frame.bytes, frame.size, &features) != VP8_STATUS_OK)
    throw Unreadable("not a WebP picture");
  return features;
}

Header webpHeader(Bytes file) {
  const Boxes boxes(file);
  const auto features = featuresOf(boxes.frame());
  return {{features.width, features.height}, boxes.orientation()};
}

constexpr int kLossless = 2;

Bitmap decodeWebp(Bytes file, Extent wanted) {
  const Boxes boxes(file);
  const auto features = featuresOf(boxes.frame());
  const Extent stored{features.width, features.height};
  // Without loss all pixels are in memory at once, otherwise the alpha plane is.
  limitWork(stored.area() * (features.format == kLossless ? 4 : features.has_alpha ? 1 : 0));
  Bitmap result(wanted);
  WebPDecoderConfig config{};
  if (!WebPInitDecoderConfig(&config)) throw std::runtime_error("another WebP library");
  config.options.use_scaling = wanted != stored;
  config.options.scaled_width = wanted.width;
  config.options.scaled_height = wanted.height;
  config.output.colorspace = MODE_rgbA;
  config.output.is_external_memory = 1;
  config.output.u.RGBA = {result.rgba.data(), static_cast<int>(result.rowBytes()),
                          result.rgba.size()};
  // Fed piece by piece, a file that is cut off gives the rows it has.
  const std::unique_ptr<WebPIDecoder, void (*)(WebPIDecoder*)> decoder(
      WebPIDecode(nullptr, 0, &config), WebPIDelete);
  if (!decoder) throw std::bad_alloc();
  const auto status = WebPIUpdate(decoder.get(), boxes.frame().bytes, boxes.frame().size);
  if (status != VP8_STATUS_OK && status != VP8_STATUS_SUSPENDED)
    throw Unreadable("not a WebP picture");
  return result;
}

}  // namespace

const Format kWebp{isWebp, webpHeader, decodeWebp};

}  // namespace pictures
