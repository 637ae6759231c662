// KesLabelWrapper: text that is read. Events: "_click", "_longclick". Conditions as for
// KesViewWrapper.
#pragma once

#include "platform/ui/controls/label.h"
#include "runtime/views/base/font.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

class KesLabelWrapper : public ViewWrapper<KesLabelWrapper, ui::Label> {
 public:
  static constexpr std::string_view kPlatformClass = "UILabel";
  static constexpr std::string_view kName = "KesLabelWrapper";
  static constexpr std::int32_t ALIGNMENT_LEFT = 0, ALIGNMENT_CENTER = 1, ALIGNMENT_RIGHT = 2,
                                ALIGNMENT_JUSTIFIED = 3, ALIGNMENT_NATURAL = 4;

  Ref<ui::View> build(Ref<ui::View> view, Dictionary& properties, bool bridge) const override;

  kes::Text Text() const { return kes::Text(self().text()); }
  // Takes the text form of any value.
  void setText(const Value& text);
  // A KesCSBuilder, or what kes_richstring gives.
  void setAttributedText(const Value& text);
  KesFont Font() const { return KesFont::of(self().font()); }
  void setFont(const KesFont& font) { self().setFont(font.font()); }
  std::int32_t TextColor() const { return static_cast<std::int32_t>(self().textColor().argb); }
  void setTextColor(std::int32_t argb);
  std::int32_t TextAlignment() const { return static_cast<std::int32_t>(self().alignment()); }
  void setTextAlignment(std::int32_t alignment);
  bool Multiline() const { return self().maxLines() != 1; }
  void setMultiline(bool multiline) { self().setMaxLines(multiline ? 0 : 1); }
  bool AdjustFontSizeToFit() const { return self().shrinksToFit(); }
  void setAdjustFontSizeToFit(bool adjust) { self().setShrinksToFit(adjust); }
};

// The platform's alignment for a designer's number; natural and unknown ones are left.
ui::TextAlign textAlign(std::int32_t number);

}  // namespace kes
