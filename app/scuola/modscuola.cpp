#include "app/scuola/modscuola.h"

#include "app/shell/main.h"

namespace varlo {

void kes_modscuola::describe(ClassBuilder<kes_modscuola>& c) {
  c.name("kes_modscuola");
  c.sub<&kes_modscuola::_jobdone>("jobdone");
}

void kes_modscuola::_process_globals() { _main = Ref(&kes_main::instance()); }

Resumable<> kes_modscuola::_start(Text) {
  c().Log("The school menus have no page yet.");
  co_return;
}

}  // namespace varlo
