// KesButtonWrapper: a push button. Events: "_click", "_longclick". Conditions as for
// KesViewWrapper.
#pragma once

#include "platform/ui/controls/button.h"
#include "runtime/views/base/control_wrapper.h"
#include "runtime/views/base/text_wrapper.h"

namespace kes {

class KesBitmap;

class KesButtonWrapper : public TextWrapper<KesButtonWrapper, ui::Button, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UIButton";
  static constexpr std::string_view kName = "KesButtonWrapper";
  static constexpr std::int32_t STYLE_CUSTOM = 0, STYLE_SYSTEM = 1;

  void Initialize(const Ref<Kes>& bi, const kes::Text& eventName, std::int32_t style);
  void InitializeCustom(const Ref<Kes>& bi, const kes::Text& eventName, std::int32_t textColor,
                        std::int32_t pressedTextColor);
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  void setAttributedText(const Value& text);
  void setTextColor(std::int32_t argb);  // the tint for the reserved value
  void setPressedTextColor(std::int32_t argb);
  void setImage(const KesBitmap& bitmap);
  void SetBackgroundImages(const KesBitmap& normal, const KesBitmap& pressed);
};

}  // namespace kes
