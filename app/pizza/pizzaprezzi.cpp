// The pizzerias of the town with today's hours and offer.
#include "app/shell/main.h"

namespace varlo {

Resumable<> kes_main::_pizzaprezzi_caricapizzerielista() {
  c().Log("Menu row 3 has no feature yet.");
  co_return;
}

}  // namespace varlo
