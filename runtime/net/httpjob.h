// kes_httpjob: one HTTP request of a feature, from the verb to "JobDone".
//
//   auto job = make<kes_httpjob>(bi(), "", self());
//   job->_download(link);
//   job = co_await waitFor<kes_httpjob>("jobdone:", job);
//   if (job->_success) use(job->_getstring());
//
// A verb only queues the request: headers and the time-out may be changed through
// _getrequest() up to the end of the turn, and the wait directly after the verb can't
// miss the event. Each verb ends in exactly one "jobdone:" on the target, in the turn
// in which the body can be read (platform/url/url_body.h); a failed job's is empty. A job in flight
// is kept alive by the service. Verbs give the empty text; a file that can't be read makes
// _postfile and _postmultipart throw what the file service throws. Main thread.
#pragma once

#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/data/files/bitmap.h"
#include "runtime/net/httputils2service.h"
#include "runtime/net/multipart_file_data.h"

namespace kes {

class kes_httpjob final : public KesClass {
 public:
  static void describe(ClassBuilder<kes_httpjob>& c);

  Text _initialize(const Ref<Kes>& bi, const Text& name, const Value& target);
  void _class_globals() override;

  // `pairs`: names and values in turn, for the query.
  Text _download(const Text& link);
  Text _download2(const Text& link, const Ref<KesArray>& pairs);
  Text _head(const Text& link);
  Text _delete(const Text& link);
  Text _delete2(const Text& link, const Ref<KesArray>& pairs);
  Text _poststring(const Text& link, const Text& text);
  Text _postbytes(const Text& link, const Ref<KesArray>& bytes);
  Text _postfile(const Text& link, const Text& dir, const Text& fileName);
  // Texts by name, and files (_multipartfiledata); either may be left uninitialised.
  Text _postmultipart(const Text& link, const KesMap& namesAndValues, const KesList& files);
  Text _putstring(const Text& link, const Text& text);
  Text _putbytes(const Text& link, const Ref<KesArray>& bytes);
  Text _patchstring(const Text& link, const Text& text);
  Text _patchbytes(const Text& link, const Ref<KesArray>& bytes);

  // For the code that "JobDone" wakes.
  Text _getstring() { return _getstring2("UTF8"); }
  Text _getstring2(const Text& charset);
  KesInputStream _getinputstream();
  KesBitmap _getbitmap();  // throws "Error loading image." for a body that is none
  KesBitmap _getbitmapresize(double width, double height, bool keepRatio);
  KesHttpRequest _getrequest() { return _req; }
  Text _release() { return {}; }

  Text _escapelink(const Text& link, const Ref<KesArray>& pairs);
  void _complete(const Ref<KesHttpResponse>& response);

  Text _jobname;
  bool _success = false;
  Text _username;
  Text _password;
  Text _errormessage;
  Value _target;
  KesHttpRequest _req;
  Ref<KesHttpResponse> _res;
  Value _tag;
  Ref<kes_httputils2service> _httputils2service;

 private:
  Text submit();
};

}  // namespace kes
