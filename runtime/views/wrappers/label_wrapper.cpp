#include "runtime/views/wrappers/label_wrapper.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/richtext/attributed_string.h"

namespace kes {

Ref<ui::View> KesLabelWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                     bool bridge) const {
  auto label = ensure(view);
  buildText(*label, properties);
  label->setMaxLines(props::flag(properties, "multiline") ? 0 : 1);
  label->setShrinksToFit(props::flag(properties, "adjustFontSizeToFit"));
  label->setAlignment(textAlign(props::integer(properties, "textAlignment")));
  return KesViewWrapper::build(label, properties, bridge);
}

void KesLabelWrapper::setAttributedText(const Value& text) {
  self().setAttributedText(AttributedString::from(text));
}

}  // namespace kes
