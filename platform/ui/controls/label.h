// Text that is read and not edited: plain, or with attributes over the label's own
// font, colour and alignment. Main thread. Takes no touches until told to
// (setUserInteraction), as an image view.
#pragma once

#include "platform/ui/tree/view.h"
#include "platform/ui/values/rich_text.h"

namespace ui {

class Label : public View {
 public:
  Label() { setUserInteraction(false); }
  std::string_view className() const override { return "UILabel"; }

  const std::string& text() const { return rich_ ? rich_->text() : text_; }
  void setText(std::string text);
  // Null while the text is plain.
  const AttributedText* attributedText() const { return rich_.get(); }
  void setAttributedText(AttributedText text);

  Font font() const { return font_; }
  void setFont(const Font& font);
  Color textColor() const { return color_; }
  void setTextColor(Color color);
  TextAlign alignment() const { return alignment_; }
  void setAlignment(TextAlign alignment);
  int maxLines() const { return maxLines_; }  // 0: as many as are needed; 1 by default
  void setMaxLines(int lines);
  bool shrinksToFit() const { return shrinks_; }  // a smaller font rather than an ellipsis
  void setShrinksToFit(bool shrinks);

  // Measured by the application's text engine. A multi-line label keeps its width.
  Size sizeThatFits(Size limit) const override;
  std::string displayText() const override { return text(); }

 protected:
  Role defaultRole() const override { return Role::StaticText; }

 private:
  std::string text_;
  std::unique_ptr<AttributedText> rich_;
  Font font_;
  Color color_ = kBlack;
  std::int16_t maxLines_ = 1;
  TextAlign alignment_ = TextAlign::Left;
  bool shrinks_ = false;
};

}  // namespace ui
