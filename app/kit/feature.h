// Feature<M>: base of the modules that show something. One instance of each, for the life
// of the process; main thread.
//
//   class kes_modscuola final : public Feature<kes_modscuola> {
//
// It brings the overlay and the toast, and the verbs that every feature speaks in. The
// module names an empty sub `_jobdone` among its subs, for a job that nobody waits for.
#pragma once

#include "app/kit/fetch.h"
#include "components/customlistview.h"
#include "runtime/views/dialogs/hud.h"

namespace varlo {

template <class M>
class Feature : public Module<M> {
 public:
  void _jobdone(Value) {}

  iHUD _hd;

 protected:
  // Gets an address, as a fresh job.
  Fetch fetch(const Text& url, const Header& header = kNoHeader,
              const Ref<KesArray>& query = nullptr) {
    return Fetch(*this, make<kes_httpjob>(this->bi(), "", this->self()), url, header, query);
  }
  // The same with a job that is done with.
  Fetch fetchAgain(Fetched&& done, const Text& url) {
    auto job = done.release();
    job->_initialize(this->bi(), "", this->self());
    return Fetch(*this, std::move(job), url, kNoHeader, nullptr);
  }
  // Closes the loading of a list: one that came back empty says so.
  void allShown(const Ref<kes_customlistview>& list) { list->showEmptyText("Nessun elemento"); }
  void noConnection() { _hd.ToastMessageShow("Connessione non presente", false); }
};

}  // namespace varlo
