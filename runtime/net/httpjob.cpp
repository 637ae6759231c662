#include "runtime/net/httpjob.h"

#include "runtime/net/multipart_body.h"
#include "runtime/net/string_utils.h"

namespace kes {

namespace {
Ref<KesArray> utf8(const Text& text) {
  return KesArray::initBytesWithData(KesCommon::GetBytes(text, "UTF8"));
}
}  // namespace

void kes_httpjob::describe(ClassBuilder<kes_httpjob>& c) {
  using J = kes_httpjob;
  c.name("kes_httpjob");
  c.sub<&J::_initialize>("initialize");
  c.sub<&J::_class_globals>("class_globals");
  c.sub<&J::_download>("download");
  c.sub<&J::_download2>("download2");
  c.sub<&J::_head>("head");
  c.sub<&J::_delete>("delete");
  c.sub<&J::_delete2>("delete2");
  c.sub<&J::_poststring>("poststring");
  c.sub<&J::_postbytes>("postbytes");
  c.sub<&J::_postfile>("postfile");
  c.sub<&J::_postmultipart>("postmultipart");
  c.sub<&J::_putstring>("putstring");
  c.sub<&J::_putbytes>("putbytes");
  c.sub<&J::_patchstring>("patchstring");
  c.sub<&J::_patchbytes>("patchbytes");
  c.sub<&J::_getstring>("getstring");
  c.sub<&J::_getstring2>("getstring2");
  c.sub<&J::_getinputstream>("getinputstream");
  c.sub<&J::_getbitmap>("getbitmap");
  c.sub<&J::_getbitmapresize>("getbitmapresize");
  c.sub<&J::_getrequest>("getrequest");
  c.sub<&J::_release>("release");
  c.sub<&J::_escapelink>("escapelink");
  c.sub<&J::_complete>("complete");
  c.field<&J::_jobname>("jobname");
  c.field<&J::_success>("success");
  c.field<&J::_username>("username");
  c.field<&J::_password>("password");
  c.field<&J::_errormessage>("errormessage");
  c.field<&J::_target>("target");
  c.field<&J::_req>("req");
  c.field<&J::_res>("res");
  c.field<&J::_tag>("tag");
  c.field<&J::_httputils2service>("httputils2service");
}

void kes_httpjob::_class_globals() {
  _jobname = Text();
  _success = false;
  _username = Text();
  _password = Text();
  _errormessage = Text();
  _target = Value(platform::makeShared<Object>());
  _req = KesHttpRequest();
  _res = platform::makeShared<KesHttpResponse>();
  _tag = Value(platform::makeShared<Object>());
  _httputils2service = Ref<kes_httputils2service>(&kes_httputils2service::instance());
}

Text kes_httpjob::_initialize(const Ref<Kes>&, const Text& name, const Value& target) {
  initializeClassModule();
  _jobname = name;
  _target = target;
  return {};
}

Text kes_httpjob::submit() {
  c().CallSubDelayed2(bi(), Value(_httputils2service), "SubmitJob", Value(self()));
  return {};
}

Text kes_httpjob::_download(const Text& link) {
  _req.InitializeGet(link);
  return submit();
}

Text kes_httpjob::_download2(const Text& link, const Ref<KesArray>& pairs) {
  return _download(_escapelink(link, pairs));
}

Text kes_httpjob::_head(const Text& link) {
  _req.InitializeHead(link);
  return submit();
}

Text kes_httpjob::_delete(const Text& link) {
  _req.InitializeDelete(link);
  return submit();
}

Text kes_httpjob::_delete2(const Text& link, const Ref<KesArray>& pairs) {
  return _delete(_escapelink(link, pairs));
}

Text kes_httpjob::_poststring(const Text& link, const Text& text) {
  return _postbytes(link, utf8(text));
}

Text kes_httpjob::_postbytes(const Text& link, const Ref<KesArray>& bytes) {
  _req.InitializePost2(link, bytes);
  return submit();
}

Text kes_httpjob::_postfile(const Text& link, const Text& dir, const Text& fileName) {
  _req.InitializePost(link, dir, fileName);
  return submit();
}

Text kes_httpjob::_postmultipart(const Text& link, const KesMap& namesAndValues,
                                 const KesList& files) {
  MultipartBody body;
  if (namesAndValues.IsInitialized())
    for (const auto& [name, value] : namesAndValues.table()->entries())
      body.addField(Kes::ObjectToString(name), Kes::ObjectToString(value));
  if (files.IsInitialized())
    for (const auto& item : files) {
      const auto file = fromValue<Ref<_multipartfiledata>>(item);
      body.addFile(file ? *file : _multipartfiledata());
    }
  _postbytes(link, body.finish());
  _req.SetContentType("multipart/form-data; boundary=" + std::string(MultipartBody::kBoundary));
  _req.SetContentEncoding("UTF8");
  return {};
}

Text kes_httpjob::_putstring(const Text& link, const Text& text) {
  return _putbytes(link, utf8(text));
}

Text kes_httpjob::_putbytes(const Text& link, const Ref<KesArray>& bytes) {
  _req.InitializePut2(link, bytes);
  return submit();
}

Text kes_httpjob::_patchstring(const Text& link, const Text& text) {
  return _patchbytes(link, utf8(text));
}

// The request's wrapper has no such method; the platform's object takes any.
Text kes_httpjob::_patchbytes(const Text& link, const Ref<KesArray>& bytes) {
  _req.InitializeGet(link);
  KesNativeObject native;
  native.setObject(_req.object());
  native.RunMethod("setHTTPMethod:", KesArray::initObjectsWithData({"PATCH"}));
  native.RunMethod("setHTTPBody:", KesArray::initObjectsWithData({Value(bytes)}));
  return submit();
}

Text kes_httpjob::_getstring2(const Text& charset) {
  return _res ? _res->GetString2(charset) : Text();
}

KesInputStream kes_httpjob::_getinputstream() {
  return _res ? _res->GetInputStream() : KesInputStream();
}

KesBitmap kes_httpjob::_getbitmap() {
  KesBitmap bitmap;
  bitmap.InitializeFromStream(_getinputstream());
  return bitmap;
}

KesBitmap kes_httpjob::_getbitmapresize(double width, double height, bool keepRatio) {
  return _getbitmap().Resize(width, height, keepRatio);
}

Text kes_httpjob::_escapelink(const Text& link, const Ref<KesArray>& pairs) {
  std::string out = link.str();
  const auto escaped = [&](std::int32_t i) {
    return iStringUtils::EncodeUrl(Kes::ObjectToString(pairs->getObjectFast(i)), "UTF8").str();
  };
  for (std::int32_t i = 0; pairs && i < pairs->Length(); i += 2)
    out += (i == 0 ? "?" : "&") + escaped(i) + "=" + escaped(i + 1);
  return Text(out);
}

void kes_httpjob::_complete(const Ref<KesHttpResponse>& response) {
  _res = response;
  c().CallSub2(bi(), _target, "JobDone", Value(self()));
}

}  // namespace kes
