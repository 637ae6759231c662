#include "app/menu/menudelgiorno.h"

#include <algorithm>

#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/shell/main.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/views/richtext/cs_builder.h"

namespace varlo {

using deployment::documents;
using deployment::graph;

namespace {

// Exact; the accent is how half of the restaurants write it.
constexpr const char* kHashtags[] = {"#menudelgiorno", "#menùdelgiorno"};
constexpr int kPosts = 5;
constexpr float kRowSize = 18;

bool isMenuOf(const KesMap& post, const Text& today) {
  const Text time = textOf(post, "created_time"), message = textOf(post, "message");
  if (time.Length() < today.Length() || time.SubString2(0, today.Length()) != today) return false;
  return std::ranges::any_of(kHashtags, [&](const char* tag) { return message.Contains(tag); });
}

Text today() {
  const KeptDateFormat kept;
  DateTime().setDateFormat("yyyy-MM-dd");
  return DateTime().Date(DateTime().Now());
}

}  // namespace

Resumable<> kes_main::_menudelgiorno_caricaelenco() {
  const auto list = showList("Menu del giorno");
  const auto progress = _hd.progress("Caricamento...");
  const auto job = co_await fetch(documents("/InfoVarlo/config/master/menudelgiorno.json"));
  if (!job->_success) co_return noConnection();
  if (job->_getstring().empty()) co_return;
  eachRecord(maps(job), [&](const KesMap& restaurant) {
    KesCSBuilder text;
    text.Initialize().Font(KesFont::CreateNew(kRowSize));
    list->_addtextitemcs(text.Append(nameOf(restaurant, "Nome")).PopAll(), restaurant);
  });
  allShown(list);
}

void kes_menudelgiorno::describe(ClassBuilder<kes_menudelgiorno>& c) {
  c.name("kes_menudelgiorno");
  c.sub<&kes_menudelgiorno::_jobdone>("jobdone");
  c.sub<&kes_menudelgiorno::_home_resize>("home_resize");
  c.field<&kes_menudelgiorno::_ltitle>("ltitle");
  c.field<&kes_menudelgiorno::_ltel>("ltel");
  c.field<&kes_menudelgiorno::_laddress>("laddress");
  c.field<&kes_menudelgiorno::_logo>("logo");
  c.field<&kes_menudelgiorno::_ppost>("ppost");
}

void kes_menudelgiorno::_process_globals() { _main = Ref(&kes_main::instance()); }

void kes_menudelgiorno::_caricadati(KesMap restaurant) {
  _home = KesPage();
  _home.Initialize(bi(), "Home");
  _home.RootPanel().LoadLayout("laymenuday", bi());
  post_ = PictureColumn(_ppost);
  _home.setTitle("Menu " + _dataestesa(DateTime().Now()));
  _main->_navcontrol.ShowPage(_home);
  if (textOf(restaurant, "Type") == "Facebook") _fb_scaricadati(textOf(restaurant, "URL"));
}

Text kes_menudelgiorno::_dataestesa(std::int64_t ticks) {
  return _main->_dateutils->_getdayofweekname(ticks) + " " +
         std::to_string(DateTime().GetDayOfMonth(ticks)) + " " +
         _main->_dateutils->_getmonthname(ticks) + " " + std::to_string(DateTime().GetYear(ticks));
}

Resumable<> kes_menudelgiorno::_fb_scaricadati(Text page) {
  auto progress = _hd.progress("Caricamento in corso...");
  auto answer = fetch(graph("/v2.9/" + page), kUserAgent,
                      KesArray::initObjectsWithData(
                          {"fields",
                           "posts.limit(5){message,attachments{media,subattachments},created_time},"
                           "name,picture,location,phone,description,hours",
                           "access_token", _main->_tokenfb}));
  progress.setText("Caricamento...");
  const KesPage asked = _home;
  const auto job = co_await std::move(answer);
  if (!job->_success) co_return noConnection();
  // Another restaurant may have been opened meanwhile.
  if (asked.objectOrNull() == _home.objectOrNull()) _fb_elabora(job->_getstring());
}

void kes_menudelgiorno::_fb_elabora(const Text& document) {
  const Record page("page", KesMap());
  page.attempt([&] {
    const Record restaurant(page.place(), parsedMap(page.place(), document));
    showRestaurant(restaurant);
    const Text day = today();
    bool found = false;
    int seen = 0;
    restaurant.attempt([&] {
      if (!restaurant.map().ContainsKey("posts")) return;
      for (const Record& post :
           maps(Record(page.place() + ", posts", mapOf(restaurant.map(), "posts")), "data")) {
        post.attempt([&] {
          if (!isMenuOf(post, day)) return;
          found = true;
          showPost(post);
        });
        if (found || ++seen == kPosts) break;
      }
    });
    if (found) return;
    post_.addText(bi(), "MENU ANCORA NON PRESENTE");
  });
}

// Each piece by itself: what is missing or of another kind leaves its place empty.
void kes_menudelgiorno::showRestaurant(const Record& restaurant) {
  const KesMap& map = restaurant.map();
  restaurant.attempt([&] {
    if (map.ContainsKey("name")) _ltitle.setText(textOf(map, "name"));
  });
  restaurant.attempt([&] {
    if (map.ContainsKey("phone")) _ltel.setText(textOf(map, "phone"));
  });
  restaurant.attempt([&] {
    if (!map.ContainsKey("location")) return;
    const KesMap place = mapOf(map, "location");
    _laddress.setText(nameOf(place, "street") + ", " + nameOf(place, "city"));
  });
  restaurant.attempt([&] {
    if (!map.ContainsKey("picture")) return;
    _main->_downloadimage(nameOf(mapOf(mapOf(map, "picture"), "data"), "url"), _logo);
  });
}

void kes_menudelgiorno::showPost(const Record& post) {
  post_.addText(bi(), textOf(post, "message"));
  post.attempt([&] {
    if (!post.map().ContainsKey("attachments")) return;
    const KesList attachments = listOf(mapOf(post.map(), "attachments"), "data");
    if (attachments.Size() != 1) return;
    for (const Record& only : Records(post.place() + ", attachments", attachments)) {
      if (only.map().ContainsKey("media")) only.attempt([&] { addPicture(only); });
      if (!only.map().ContainsKey("subattachments")) continue;
      for (const Record& more :
           maps(Record(only.place() + ", subattachments", mapOf(only.map(), "subattachments")),
                "data"))
        more.attempt([&] { addPicture(more); });
    }
  });
}

void kes_menudelgiorno::addPicture(const Record& attachment) {
  const KesMap image = mapOf(mapOf(attachment.map(), "media"), "image");
  const Text source = nameOf(image, "src");
  double proportion = 0;
  attachment.attempt([&] { proportion = numberOf(image, "height") / numberOf(image, "width"); });
  auto view = post_.addPicture(bi(), "img_preview", proportion, "Foto del menu");
  view.setTag(source);
  _main->_downloadimage(source, view);
}

void kes_menudelgiorno::_home_resize(double, double) { post_.layOut(); }

}  // namespace varlo
