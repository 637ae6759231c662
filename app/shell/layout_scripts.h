// The designer scripts of the app's layouts: each scales its layout to the screen.
//
// One class a layout, named after its file ("LS_layclv"), found by name when the layout
// is loaded or follows its panel's size. Main thread.
#pragma once

namespace varlo {

// Puts the classes into the registry.
void registerLayoutScripts();

}  // namespace varlo
