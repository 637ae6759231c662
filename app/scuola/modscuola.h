// kes_modscuola: the lunch menus of one school, day by day. One instance; main thread.
#pragma once

#include "app/kit/feature.h"

namespace varlo {

class kes_main;

class kes_modscuola final : public Feature<kes_modscuola> {
 public:
  static void describe(ClassBuilder<kes_modscuola>& c);
  void _process_globals() override;

  Resumable<> _start(Text link);

  Ref<kes_main> _main;
};

}  // namespace varlo
