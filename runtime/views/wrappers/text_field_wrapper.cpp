#include "runtime/views/wrappers/text_field_wrapper.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace kes {

void KesTextFieldWrapper::innerInitialize(const Ref<Kes>& bi, const kes::Text& eventName,
                                          bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::TextField& field = self();
  if (hasMethod(field, "_textchanged::"))
    field.onTextChanged = [&field](const std::string& former, const std::string& now) {
      raiseUIEvent(field, "_textchanged::", {former, now});
    };
  if (hasMethod(field, "_enterpressed"))
    field.onEnterPressed = [&field] { raiseUIEvent(field, "_enterpressed", {}); };
  if (hasMethod(field, "_beginedit"))
    field.onBeginEdit = [&field] { raiseUIEvent(field, "_beginedit", {}); };
  if (hasMethod(field, "_endedit"))
    field.onEndEdit = [&field] { raiseUIEvent(field, "_endedit", {}); };
}

Ref<ui::View> KesTextFieldWrapper::build(Ref<ui::View> view, Dictionary& properties,
                                         bool bridge) const {
  auto field = ensure(view);
  if (const auto color = props::buildColor(properties, "textColor")) field->setTextColor(*color);
  field->setHint(props::string(properties, "hintText"));
  const auto font = KesFont::fromDesignerMap(properties, "font", 1.0f, true);
  if (font.IsInitialized()) field->setFont(font.font());
  field->setText(props::textOrName(properties).str());
  field->setShrinksToFit(props::flag(properties, "adjustFontSizeToFit"));
  field->setAlignment(textAlign(props::integer(properties, "textAlignment")));
  field->setBorderStyle(props::integer(properties, "borderStyle"));
  field->setShowsClearButton(props::flag(properties, "showClearButton"));
  field->setTraits(traitsOf(properties));
  return KesControlWrapper::build(field, properties, bridge);
}

void KesTextFieldWrapper::setText(const Value& text) { self().setText(textForm(text)); }
void KesTextFieldWrapper::setHintText(const Value& hint) { self().setHint(textForm(hint)); }

void KesTextFieldWrapper::setTextColor(std::int32_t argb) {
  self().setTextColor(ColorToUIColor(argb));
}

void KesTextFieldWrapper::setTextAlignment(std::int32_t alignment) {
  self().setAlignment(textAlign(alignment));
}

}  // namespace kes
