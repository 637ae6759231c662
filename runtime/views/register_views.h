// Puts the classes of this folder into the registry and lends the window's size to the
// language services. Called once by main (or a test's set-up), before anything runs.
#pragma once

namespace kes {

void registerViews();

}  // namespace kes
