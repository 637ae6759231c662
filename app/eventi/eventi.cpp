// Coming events of the town and of its sports clubs, from their public pages.
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/kit/sorttype.h"
#include "app/kit/text_height.h"
#include "app/shell/main.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/files/file.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/cs_builder.h"
#include "runtime/views/wrappers/image_view_wrapper.h"

namespace varlo {

using deployment::documents;
using deployment::graph;

namespace {

constexpr double kCardHeight = 220;
constexpr float kNameSize = 16, kDateSize = 12;
constexpr std::int32_t kText = static_cast<std::int32_t>(0xFF1B1F23);
constexpr std::int32_t kIconColor = static_cast<std::int32_t>(0xFFA9BDC8);
constexpr std::int32_t kIcon = 0xE878;
constexpr float kIconSize = 56;
// White that has come up, from the left, where the text begins: it is read over any picture.
constexpr const char* kVeil = "velo.png";
// What a card holds, back to front.
enum Part { kEventIcon, kPicture, kUnderText, kWords };
constexpr int kDay = 10, kMinute = 16;  // characters of a date, and with its hour

Text eventsOf(const Text& page, const Text& token) {
  return graph("/v2.9/" + page +
               "/events?fields=name,can_guests_invite,attending_count,interested_count,"
               "start_time,end_time,cover,place,event_times&limit=50&access_token=" +
               token);
}

// A page's name goes into an address: one that would lead elsewhere is refused.
Text pageOf(const KesMap& club) {
  const Text page = nameOf(club, "URL");
  if (page.view().find_first_of("/?#") != std::string_view::npos)
    throw KesException("\"" + page + "\" is no page");
  return page;
}

// Services write the word where there is nothing.
Text unlessNull(const Text& text) { return text == "null" ? Text() : text; }
Text dayPart(const Text& time) { return time.SubString2(0, std::min(kDay, time.Length())); }

// The day and the hour, where the event has one.
Text dayAndHour(kes_main& app, const Text& time) {
  const Text day = app._formatodata(time, false);
  return time.Length() < kMinute ? day : day + "  " + app._formatoora(time);
}

void appendEnd(kes_main& app, KesCSBuilder& text, const Text& start, const Text& end) {
  if (end.empty()) return;
  const KesFont small = KesFont::CreateNew(kDateSize);
  if (dayPart(end) != dayPart(start))
    text.Append(KesCommon::CRLF).Font(small).Append(dayAndHour(app, end)).Pop();
  else if (end.Length() >= kMinute)
    text.Append(" - ").Font(small).Append(app._formatoora(end)).Pop();
}

// The name, the place and the times; the club for an event of one.
KesCSBuilder describe(kes_main& app, const Record& event, const Text& club) {
  const Text start = textOf(event, "start_time");
  KesCSBuilder text;
  text.Initialize().Alignment("ALIGN_CENTER").Color(kText);
  text.Font(KesFont::CreateNewBold(kNameSize)).Append(textOf(event, "name")).Pop();
  text.Append(KesCommon::CRLF);
  event.attempt([&] {
    if (event.map().ContainsKey("place"))
      text.Append(unlessNull(textOf(mapOf(event.map(), "place"), "name")));
  });
  text.Append(KesCommon::CRLF).Append(KesCommon::CRLF);
  text.Font(KesFont::CreateNew(kDateSize)).Append(dayAndHour(app, start)).Pop();
  event.attempt([&] { appendEnd(app, text, start, unlessNull(textOf(event, "end_time"))); });
  if (!club.empty()) {
    text.Append(KesCommon::CRLF);
    text.Font(KesFont::CreateNewBold(kDateSize)).Append(club).Pop();
  }
  return text.PopAll();
}

// An event is listed through the whole of its last day.
bool isOver(kes_main& app, const KesMap& event) {
  Text last = unlessNull(textOf(event, "end_time"));
  if (last.empty()) last = textOf(event, "start_time");
  return app._datetolong(dayPart(last)) <= DateTime().Now();
}

// The picture on the first two thirds of the card, the text over it on the last two. The
// icon is seen where a picture is not there.
void placeCard(const KesPanelWrapper& card) {
  const double third = card.Width() / 3.0;
  const auto place = [&](Part part, double left, double width) {
    card.GetView(part).SetLayoutAnimated(0, 0, left, 0, width, card.Height());
  };
  place(kEventIcon, 0, third);
  place(kPicture, 0, 2 * third);
  place(kUnderText, third / 2, 2.5 * third);
  place(kWords, third, 2 * third);
}

KesLabelWrapper eventIcon(kes_main& app) {
  KesLabelWrapper icon;
  icon.Initialize(app.bi(), "");
  icon.setText(app.c().Chr(kIcon));
  icon.setFont(KesFont::CreateMaterialIcons(kIconSize));
  icon.setTextColor(kIconColor);
  icon.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
  return icon;
}

KesLabelWrapper words(kes_main& app, const KesCSBuilder& text) {
  KesLabelWrapper label;
  label.Initialize(app.bi(), "");
  label.setMultiline(true);
  label.setAdjustFontSizeToFit(true);
  label.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
  label.setAttributedText(text);
  return label;
}

// Fills one list with cards.
class Cards {
 public:
  Cards(kes_main& app, Ref<kes_customlistview> list) : app_(app), list_(std::move(list)) {
    veil_.Initialize(File().DirAssets(), kVeil);
  }

