// The order in which the app's modules are initialised. A module that needs another's
// globals at the start stands behind it.
#pragma once

#include "app/infocitta/infocitta.h"
#include "app/infocitta/infocitta_entity.h"
#include "app/mappe/modmaps.h"
#include "app/menu/menudelgiorno.h"
#include "app/pizza/modpizzaprezzi.h"
#include "app/rifiuti/rifiuti.h"
#include "app/scuola/modscuola.h"
#include "app/shell/main.h"

namespace varlo {

// As types: one that is missing does not compile.
template <class... Module>
struct ModuleList {
  static void registerAll() { ClassRegistry::instance().addAll<Module...>(); }
  // Makes those that are not made yet, and runs their globals, in the given order.
  static void initialiseAll() { (Module::instance().initializeModule(), ...); }
};

using AppModules =
    ModuleList<kes_main, kes_modpizzaprezzi, kes_menudelgiorno, kes_infocitta, kes_infocitta_entity,
               kes_rifiuti, kes_modmaps, kes_modscuola, kes_httputils2service, kes_dateutils>;

}  // namespace varlo
