// Puts every class of the app, and what it stands on, into the class registry. Called
// once by the program's main (or a test's set-up) on the main thread, before launch.
#pragma once

namespace varlo {

void registerApp();

}  // namespace varlo
