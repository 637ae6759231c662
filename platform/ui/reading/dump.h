// The view tree as text: one line a visible view, back to front, indented two blanks a
// level.
//
//   UILabel #title 16,20 240x21 "Farmacia di turno" name="…"
//
// Class, #name if it has one, frame in screen points, its text in quotes, name="…"
// where the accessible name is another one than the text, then flags in brackets:
// focused, disabled, and what a control holds. Below a map all its markers come in the
// order in which they were added, seen or not, as
//
//   MapMarker "Municipio" @45.2379,10.0408
//
// and then the window that is open, if one is. After the views of the page: "overlay",
// "toast" and "dialog" with theirs, where shown. People compare these texts: the format
// stays as it is. Main thread.
#pragma once

#include <string>
#include <string_view>

namespace ui {

class Window;

std::string dump(const Window& window);
// In quotes, with quote, backslash and line break escaped.
std::string quoted(std::string_view text);

}  // namespace ui
