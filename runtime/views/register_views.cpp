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

// A picture written anew by the screen, which alone knows pixels.
std::optional<EncodedImage::Bytes> rendered(const EncodedImage& image,
                                            const ui::ImageRendition& wanted) {
  auto* app = ui::Application::current();
  if (!app) return std::nullopt;
  return app->screen().render(ui::Image::fromBytes(*image.bytes(), image.scale()), wanted);
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
  KesBitmap::encoder = [](const EncodedImage& image, std::string_view format, int quality) {
    return rendered(image, {.format = format, .quality = quality, .pixels = {}});
  };
  KesBitmap::resizer = [](const EncodedImage& image, double width, double height, bool keepRatio) {
    return rendered(image, {.pixels = ui::Size{width, height}, .keepRatio = keepRatio});
  };
  KesCommon::shared().windowSize = [] {
    const ui::Rect window = device::windowBounds();
    return std::pair{window.width, window.height};
  };
}

}  // namespace kes
