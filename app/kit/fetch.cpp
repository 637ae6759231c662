#include "app/kit/fetch.h"

namespace varlo {

namespace {

// "farmacie.json" of "https://host/a/farmacie.json?x=1"; of a folder its name.
Text lastPiece(const Text& url) {
  std::string_view path = url.view();
  path = path.substr(0, path.find_first_of("?#"));
  while (path.ends_with('/')) path.remove_suffix(1);
  return Text(path.substr(path.rfind('/') + 1));
}

// The job is handed over in a task of its own, so that the header still goes along.
Ref<kes_httpjob> started(Ref<kes_httpjob> job, const Text& url, const Header& header,
                         const Ref<KesArray>& query) {
  if (query)
    job->_download2(url, query);
  else
    job->_download(url);
  if (!header.name.empty()) job->_getrequest().SetHeader(Text(header.name), Text(header.value));
  return job;
}

}  // namespace

Fetch::Fetch(Component& owner, Ref<kes_httpjob> job, const Text& url, const Header& header,
             const Ref<KesArray>& query)
    : document_(lastPiece(url)),
      wait_(owner.waitFor<kes_httpjob>("jobdone:", started(std::move(job), url, header, query))) {}

}  // namespace varlo
