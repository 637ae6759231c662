// City directory: the categories on the home page, and the entities of one category.
#include "app/infocitta/infocitta.h"

#include "app/infocitta/infocitta_entity.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/shell/main.h"
#include "runtime/data/json/json_parser.h"

namespace varlo {

using deployment::documents;

Resumable<> kes_main::_infocitta_caricalistacategorie() {
  _home.RootPanel().RemoveAllViews();
  _home.RootPanel().LoadLayout("layclv", bi());
  _home.setTitle("InfoCittà");
  auto progress = _hd.progress("Caricamento dati...");
  auto job = make<kes_httpjob>(bi(), "", self());
  job->_download(documents("/InfoVarlo/infocitta/master/menu.json"));
  job = co_await waitFor<kes_httpjob>("jobdone:", job);
  if (!job->_success) {
    progress.hide();
    _hd.ToastMessageShow("Connessione non presente", false);
    job->_release();
    co_return;
  }
  KesJSONParser json;
  json.Initialize(job->_getstring());
  job->_release();
  for (const Value& category : json.NextArray())
    _clv->_addtextitem(textOf(KesMap::fromBoxed(category), "Nome"), category);
  progress.hide();
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
  auto progress = _hd.progress("Caricamento dati...");
  auto job = make<kes_httpjob>(bi(), "", self());
  job->_download(documents("/InfoVarlo/infocitta/master/" + link + ".json"));
  job = co_await waitFor<kes_httpjob>("jobdone:", job);
  if (!job->_success) {
    progress.hide();
    _hd.ToastMessageShow("Connessione non presente", false);
    job->_release();
    co_return;
  }
  KesJSONParser json;
  json.Initialize(job->_getstring2("UTF8"));
  job->_release();
  for (const Value& entity : json.NextArray())
    list->_addtextitem(textOf(KesMap::fromBoxed(entity), "Name"), entity);
  progress.hide();
}

void kes_infocitta::_clv_itemclick(int, Value value) {
  kes_infocitta_entity::instance()._caricaentity(KesMap::fromBoxed(value));
}

}  // namespace varlo