  // In the order of their beginning, without those that are over.
  void showSorted(KesList& entries) const {
    entries.SortType("KEY", true);
    for (const Value& value : entries) {
      const auto entry = value.as<_sorttype>();
      const KesMap map = KesMap::fromBoxed(entry->Value);
      const Record event("event " + Kes::ObjectToString(map.Get("id")), map);
      event.attempt([&] {
        if (!isOver(app_, event)) add(event, entry->Title);
      });
    }
  }

 private:
  void add(const Record& event, const Text& club) const {
    KesPanelWrapper card;
    card.Initialize(app_.bi(), "card");
    card.setColor(KesColors::White);
    card.setWidth(list_->_asview().Width());
    card.setHeight(textHeight(kCardHeight));
    auto picture = image();
    picture.setContentMode(KesImageViewWrapper::MODE_FIT);
    auto veil = image();
    veil.setBitmap(veil_);
    for (const KesViewWrapper& part :
         {KesViewWrapper(eventIcon(app_)), KesViewWrapper(picture), KesViewWrapper(veil),
          KesViewWrapper(words(app_, describe(app_, event, club)))})
      card.AddView(part, 0, 0, 0, 0);
    placeCard(card);
    list_->_add(card, textOf(event, "id"));
    event.attempt([&] {
      if (event.map().ContainsKey("cover"))
        app_._downloadimage(nameOf(mapOf(event.map(), "cover"), "source"), picture);
    });
  }

  KesImageViewWrapper image() const {
    KesImageViewWrapper view;
    view.Initialize(app_.bi(), "");
    return view;
  }

  kes_main& app_;
  Ref<kes_customlistview> list_;
  KesBitmap veil_;
};

// An event that recurs is one for each time that it takes place.
void expand(kes_main& app, const Record& event, KesList& entries) {
  if (!event.map().ContainsKey("event_times")) {
    entries.Add(_sorttype::of(textOf(event, "start_time"), "", event.map()));
    return;
  }
  for (const Record& time : maps(event, "event_times"))
    time.attempt([&] {
      KesMap copy = app._copymap(event);
      for (const char* key : {"start_time", "end_time", "id"}) copy.Put(key, time.map().Get(key));
      entries.Add(_sorttype::of(textOf(copy, "start_time"), "", copy));
    });
}

KesList eventsIn(const Text& place, const Text& document) {
  return listOf(parsedMap(place, document), "data");
}

void showPage(kes_main& app, const Ref<kes_customlistview>& list, const Text& document) {
  const KesList events = eventsIn("events", document);
  if (events.Size() == 0) app._hd.ToastMessageShow("Nessun evento trovato", true);
  KesList entries;
  entries.Initialize();
  for (const Record& event : Records("events", events))
    event.attempt([&] { expand(app, event, entries); });
  Cards(app, list).showSorted(entries);
}

}  // namespace

// The list is there before its events are, so that a citizen who has gone on meanwhile
// gets no card into another feature's list.
Resumable<> kes_main::_fbeventi_scarica(Text title, Text page) {
  const auto list = showList(title);
  const auto progress = _hd.progress("Caricamento...");
  const auto job = co_await fetch(eventsOf(page, _tokenfb), kUserAgent);
  if (!job->_success) co_return noConnection();
  Record(page, {}).attempt([&] {
    showPage(*this, list, job->_getstring());
    allShown(list);
  });
}

void kes_main::_fbeventi_leggidati(Text title, Text document) {
  const auto list = showList(title);
  showPage(*this, list, document);
  allShown(list);
}

// One club after the other, and one list at the end.
Resumable<> kes_main::_fbeventi_sport() {
  const auto list = showList("Eventi - Associazioni sportive Varlo");
  const auto progress = _hd.progress("Caricamento dati...");
  auto job = co_await fetch(documents("/InfoVarlo/config/master/sport.json"));
  if (!job->_success) co_return noConnection();
  const Records clubs = maps(job);
  KesList entries;
  entries.Initialize();
  bool whole = true;
  for (const Record& club : clubs) {
    Text page, name;
    if (!club.attempt([&] { page = pageOf(club), name = textOf(club, "Nome"); })) continue;
    job = co_await fetch(eventsOf(page, _tokenfb), kUserAgent);
    whole = job->_success;
    if (!whole) break;
    club.attempt([&] {
      for (const Record& event : Records(page, eventsIn(page, job->_getstring())))
        event.attempt(
            [&] { entries.Add(_sorttype::of(textOf(event, "start_time"), name, event.map())); });
    });
  }
  if (!whole) noConnection();
  Cards(*this, list).showSorted(entries);
  if (whole) allShown(list);
}

Resumable<> kes_main::_fbeventi_apri(Text id) {
  co_await sleep(200);
  if (!id.empty()) _app.OpenURL(deployment::facebook(id));
}

void kes_main::_card_resize(double, double) {
  placeCard(KesPanelWrapper::fromBoxed(KesCommon::Sender(bi())));
}

}  // namespace varlo
