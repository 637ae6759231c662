// Text that is read and not edited: plain, or with attributes over the label's own
// font, colour and alignment. Main thread. Takes no touches until told to
// (setUserInteraction), as an image view.
#pragma once

#include "platform/ui/controls/text_holder.h"

namespace ui {

class Label : public TextHolder {
 public:
  Label() { setUserInteraction(false); }
  std::string_view className() const override { return "UILabel"; }

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
  std::int16_t maxLines_ = 1;
  bool shrinks_ = false;
};

}  // namespace ui
