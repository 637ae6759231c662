// KesLabelWrapper: text that is read. Events: "_click", "_longclick". Conditions as for
// KesViewWrapper.
#pragma once

#include "platform/ui/controls/label.h"
#include "runtime/views/base/text_wrapper.h"

namespace kes {

class KesLabelWrapper : public TextWrapper<KesLabelWrapper, ui::Label> {
 public:
  static constexpr std::string_view kPlatformClass = "UILabel";
  static constexpr std::string_view kName = "KesLabelWrapper";
  static constexpr std::int32_t ALIGNMENT_LEFT = 0, ALIGNMENT_CENTER = 1, ALIGNMENT_RIGHT = 2,
                                ALIGNMENT_JUSTIFIED = 3, ALIGNMENT_NATURAL = 4;

  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  // A KesCSBuilder, or what kes_richstring gives.
  void setAttributedText(const Value& text);
  bool Multiline() const { return self().maxLines() != 1; }
  void setMultiline(bool multiline) { self().setMaxLines(multiline ? 0 : 1); }
  bool AdjustFontSizeToFit() const { return self().shrinksToFit(); }
  void setAdjustFontSizeToFit(bool adjust) { self().setShrinksToFit(adjust); }
};

}  // namespace kes
