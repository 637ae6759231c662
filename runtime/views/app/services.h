// What this folder and those below it lend to the runtime, which does not know them: the date
// texts of smart strings, the size of the window, and the screen's hand with pictures. One
// call at the start of the process, on the main thread, beside the registering of classes.
#pragma once

namespace kes {

void lendServices();

}  // namespace kes
