#include "runtime/views/wrappers/button_wrapper.h"

#include "runtime/views/base/image_source.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/richtext/attributed_string.h"

namespace kes {

void KesButtonWrapper::Initialize(const Ref<Kes>& bi, const kes::Text& eventName,
                                  std::int32_t style) {
  innerInitialize(bi, eventName, false);
  self().setStyle(style);
}

void KesButtonWrapper::InitializeCustom(const Ref<Kes>& bi, const kes::Text& eventName,
                                        std::int32_t textColor, std::int32_t pressedTextColor) {
  Initialize(bi, eventName, STYLE_CUSTOM);
  setTextColor(textColor);
  setPressedTextColor(pressedTextColor);
}

Ref<ui::View> KesButtonWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                      bool bridge) const {
  auto button = ensure(view);
  button->setStyle(props::integer(properties, "style"));
  if (const auto tint = props::buildColor(properties, "tintColor")) button->setTint(*tint);
  if (const auto color = props::buildColor(properties, "pressedTextColor"))
    button->setPressedTextColor(*color);
  button->setBackgroundImages(
      buildBitmap(props::string(properties, "backgroundImage"), bridge),
      buildBitmap(props::string(properties, "pressedBackgroundImage"), bridge));
  buildText(*button, properties);
  return KesControlWrapper::build(button, properties, bridge);
}

void KesButtonWrapper::setAttributedText(const Value& text) {
  self().setAttributedText(AttributedString::from(text));
}

void KesButtonWrapper::setTextColor(std::int32_t argb) {
  self().setTextColor(KesColorToUIColor(argb));
}

void KesButtonWrapper::setPressedTextColor(std::int32_t argb) {
  self().setPressedTextColor(KesColorToUIColor(argb));
}

void KesButtonWrapper::setImage(const KesBitmap& bitmap) { self().setImage(imageOf(bitmap)); }

void KesButtonWrapper::SetBackgroundImages(const KesBitmap& normal, const KesBitmap& pressed) {
  self().setBackgroundImages(imageOf(normal), imageOf(pressed));
}

}  // namespace kes
