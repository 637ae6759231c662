// A text as pictures: one, or, where it is high, strips of which only those in sight are
// painted and kept. Main thread; lengths are points.
#pragma once

#include <optional>

#include "platform/qt/drawing/painted_item.h"
#include "platform/qt/drawing/text_layout.h"

namespace qt {

// Paints a part (whole pixels) of a text whose first line begins at `at`.
Picture textPicture(const TextLayout& layout, ui::Point at, const QRectF& part, double scale);

class TextStrips {
 public:
  struct Sight {  // of the item that shows the text, from its top
    double from, to;
  };
  // What to show now, in an item so wide; none where that is what `shown` is already, all
  // of it still good.
  std::optional<std::vector<Picture>> update(const TextLayout& layout, ui::Point at, double width,
                                             Sight sight, double scale, bool anew,
                                             const std::vector<Picture>& shown);

 private:
  static constexpr double kStrip = 512;
  int first_ = 0, last_ = -1;
};

}  // namespace qt
