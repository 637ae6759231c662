// kes_infocitta_entity: the page of one entity of the city directory, with its contacts,
// addresses and opening times. Pharmacies and the waste platform open theirs through it.
// One instance; main thread.
#pragma once

#include "app/kit/records.h"
#include "components/customlistview.h"
#include "runtime/core/language/module.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace varlo {

using namespace kes;

class kes_main;

class kes_infocitta_entity final : public Module<kes_infocitta_entity> {
 public:
  static void describe(ClassBuilder<kes_infocitta_entity>& c);
  void _process_globals() override;

  // `document`: what the log calls the document that the entity comes from.
  void _caricaentity(KesMap entity, const Text& document = "");
  void _caricacontact(const Records& contacts);
  void _caricaaddress(const Records& addresses);
  void _caricacalendar(const Records& calendars);
  KesMap _copymap(const KesMap& map);
  Resumable<> _clv_itemclick(int index, Value value);
  void _home_resize(double width, double height);
  void _msgbox_result(Value) {}

  Ref<kes_main> _main;
  Ref<kes_customlistview> _clv;
  // Of the row that was loaded last.
  KesLabelWrapper _item_title, _item_value, _item_note, _item_image;

 private:
  void showSections();
  KesPanelWrapper loadRow(const KesMap& map);
  void fitRow(KesPanelWrapper panel);
  void addRow(const KesPanelWrapper& panel, const KesMap& map, const char* type);

  KesMap entity_;     // that was opened last
  Text document_;     // where it comes from, for the log
  double width_ = 0;  // that its rows were made for
};

}  // namespace varlo
