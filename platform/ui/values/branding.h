// What the platform says and how it is coloured where it speaks and paints by itself: the
// back button, a switch's value, the bars.
//
// The program sets both tables at its start, before it makes its screen; until then plain
// English and grey stand in. Main thread.
#pragma once

#include <array>
#include <string>

#include "platform/ui/values/color.h"

namespace ui {

struct Words {
  std::string application = "Application";  // the window's title; who sends notifications
  std::string program;                      // its name among the desktop's entries and icons
  std::string open = "Open";                // what a click on a notification does
  std::string back = "Back", menu = "Menu";
  std::string on = "on", off = "off";   // what a switch holds
  std::string loaded = "Loading done";  // said aloud when the progress overlay goes
  // A map, and its buttons: nearer, farther, back to where it began, to where the phone is.
  std::string map = "Map", zoomIn = "Zoom in", zoomOut = "Zoom out", north = "Back to the start",
              here = "My location";
  // Names of the system's bar buttons, by the platform's numbers; 5 and 6 show nothing.
  std::array<std::string, 23> barButtons{
      "Done",   "Cancel", "Edit",  "Save",   "Add",     "",        "",     "Compose",
      "Reply",  "Share",  "Files", "Marks",  "Search",  "Refresh", "Stop", "Camera",
      "Delete", "Play",   "Pause", "Rewind", "Forward", "Undo",    "Redo"};
};

struct Looks {
  Color accent{0xFF4A5560};    // bars and active controls
  Color onAccent{0xFFFFFFFF};  // on top of it
};

const Words& words();
const Looks& looks();
void setBranding(Words words, Looks looks);

}  // namespace ui
