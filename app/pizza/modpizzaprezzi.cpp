#include "app/pizza/modpizzaprezzi.h"

#include <optional>

#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"
#include "runtime/data/files/file.h"
#include "runtime/views/wrappers/image_view_wrapper.h"

namespace varlo {

using deployment::repository;

namespace {

constexpr const char* kUnfinished = ".parziale";

// A file of the folder that holds a shop's pictures of one date. What a service calls it is
// never more than a name in that folder.
struct PriceFile {
  Text folder, name, link;
  std::int64_t size = -1;  // bytes, where the service says so

  bool isKept() const {
    if (!File().Exists(folder, name)) return false;
    const auto kept = File().Size(folder, name);
    return kept > 0 && (size < 0 || kept == size);
  }
  // Under another name until it is whole: nothing half written is taken for it.
  void keep(const Fetched& job) const {
    auto out = File().OpenOutput(folder, name + kUnfinished, false);
    KesFile::Copy2(job->_getinputstream(), out);
    out.Close();
    File().Move(folder, name + kUnfinished, folder, name);
  }
};

Text plainName(const Text& name) {
  if (!isPlainFileName(name)) throw KesException("\"" + name + "\" is no file name");
  return name;
}

// Made if it isn't there.
Text folderOf(const KesMap& shop) {
  const Text date = nameOf(shop, "Folder") + "-" + textOf(shop, "LastUpdate");
  const Text name = plainName(date.Replace("/", "-"));
  File().MakeDir(File().DirTemp(), name);
  return KesFile::Combine(File().DirTemp(), name);
}

PriceFile fileOf(const KesMap& entry, const Text& folder) {
  PriceFile file{folder, plainName(textOf(entry, "name")), nameOf(entry, "download_url")};
  if (entry.Get("size").isNumber()) file.size = entry.Get("size").asInt64();
  return file;
}

}  // namespace

void kes_modpizzaprezzi::describe(ClassBuilder<kes_modpizzaprezzi>& c) {
  c.name("kes_modpizzaprezzi");
  c.sub<&kes_modpizzaprezzi::_jobdone>("jobdone");
  c.sub<&kes_modpizzaprezzi::_home_resize>("home_resize");
  c.field<&kes_modpizzaprezzi::_pcontent>("pcontent");
}

void kes_modpizzaprezzi::_process_globals() { _main = Ref(&kes_main::instance()); }

Resumable<> kes_modpizzaprezzi::_pizzaprezzi_caricapizzeria(KesMap shop) {
  _home = KesPage();
  _home.Initialize(bi(), "Home");
  _home.RootPanel().LoadLayout("laycontent", bi());
  _home.setTitle(textOf(shop, "Title"));
  _main->_navcontrol.ShowPage(_home);
  KesScrollView scroll;
  scroll.Initialize(bi(), "", _pcontent.Width(), _pcontent.Height());
  scroll.setShowsHorizontalIndicator(false);
  _pcontent.AddView(scroll, 0, 0, _pcontent.Width(), _pcontent.Height());
  prices_ = PictureColumn(scroll);
  auto prices = prices_;  // of this page, whichever is opened meanwhile

  const auto progress = _hd.progress("Caricamento dati in corso...");
  const Text name = nameOf(shop, "Folder");
  auto job = co_await fetch(
      repository("/repos/InfoVarlo/pizzaprezzi/contents/" + name + "?ref=master"), kUserAgent);
  if (!job->_success) co_return;
  const Text folder = folderOf(shop);
  for (const Record& entry : maps(job)) {
    std::optional<PriceFile> file;
    if (!entry.attempt([&] { file = fileOf(entry, folder); })) continue;
    bool shown = false;
    const auto show = [&] { showPicture(prices, file->folder, file->name); };
    if (file->isKept()) {
      co_await sleep(0);
      shown = entry.attempt(show);
    }
    // Also what is kept and can't be read.
    if (!shown) {
      job = co_await fetchAgain(std::move(job), file->link);
      if (job->_success) entry.attempt([&] { file->keep(job); });
      co_await sleep(0);
      shown = entry.attempt(show);
    }
    if (!shown) co_return _hd.ToastMessageShow("Errore in download menu", true);
  }
}

void kes_modpizzaprezzi::showPicture(PictureColumn& page, const Text& folder, const Text& name) {
  KesBitmap file;
  file.Initialize(folder, name);
  const double width = page.width();
  const KesBitmap bitmap = file.Resize(width, c().DipToCurrent(PictureColumn::kHighest), true);
  KesImageViewWrapper natural;
  natural.Initialize(bi(), "");
  natural.setBitmap(bitmap);
  natural.SizeToFit();
  page.addPicture(bi(), "", natural.Height() / width, "Listino prezzi").setBitmap(bitmap);
}

void kes_modpizzaprezzi::_home_resize(double, double) {
  if (_pcontent.NumberOfViews() == 0) return;
  _pcontent.GetView(0).SetLayoutAnimated(0, 0, 0, 0, _pcontent.Width(), _pcontent.Height());
  prices_.layOut();
}

}  // namespace varlo
