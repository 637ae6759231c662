// The town's news: the list, and a page for each item from the HTML that it carries.
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/cs_builder.h"

namespace varlo {

namespace {

constexpr float kTitleSize = 18, kTextSize = 14;

// The items, in the document's order; none where it has no such table.
Records itemsOf(const Fetched& document) {
  const KesMap whole = mapOf(document);
  if (!whole.ContainsKey("NewDataSet")) return Records(document.document(), KesList());
  const Record set(document.document(), mapOf(whole, "NewDataSet"));
  if (!set.map().ContainsKey("Table")) return Records(document.document(), KesList());
  return maps(set, "Table");
}

KesCSBuilder teaser(const KesMap& item) {
  for (const char* readLater : {"Descrizione", "IMG"}) textOf(item, readLater);
  const char* const line = KesCommon::CRLF;
  KesCSBuilder text;
  text.Initialize();
  text.Font(KesFont::CreateNewBold(kTitleSize)).Append(nameOf(item, "Titolo")).Pop();
  text.Append(line).Append(line);
  text.Font(KesFont::CreateNew(kTextSize)).Append(textOf(item, "DescrizioneBreve")).Pop();
  return text;
}

Text html(const KesMap& item) {
  if (!item.ContainsKey("IMG")) return textOf(item, "Descrizione");
  const Text picture = deployment::townHall("/upload/varlo/notizie/") + textOf(item, "IMG");
  return "<img style=\"max-width: 100%;\" src=\"" + picture + "\">" + textOf(item, "Descrizione");
}

}  // namespace

Resumable<> kes_main::_newsvarlo_caricalista() {
  const auto list = showList("News Comune di Varlo");
  const auto progress = _hd.progress("Caricamento dati in corso...");
  const auto job = co_await fetch(deployment::service("/varlo/newsvarlo"));
  if (!job->_success) co_return noConnection();
  const Records items = itemsOf(job);
  for (const Record& item : items) {
    KesCSBuilder text;
    if (!item.attempt([&] { text = teaser(item); })) continue;
    co_await sleep(0);
    list->_addtextitemcs(text, item.map());
  }
  allShown(list);
}

void kes_main::_newsvarlo_feed(const KesMap& item) {
  _secondpage.Initialize(bi(), "SecondPage");
  _secondpage.RootPanel().LoadLayout("laywebtitle", bi());
  _secondpage.setTitle("News");
  _subtitle.setText(textOf(item, "Titolo"));
  _navcontrol.ShowPage(_secondpage);
  _web.LoadHtml(html(item));
}

}  // namespace varlo
