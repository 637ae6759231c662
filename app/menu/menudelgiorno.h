// kes_menudelgiorno: today's menu of one restaurant, as it posted it. One instance; main
// thread.
#pragma once

#include "app/kit/feature.h"

namespace varlo {

class kes_main;

class kes_menudelgiorno final : public Feature<kes_menudelgiorno> {
 public:
  static void describe(ClassBuilder<kes_menudelgiorno>& c);
  void _process_globals() override;

  void _caricadati(KesMap restaurant);

  Ref<kes_main> _main;
};

}  // namespace varlo
