// What assistive technology and the keyboard may reach, in reading order.
//
// Elements are views with a role: read top to bottom, line by line, container after
// container. A plain view that takes taps is one element with the texts inside it.
// What is hidden, behind a modal view or marked hidden is left out; what is merely
// scrolled out of sight is in. Main thread.
#pragma once

#include <string>
#include <vector>

#include "platform/ui/tree/view.h"

namespace ui {

struct AccessibleElement {
  Ref<View> view;
  Role role;
  std::string name;
  std::string value;  // of text inputs and controls: "on", "0.5", the text
  Rect frame;         // window points
  bool enabled, focused;
};

std::string_view roleName(Role role);
std::vector<AccessibleElement> accessibilityTree(View& root);
// The elements inside a view, a window as a rule, and those that can have the focus, in
// reading order.
std::vector<Ref<View>> focusOrder(View& root);
// True when a modal view or a hidden ancestor keeps it from being reached.
bool reachable(const View& view);

}  // namespace ui
