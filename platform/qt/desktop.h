// What the desktop knows of its user. Main thread; a QtProcess must be running. Nothing
// here throws.
#pragma once

namespace qt {

// Whether a session bus is there; without an address the library would start one of its own.
bool sessionBusThere();

// The factor that the user wants texts larger by, within the limits of a text engine; 1
// where the desktop says nothing, or says it by the scale of the display.
double desktopTextScale();

}  // namespace qt
