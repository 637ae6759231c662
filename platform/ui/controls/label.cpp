#include "platform/ui/controls/label.h"

namespace ui {

void Label::setMaxLines(int lines) {
  if (lines == maxLines_) return;
  maxLines_ = static_cast<std::int16_t>(lines);
  markChanged(Change::Content);
}

void Label::setShrinksToFit(bool shrinks) {
  if (shrinks == shrinks_) return;
  shrinks_ = shrinks;
  markChanged(Change::Content);
}

Size Label::sizeThatFits(Size limit) const {
  auto size = measured(maxLines_ == 1 ? 0 : limit.width, maxLines_);
  if (!size) return bounds().size();
  if (maxLines_ != 1 && limit.width > 0) size->width = limit.width;
  return *size;
}

}  // namespace ui
