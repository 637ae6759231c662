// The schools whose menus the town publishes.
#include "app/shell/main.h"

namespace varlo {

Resumable<> kes_main::_menuscuola_caricalistamenuscuole() {
  c().Log("Menu row 2 has no feature yet.");
  co_return;
}

}  // namespace varlo
