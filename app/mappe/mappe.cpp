// The town's thematic maps: the list.
#include "app/shell/main.h"

namespace varlo {

Resumable<> kes_main::_caricamappe() {
  c().Log("Menu row 60 has no feature yet.");
  co_return;
}

}  // namespace varlo
