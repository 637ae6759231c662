// kes_rifiuti: on which days what waste is collected in the citizen's zone. One instance;
// main thread.
#pragma once

#include "app/kit/feature.h"

namespace varlo {

class kes_main;

class kes_rifiuti final : public Feature<kes_rifiuti> {
 public:
  static void describe(ClassBuilder<kes_rifiuti>& c);
  void _process_globals() override;

  void _carica();

  Ref<kes_main> _main;
};

}  // namespace varlo
