// TextWrapper: what the wrappers of labels, buttons and fields have in common: the text
// and how it looks. Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/text_holder.h"
#include "runtime/views/base/font.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

// The platform's alignment for a designer's number; natural and unknown ones are left.
ui::TextAlign textAlign(std::int32_t number);
// "textColor", "font" and the text shown, from a layout's properties.
void buildText(ui::TextHolder& holder, const Dictionary& properties);

template <class W, class P, class Base = KesViewWrapper>
class TextWrapper : public ViewWrapper<W, P, Base> {
 public:
  kes::Text Text() const { return kes::Text(this->self().text()); }
  // Takes the text form of any value.
  void setText(const Value& text) { this->self().setText(textForm(text)); }
  KesFont Font() const { return KesFont::of(this->self().font()); }
  void setFont(const KesFont& font) { this->self().setFont(font.font()); }
  std::int32_t TextColor() const {
    return static_cast<std::int32_t>(this->self().textColor().argb);
  }
  void setTextColor(std::int32_t argb) { this->self().setTextColor(ColorToUIColor(argb)); }
  std::int32_t TextAlignment() const { return static_cast<std::int32_t>(this->self().alignment()); }
  void setTextAlignment(std::int32_t alignment) { this->self().setAlignment(textAlign(alignment)); }
};

}  // namespace kes
