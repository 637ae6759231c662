// KesTextFieldWrapper: one line of editable text. Events: "_textchanged::" (former, now),
// "_enterpressed", "_beginedit", "_endedit"; only what the user does raises them.
// Conditions as for KesViewWrapper.
#pragma once

#include "runtime/views/base/text_wrapper.h"
#include "runtime/views/wrappers/text_input_traits.h"

namespace kes {

class KesTextFieldWrapper
    : public TextWrapper<KesTextFieldWrapper, ui::TextField, KesTextInputTraitsWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UITextField";
  static constexpr std::string_view kName = "KesTextFieldWrapper";
  static constexpr std::int32_t STYLE_NONE = 0, STYLE_LINE = 1, STYLE_BEZEL = 2, STYLE_ROUNDED = 3;

  void innerInitialize(const Ref<Kes>& bi, const kes::Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  kes::Text HintText() const { return kes::Text(self().hint()); }
  void setHintText(const Value& hint);
  std::int32_t BorderStyle() const { return self().borderStyle(); }
  void setBorderStyle(std::int32_t style) { self().setBorderStyle(style); }
  bool ShowClearButton() const { return self().showsClearButton(); }
  void setShowClearButton(bool show) { self().setShowsClearButton(show); }
  bool AdjustFontSizeToFit() const { return self().shrinksToFit(); }
  void setAdjustFontSizeToFit(bool adjust) { self().setShrinksToFit(adjust); }
};

}  // namespace kes
