// KesButtonWrapper: a push button. Events: "_click", "_longclick". Conditions as for
// KesViewWrapper.
#pragma once

#include "platform/ui/controls/button.h"
#include "runtime/views/base/control_wrapper.h"
#include "runtime/views/base/font.h"

namespace kes {

class KesBitmap;

class KesButtonWrapper : public ViewWrapper<KesButtonWrapper, ui::Button, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UIButton";
  static constexpr std::string_view kName = "KesButtonWrapper";
  static constexpr std::int32_t STYLE_CUSTOM = 0, STYLE_SYSTEM = 1;

  void Initialize(const Ref<Kes>& bi, const kes::Text& eventName, std::int32_t style);
  void InitializeCustom(const Ref<Kes>& bi, const kes::Text& eventName, std::int32_t textColor,
                        std::int32_t pressedTextColor);
  Ref<ui::View> build(Ref<ui::View> view, Dictionary& properties, bool bridge) const override;

  kes::Text Text() const { return kes::Text(self().title()); }
  void setText(const Value& text);
  void setAttributedText(const Value& text);
  KesFont Font() const { return KesFont::of(self().font()); }
  void setFont(const KesFont& font) { self().setFont(font.font()); }
  std::int32_t TextColor() const { return static_cast<std::int32_t>(self().textColor().argb); }
  void setTextColor(std::int32_t argb);
  void setPressedTextColor(std::int32_t argb);
  void setImage(const KesBitmap& bitmap);
  void SetBackgroundImages(const KesBitmap& normal, const KesBitmap& pressed);
};

}  // namespace kes
