// The text of a label as it is drawn in a size: shrunk, wrapped and cut by the label's
// rules. Main thread, points.
#pragma once

#include "platform/qt/drawing/text_layout.h"
#include "platform/ui/controls/label.h"

namespace qt {

std::unique_ptr<TextLayout> fittedText(const ui::Label& label, ui::Size size);
// Where it begins: in the middle of a box that has room to spare.
ui::Point textOrigin(const TextLayout& layout, ui::Size size);

}  // namespace qt
