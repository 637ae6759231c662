// The town's newsletter: the issues in the archive, the newest first, and a page for each.
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/kit/sorttype.h"
#include "app/shell/main.h"

namespace varlo {

namespace {

constexpr const char* kArchive = "/repos/comune-varlo/newsletter/contents/archivio?ref=master";

// Names begin with the date of the issue, so that they sort as the issues came.
KesList newestFirst(const Records& issues) {
  KesList sorted;
  sorted.Initialize();
  eachRecord(issues, [&](const KesMap& issue) {
    nameOf(issue, "download_url");
    sorted.Add(_sorttype::of(nameOf(issue, "name"), "", issue));
  });
  sorted.SortType("KEY", false);
  return sorted;
}

}  // namespace

Resumable<> kes_main::_newsletter_scaricalista() {
  const auto list = showList("Newsletter Varlo");
  try {
    const auto progress = _hd.progress("Caricamento...");
    const auto job = co_await fetch(deployment::repository(kArchive), kUserAgent);
    if (!job->_success) co_return noConnection();
    for (const Value& entry : newestFirst(maps(job))) {
      const auto issue = entry.as<_sorttype>();
      list->_addtextitem("Newsletter del " + _formatodata(issue->KEY, false),
                         KesMap::fromBoxed(issue->Value).Get("download_url"));
    }
    allShown(list);
  } catch (const std::exception& e) {
    Kes::SetException(e);
    c().Log("Newsletter: " + c().LastException().Message());
  }
}

Resumable<> kes_main::_newsletter_feed(Text address) {
  _secondpage.Initialize(bi(), "SecondPage");
  _secondpage.RootPanel().LoadLayout("layweb", bi());
  _secondpage.setTitle("Newsletter");
  auto web = _web;
  _navcontrol.ShowPage(_secondpage);
  const auto progress = _hd.progress("Caricamento...");
  const auto job = co_await fetch(address, kUserAgent);
  if (!job->_success) co_return noConnection();
  web.LoadHtml(job->_getstring(), address);
}

}  // namespace varlo
