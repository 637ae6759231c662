// Finds views as a person would: by what can be read, by the name read aloud, by the
// designer's name. Only what can be reached (nothing behind a dialog or an open
// drawer) and is not hidden; what is scrolled out of sight is found too. Main thread.
#pragma once

#include <string_view>
#include <vector>

#include "platform/ui/tree/view.h"

namespace ui {

// Views whose text or accessible name contains the text, topmost first; "#name" asks
// for the designer's name. Of a view and its ancestor that match by the same text, the
// inner one counts.
std::vector<Ref<View>> findAll(Window& window, std::string_view text);
// The nth of them (from 1), or null.
Ref<View> find(Window& window, std::string_view text, int nth = 1);
// Scrolls its scroll views until the view can be seen.
void scrollIntoView(View& view);
// The point to tap: the middle of what can be seen of it, in window points.
Point tapPoint(const View& view);

}  // namespace ui
