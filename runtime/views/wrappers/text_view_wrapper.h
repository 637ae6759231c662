// KesTextViewWrapper: several lines of text, editable or with links. Events:
// "_textchanged::" (former, now), "_beginedit", "_endedit", "_linkclick:" (url). A link
// without a handler is handed to the platform. Conditions as for KesViewWrapper.
#pragma once

#include "runtime/views/base/text_wrapper.h"
#include "runtime/views/wrappers/text_input_traits.h"

namespace kes {

class KesTextViewWrapper
    : public TextWrapper<KesTextViewWrapper, ui::TextView, KesTextInputTraitsWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UITextView";
  static constexpr std::string_view kName = "KesTextViewWrapper";

  void innerInitialize(const Ref<Kes>& bi, const kes::Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  void setAttributedText(const Value& text);
  bool Editable() const { return self().editable(); }
  void setEditable(bool editable) { self().setEditable(editable); }
};

}  // namespace kes
