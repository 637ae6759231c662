#include "app/rifiuti/rifiuti.h"

#include "app/shell/main.h"

namespace varlo {

void kes_rifiuti::describe(ClassBuilder<kes_rifiuti>& c) {
  c.name("kes_rifiuti");
  c.sub<&kes_rifiuti::_jobdone>("jobdone");
}

void kes_rifiuti::_process_globals() { _main = Ref(&kes_main::instance()); }

void kes_rifiuti::_carica() { c().Log("Menu row 22 has no feature yet."); }

}  // namespace varlo
