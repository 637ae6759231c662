// The town's thematic maps: the list. A tap opens the page of one.
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"

namespace varlo {

using deployment::documents;

Resumable<> kes_main::_caricamappe() {
  const auto progress = _hd.progress("Caricamento dati...");
  const auto list = showList("Menu Mappe");
  const auto job = co_await fetch(documents("/InfoVarlo/mappe/master/mappe.json"));
  if (!job->_success) co_return noConnection();
  eachRecord(maps(job), [&](const KesMap& map) { list->_addtextitem(nameOf(map, "Nome"), map); });
  allShown(list);
}

}  // namespace varlo
