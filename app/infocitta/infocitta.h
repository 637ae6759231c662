// kes_infocitta: the entities of one category of the city directory, on a page of their
// own. One instance; main thread.
#pragma once

#include "app/kit/feature.h"
#include "components/customlistview.h"

namespace varlo {

using namespace kes;

class kes_main;

class kes_infocitta final : public Feature<kes_infocitta> {
 public:
  static void describe(ClassBuilder<kes_infocitta>& c);
  void _process_globals() override;

  // Shows the category's entities; `link` names its document.
  Resumable<> _infocitta_caricaelementi(Text title, Text link);
  void _clv_itemclick(int index, Value value);

  Ref<kes_main> _main;
  Ref<kes_customlistview> _clv;

 private:
  Text document_;  // of the category that was opened last, for the log
};

}  // namespace varlo
