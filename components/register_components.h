// Puts the shared components into the class registry. Called once, on the main thread.
#pragma once

namespace kes {

void registerComponents();

}  // namespace kes
