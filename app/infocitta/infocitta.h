// kes_infocitta: the entities of one category of the city directory, on a page of their
// own. One instance; main thread.
#pragma once

#include "components/customlistview.h"
#include "runtime/core/module.h"
#include "runtime/views/dialogs/hud.h"

namespace varlo {

using namespace kes;

class kes_main;

class kes_infocitta final : public Module<kes_infocitta> {
 public:
  static void describe(ClassBuilder<kes_infocitta>& c);
  void _process_globals() override;

  // Shows the category's entities; `link` names its document.
  Resumable<> _infocitta_caricaelementi(Text title, Text link);
  void _clv_itemclick(int index, Value value);
  void _jobdone(Value) {}

  Ref<kes_main> _main;
  Ref<kes_customlistview> _clv;
  iHUD _hd;
};

}  // namespace varlo
