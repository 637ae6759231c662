// kes_httputils2service: the module that owns the HTTP engine and knows which job each
// of its tasks belongs to.
//
// The map keeps jobs in flight alive. Ids start at 1 and are never used twice. Reached by
// instance(); jobs use it, features don't. Main thread.
#pragma once

#include "runtime/core/language/module.h"
#include "runtime/net/http.h"

namespace kes {

class kes_httpjob;

class kes_httputils2service final : public Module<kes_httputils2service> {
 public:
  static void describe(ClassBuilder<kes_httputils2service>& c);

  // Also ends the engine in use: jobs in flight then hear no more. To be called before
  // the platform goes.
  void _process_globals() override;

  void _submitjob(const Ref<kes_httpjob>& job);
  void _service_create();
  void _hc_responsesuccess(const Ref<KesHttpResponse>& response, std::int32_t taskId);
  void _hc_responseerror(const Ref<KesHttpResponse>& response, const Text& reason,
                         std::int32_t statusCode, std::int32_t taskId);
  void _completejob(std::int32_t taskId, bool success, const Text& errorMessage,
                    const Ref<KesHttpResponse>& response);

  // Submitted and not yet told. A job between its verb and its submission is a task of
  // the main queue instead.
  std::int32_t jobsInFlight() const;

  Ref<KesHttp> _hc = platform::makeShared<KesHttp>();
  KesMap _taskidtojob;
  Text _tempfolder;
  std::int32_t _taskcounter = 0;
};

}  // namespace kes
