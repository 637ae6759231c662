// kes_modpizzaprezzi: the price list of one pizzeria, a page of pictures. One instance;
// main thread.
#pragma once

#include "app/kit/feature.h"

namespace varlo {

class kes_main;

class kes_modpizzaprezzi final : public Feature<kes_modpizzaprezzi> {
 public:
  static void describe(ClassBuilder<kes_modpizzaprezzi>& c);
  void _process_globals() override;

  Resumable<> _pizzaprezzi_caricapizzeria(KesMap shop);

  Ref<kes_main> _main;
};

}  // namespace varlo
