// The schools whose menus the town publishes.
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"

namespace varlo {

using deployment::documents;

Resumable<> kes_main::_menuscuola_caricalistamenuscuole() {
  const auto list = showList("Menu Scuole");
  const auto progress = _hd.progress("Caricamento dati in corso...");
  const auto job = co_await fetch(documents("/InfoVarlo/menuscuola/master/scuole.json"));
  if (!job->_success) co_return;
  eachRecord(maps(job), [&](const KesMap& school) {
    list->_addtextitem(nameOf(school, "Nome"), nameOf(school, "Link"));
  });
  allShown(list);
}

}  // namespace varlo
