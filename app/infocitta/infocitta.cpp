// City directory: the categories on the home page, and the entities of one category.
#include "app/infocitta/infocitta.h"

#include "app/infocitta/infocitta_entity.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"

namespace varlo {

using deployment::documents;

Resumable<> kes_main::_infocitta_caricalistacategorie() {
  const auto list = showList("InfoCittà");
  const auto progress = _hd.progress("Caricamento dati...");
  const auto job = co_await fetch(documents("/InfoVarlo/infocitta/master/menu.json"));
  if (!job->_success) co_return noConnection();
  eachRecord(maps(job), [&](const KesMap& category) {
    list->_addtextitem(nameOf(category, "Nome"), category);
  });
  allShown(list);
}

void kes_infocitta::describe(ClassBuilder<kes_infocitta>& c) {
  c.name("kes_infocitta");
  c.sub<&kes_infocitta::_clv_itemclick>("clv_itemclick");
  c.sub<&kes_infocitta::_jobdone>("jobdone");
  c.field<&kes_infocitta::_clv>("clv");
}

void kes_infocitta::_process_globals() { _main = Ref(&kes_main::instance()); }

Resumable<> kes_infocitta::_infocitta_caricaelementi(Text title, Text link) {
  KesPage page;
  page.Initialize(bi(), "Home");
  page.RootPanel().LoadLayout("layclv", bi());
  page.setTitle(title);
  _main->_navcontrol.ShowPage(page);
  const auto list = _clv;  // a later category may replace it while this one loads
  const auto progress = _hd.progress("Caricamento dati...");
  const auto job = co_await fetch(documents("/InfoVarlo/infocitta/master/" + link + ".json"));
  if (!job->_success) co_return noConnection();
  document_ = job.document();
  eachRecord(maps(job),
             [&](const KesMap& entity) { list->_addtextitem(nameOf(entity, "Name"), entity); });
  allShown(list);
}

void kes_infocitta::_clv_itemclick(int, Value value) {
  kes_infocitta_entity::instance()._caricaentity(KesMap::fromBoxed(value), document_);
}

}  // namespace varlo
