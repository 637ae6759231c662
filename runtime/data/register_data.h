// Puts the classes of this folder into the registry. Called once by main (or a test's
// set-up), on the main thread, before anything runs.
#pragma once

namespace kes {

void registerData();

}  // namespace kes
