// Lends the date texts of smart strings ("date", "time") to the language services, which know
// no dates of their own. Called once at the start of the process, on the main thread.
#pragma once

namespace kes {

void lendDateTexts();

}  // namespace kes
