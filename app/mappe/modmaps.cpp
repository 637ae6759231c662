#include "app/mappe/modmaps.h"

#include "app/shell/main.h"

namespace varlo {

void kes_modmaps::describe(ClassBuilder<kes_modmaps>& c) {
  c.name("kes_modmaps");
  c.sub<&kes_modmaps::_jobdone>("jobdone");
}

void kes_modmaps::_process_globals() { _main = Ref(&kes_main::instance()); }

Resumable<> kes_modmaps::_avvia() {
  c().Log("The maps have no page yet.");
  co_return;
}

}  // namespace varlo
