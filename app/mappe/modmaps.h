// kes_modmaps: the page of one thematic map. One instance; main thread.
#pragma once

#include "app/kit/feature.h"

namespace varlo {

class kes_main;

class kes_modmaps final : public Feature<kes_modmaps> {
 public:
  static void describe(ClassBuilder<kes_modmaps>& c);
  void _process_globals() override;

  // The description of the map that _avvia() shows.
  void set_datimappa(KesMap description) { _datimappa = std::move(description); }
  Resumable<> _avvia();

  Ref<kes_main> _main;
  KesMap _datimappa;
};

}  // namespace varlo
