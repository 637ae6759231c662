// The phone as layouts and pages see it: the main screen, its status bar, the system's
// version. Main thread, points. Without an Application all sizes are 0.
#pragma once

#include "platform/ui/values/geometry.h"
#include "runtime/core/text.h"

namespace kes::device {

ui::Rect screenBounds();
double screenScale();  // pixels a point, 1 without a screen
// What a height that was designed to hold text is at the reader's text size; never less.
double textHeight(double designed);
ui::Rect statusBarFrame();
// The view of the first window's root controller, else the window itself; empty without.
ui::Rect rootViewBounds();

ui::Rect windowBounds();  // of the first window, empty without

// "11.0" unless set; rules that changed with a version of the system ask for it.
Text systemVersion();
float systemVersionNumber();
void setSystemVersion(Text version);

}  // namespace kes::device
