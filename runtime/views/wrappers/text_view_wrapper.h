// KesTextViewWrapper: several lines of text, editable or with links. Events:
// "_textchanged::" (former, now), "_beginedit", "_endedit", "_linkclick:" (url). A link
// without a handler is handed to the platform. Conditions as for KesViewWrapper.
#pragma once

#include "runtime/views/base/font.h"
#include "runtime/views/wrappers/text_input_traits.h"

namespace kes {

class KesTextViewWrapper
    : public ViewWrapper<KesTextViewWrapper, ui::TextView, KesTextInputTraitsWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UITextView";
  static constexpr std::string_view kName = "KesTextViewWrapper";

  Ref<ui::View> makeView() const override { return platform::makeShared<ui::TextView>(); }
  void innerInitialize(const Ref<Kes>& bi, const kes::Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, Dictionary& properties, bool bridge) const override;

  kes::Text Text() const { return kes::Text(self().displayText()); }
  void setText(const Value& text);
  void setAttributedText(const Value& text);
  bool Editable() const { return self().editable(); }
  void setEditable(bool editable) { self().setEditable(editable); }
  KesFont Font() const { return KesFont::of(self().font()); }
  void setFont(const KesFont& font) { self().setFont(font.font()); }
  std::int32_t TextColor() const { return static_cast<std::int32_t>(self().textColor().argb); }
  void setTextColor(std::int32_t argb);
  std::int32_t TextAlignment() const { return static_cast<std::int32_t>(self().alignment()); }
  void setTextAlignment(std::int32_t alignment);
};

}  // namespace kes
