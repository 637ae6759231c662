// kes_rifiuti: on which days what waste is collected in the citizen's zone. The street is
// asked for once; its zone is kept in the store and the page of the zone opens at once from
// then on. One instance; main thread.
#pragma once

#include "app/kit/feature.h"
#include "components/searchview.h"
#include "runtime/data/store/key_value_store.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/wrappers/button_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/scroll_view_wrapper.h"

namespace varlo {

class kes_main;

class kes_rifiuti final : public Feature<kes_rifiuti> {
 public:
  static void describe(ClassBuilder<kes_rifiuti>& c);
  void _process_globals() override;

  void _carica();
  // Forgets the zone, also when the citizen then leaves without a choice.
  Resumable<> _setting_click();
  Resumable<Value> _caricaviezone();
  Resumable<> _caricazona(Text zone);
  // A colour is a hash sign and six hexadecimal digits; anything else throws.
  KesButtonWrapper _getbutton(const Text& text, const Text& color, double width,
                              const Text& eventName);
  std::int32_t _getcolor(const Text& color);

  // What the views raise.
  void _sv_itemclick(Value street);
  void _btn_click();
  void _btnmap_click();
  void _btnp_click();
  void _btnl_click();
  void _home_barbuttonclick(Value tag);
  void _home_keyboardstatechanged(double height);
  void _home_resize(double width, double height);

  Ref<kes_main> _main;
  KesPage _home;
  Ref<kes_keyvaluestore> _kvs;
  Ref<kes_searchview> _sv;
  KesScrollView _svw;
  KesLabelWrapper _lblzona, _lblnote;
  KesButtonWrapper _lblday1, _lblday2;
  KesMap _dati;  // the collection calendar

 private:
  struct Material {
    const char *name, *color;
  };
  class Column;
  Text storedZone();
  void buildZone(const KesScrollView& view, const KesMap& zone, const Text& key);
  KesButtonWrapper addDay(Column& column, const KesMap& zone, const char* day,
                          std::initializer_list<Material> materials);
  Value tagOfSender();

  Text zone_;  // whose page was asked for last
};

}  // namespace varlo
