#include "runtime/net/httputils2service.h"

#include "runtime/net/httpjob.h"

namespace kes {

void kes_httputils2service::describe(ClassBuilder<kes_httputils2service>& c) {
  using S = kes_httputils2service;
  c.name("kes_httputils2service");
  c.sub<&S::_process_globals>("process_globals");
  c.sub<&S::_submitjob>("submitjob");
  c.sub<&S::_service_create>("service_create");
  c.sub<&S::_hc_responsesuccess>("hc_responsesuccess");
  c.sub<&S::_hc_responseerror>("hc_responseerror");
  c.sub<&S::_completejob>("completejob");
  c.field<&S::_hc>("hc");
  c.field<&S::_taskidtojob>("taskidtojob");
  c.field<&S::_tempfolder>("tempfolder");
  c.field<&S::_taskcounter>("taskcounter");
}

void kes_httputils2service::_process_globals() {
  // An event that waits its turn may hold the former engine for a while yet.
  _hc->end();
  _hc = platform::makeShared<KesHttp>();
  _taskidtojob = KesMap();
  _tempfolder = Text();
  _taskcounter = 0;
}

void kes_httputils2service::_service_create() {
  _hc->Initialize(bi(), "hc");
  _taskidtojob.Initialize();
}

void kes_httputils2service::_submitjob(const Ref<kes_httpjob>& job) {
  if (!_hc->IsInitialized()) _service_create();
  const auto id = ++_taskcounter;
  _taskidtojob.Put(id, job);
  if (job->_username != "" && job->_password != "")
    _hc->ExecuteCredentials(job->_getrequest(), id, job->_username, job->_password);
  else
    _hc->Execute(job->_getrequest(), id);
}

void kes_httputils2service::_hc_responsesuccess(const Ref<KesHttpResponse>& response,
                                                std::int32_t taskId) {
  _completejob(taskId, true, "", response);
}

void kes_httputils2service::_hc_responseerror(const Ref<KesHttpResponse>&, const Text& reason,
                                              std::int32_t statusCode, std::int32_t taskId) {
  c().Log(Text("ResponseError: ") + reason + Text(", status code: ") +
          Kes::NumberToString(statusCode));
  _completejob(taskId, false, reason, nullptr);
}

// The job is out of the table before it tells its target, who may submit the next, or reset
// all of this; one that was taken out by then is told nothing.
void kes_httputils2service::_completejob(std::int32_t taskId, bool success,
                                         const Text& errorMessage,
                                         const Ref<KesHttpResponse>& response) {
  const auto job = jobsInFlight() ? _taskidtojob.Get(taskId).as<kes_httpjob>() : nullptr;
  if (!job) return;
  _taskidtojob.Remove(taskId);
  job->_success = success;
  job->_errormessage = errorMessage;
  job->_complete(response);
}

std::int32_t kes_httputils2service::jobsInFlight() const {
  return _taskidtojob.IsInitialized() ? _taskidtojob.Size() : 0;
}

}  // namespace kes
