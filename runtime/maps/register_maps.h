// Puts the classes of this folder into the registry. Main thread, before launch.
#pragma once

namespace kes {

void registerMaps();

}  // namespace kes
