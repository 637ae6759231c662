// The archive of the town's official acts.
#include "app/shell/main.h"

namespace varlo {

void kes_main::_storicoatti_lista() { c().Log("Menu row 55 has no feature yet."); }

Resumable<> kes_main::_storicoatti_caricalista(Text) { co_return; }

Resumable<> kes_main::_storicoatti_atto(KesMap) { co_return; }

Resumable<> kes_main::_storicoatti_cerca() { co_return; }

void kes_main::_storicoatti_apri(const Value&) {}

}  // namespace varlo
