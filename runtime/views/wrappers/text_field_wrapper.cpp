#include "runtime/views/wrappers/text_field_wrapper.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

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

Ref<ui::View> KesTextFieldWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                         bool bridge) const {
  auto field = ensure(view);
  field->setHint(props::string(properties, "hintText"));
  buildText(*field, properties);
  field->setShrinksToFit(props::flag(properties, "adjustFontSizeToFit"));
  field->setAlignment(textAlign(props::integer(properties, "textAlignment")));
  field->setBorderStyle(props::integer(properties, "borderStyle"));
  field->setShowsClearButton(props::flag(properties, "showClearButton"));
  field->setTraits(traitsOf(properties));
  return KesControlWrapper::build(field, properties, bridge);
}

void KesTextFieldWrapper::setHintText(const Value& hint) { self().setHint(textForm(hint)); }

}  // namespace kes
