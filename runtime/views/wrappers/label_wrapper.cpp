#include "runtime/views/wrappers/label_wrapper.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"
#include "runtime/views/richtext/attributed_string.h"

namespace kes {

ui::TextAlign textAlign(std::int32_t number) {
  return number >= 0 && number <= 3 ? static_cast<ui::TextAlign>(number) : ui::TextAlign::Left;
}

Ref<ui::View> KesLabelWrapper::build(Ref<ui::View> view, Dictionary& properties,
                                     bool bridge) const {
  auto label = ensure(view);
  const auto font = KesFont::fromDesignerMap(properties, "font", 1.0f, true);
  if (font.IsInitialized()) label->setFont(font.font());
  if (const auto color = props::buildColor(properties, "textColor")) label->setTextColor(*color);
  label->setText(props::textOrName(properties).str());
  label->setMaxLines(props::flag(properties, "multiline") ? 0 : 1);
  label->setShrinksToFit(props::flag(properties, "adjustFontSizeToFit"));
  label->setAlignment(textAlign(props::integer(properties, "textAlignment")));
  return KesViewWrapper::build(label, properties, bridge);
}

void KesLabelWrapper::setText(const Value& text) { self().setText(textForm(text)); }

void KesLabelWrapper::setAttributedText(const Value& text) {
  self().setAttributedText(AttributedString::from(text));
}

void KesLabelWrapper::setTextColor(std::int32_t argb) { self().setTextColor(ColorToUIColor(argb)); }

void KesLabelWrapper::setTextAlignment(std::int32_t alignment) {
  self().setAlignment(textAlign(alignment));
}

}  // namespace kes
