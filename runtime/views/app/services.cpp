#include "runtime/views/app/services.h"

#include "platform/ui/application.h"
#include "runtime/core/language/common.h"
#include "runtime/data/dates/date_texts.h"
#include "runtime/data/files/bitmap.h"
#include "runtime/views/base/device.h"

namespace kes {

namespace {

constexpr int kResizedQuality = 92;

ui::Image shownAs(const EncodedImage& image) {
  return ui::Image::fromShared(image.bytes(), image.scale());
}

}  // namespace

void lendServices() {
  lendDateTexts();
  KesBitmap::screenScale = device::screenScale;
  KesBitmap::encoder = [](const EncodedImage& image, std::string_view format,
                          int quality) -> std::optional<EncodedImage::Bytes> {
    auto written = ui::render(shownAs(image), {.format = format, .quality = quality, .pixels = {}});
    return written ? std::optional(std::move(written->bytes)) : std::nullopt;
  };
  KesBitmap::resizer = [](const EncodedImage& image, double width, double height,
                          bool keepRatio) -> std::optional<EncodedImage::Drawn> {
    // A photograph stays one: as PNG it would be many times as large.
    auto drawn = ui::render(shownAs(image), {.format = image.format() == "JPEG" ? "JPEG" : "PNG",
                                             .quality = kResizedQuality,
                                             .pixels = ui::Size{width, height},
                                             .keepRatio = keepRatio});
    if (!drawn) return std::nullopt;
    return EncodedImage::Drawn{std::move(drawn->bytes), drawn->share};
  };
  KesCommon::shared().windowSize = [] {
    const ui::Rect window = device::windowBounds();
    return std::pair{window.width, window.height};
  };
}

}  // namespace kes
