// KesImageViewWrapper: shows a bitmap. Events: "_click", "_longclick". Conditions as for
// KesViewWrapper.
#pragma once

#include "platform/ui/controls/image_view.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

class KesBitmap;

class KesImageViewWrapper : public ViewWrapper<KesImageViewWrapper, ui::ImageView> {
 public:
  static constexpr std::string_view kPlatformClass = "UIImageView";
  static constexpr std::string_view kName = "KesImageViewWrapper";
  static constexpr std::int32_t MODE_FILL = 0, MODE_FIT = 1, MODE_FILL_KEEPING_RATIO = 2,
                                MODE_CENTER = 4, MODE_TOP_LEFT = 9;

  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  // The bitmap last set; not initialised when there is none.
  KesBitmap Bitmap() const;
  void setBitmap(const KesBitmap& bitmap);
  std::int32_t ContentMode() const { return static_cast<std::int32_t>(self().contentMode()); }
  void setContentMode(std::int32_t mode);
};

}  // namespace kes
