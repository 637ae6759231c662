#include "app/pizza/modpizzaprezzi.h"

#include "app/shell/main.h"

namespace varlo {

void kes_modpizzaprezzi::describe(ClassBuilder<kes_modpizzaprezzi>& c) {
  c.name("kes_modpizzaprezzi");
  c.sub<&kes_modpizzaprezzi::_jobdone>("jobdone");
}

void kes_modpizzaprezzi::_process_globals() { _main = Ref(&kes_main::instance()); }

Resumable<> kes_modpizzaprezzi::_pizzaprezzi_caricapizzeria(KesMap) {
  c().Log("The price lists have no page yet.");
  co_return;
}

}  // namespace varlo
