#include "app/menu/menudelgiorno.h"

#include "app/shell/main.h"

namespace varlo {

Resumable<> kes_main::_menudelgiorno_caricaelenco() {
  c().Log("Menu row 5 has no feature yet.");
  co_return;
}

void kes_menudelgiorno::describe(ClassBuilder<kes_menudelgiorno>& c) {
  c.name("kes_menudelgiorno");
  c.sub<&kes_menudelgiorno::_jobdone>("jobdone");
}

void kes_menudelgiorno::_process_globals() { _main = Ref(&kes_main::instance()); }

void kes_menudelgiorno::_caricadati(KesMap) { c().Log("The daily menus have no page yet."); }

}  // namespace varlo
