#include "runtime/views/register_views.h"

#include "platform/ui/application.h"
#include "runtime/core/common.h"
#include "runtime/data/files/bitmap.h"
#include "runtime/views/app/bundle.h"
#include "runtime/views/base/device.h"
#include "runtime/views/dialogs/custom_dialog.h"
#include "runtime/views/layout/custom_view_wrapper.h"
#include "runtime/views/pages/side_menu.h"
#include "runtime/views/richtext/rich_string.h"
#include "runtime/views/wrappers/button_wrapper.h"
#include "runtime/views/wrappers/image_view_wrapper.h"
#include "runtime/views/wrappers/indicator_wrappers.h"
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/picker_wrappers.h"
#include "runtime/views/wrappers/table_view_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "runtime/views/wrappers/text_view_wrapper.h"
#include "runtime/views/wrappers/value_controls.h"
#include "runtime/views/wrappers/web_view_wrapper.h"

namespace kes {

namespace {

constexpr int kResizedQuality = 92;

ui::Image shownAs(const EncodedImage& image) {
  return ui::Image::fromShared(image.bytes(), image.scale());
}

}  // namespace

void registerViews() {
  auto& registry = ClassRegistry::instance();
  registry.addAll<KesViewWrapper, KesControlWrapper, KesPanelWrapper, KesCustomViewWrapper,
                  KesLabelWrapper, KesButtonWrapper, KesTextInputTraitsWrapper, KesTextFieldWrapper,
                  KesTextViewWrapper, KesImageViewWrapper, KesScrollView, KesWebViewWrapper,
                  KesSwitchWrapper, KesSliderWrapper, KesStepperWrapper, KesSegmentedControlWrapper,
                  KesDatePickerWrapper, KesPickerWrapper, KesProgressWrapper,
                  KesActivityIndicatorWrapper, KesTableView, KexViewWrapper>();
  registry.addAll<KesDrawerController, Bundle, AlertView, iCustomDialog, kes_richstring>();
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
