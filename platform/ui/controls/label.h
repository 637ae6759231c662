// Text that is read and not edited: plain, or with attributes over the label's own
// font, colour and alignment. Main thread. Takes no touches until told to
// (setUserInteraction), as an image view; but links in its text take them where they stand.
// A label with links can be focused: arrow keys choose among several, a press opens the one
// chosen.
#pragma once

#include <vector>

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

  std::vector<std::string> links() const;  // in the order of the text

  // Measured by the application's text engine. A multi-line label keeps its width.
  Size sizeThatFits(Size limit) const override;
  std::string displayText() const override { return text(); }
  View* hitTest(Point p) override;
  bool takesTap() const override { return linked_ || View::takesTap(); }
  void tap(Point at) override;
  bool adjust(int steps) override;
  std::string accessibleValue() const override;  // the text of the link chosen among several

 protected:
  Role defaultRole() const override { return linked_ ? Role::Link : Role::StaticText; }
  void textReplaced() override;

 private:
  std::int16_t maxLines_ = 1;
  bool shrinks_ = false;
  bool linked_ = false;
  std::uint8_t chosen_ = 0;  // of the links
};

}  // namespace ui
