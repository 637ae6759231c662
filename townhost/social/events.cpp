#include "townhost/social/events.h"

#include "townhost/json_text.h"
#include "townhost/pictures/scene.h"

namespace town {

namespace {

// Days count from today; no end: `endDay` is none. One that recurs comes again so many
// times, so many days apart.
constexpr int none = -1000;
struct Plan {
  const char* page;
  const char *name, *place;  // place: "" for none
  int day;
  const char* time;
  int endDay;
  const char* endTime;
  int cover;  // -1: none
  int times = 1, apart = 7;
};

using Subject = Scene::Subject;
constexpr Scene covers[] = {
    {Subject::Stage, 3, true},  {Subject::Market, 5},       {Subject::Square, 9, true},
    {Subject::Books, 2},        {Subject::Pitch, 4},        {Subject::Bicycle, 6},
    {Subject::River, 8},        {Subject::Market, 7, true}, {Subject::Stage, 1},
    {Subject::Pitch, 11, true},
};
constexpr int coverWidth = 820, coverHeight = 462;

const char *const town = "Comune.di.Varlo", *const live = "live.in.varlo";

// clang-format off
const Plan plans[] = {
    {town, "Letture ad alta voce per i più piccoli", "Biblioteca civica", 0, "16:30", 0, "17:30", 3},
    {town, "Mercatino dell'antiquariato e dell'artigianato", "Piazza Garibaldi", 1, "08:00", 1, "18:00", 1, 3, 7},
    {town, "Consiglio comunale aperto: presentazione del bilancio partecipativo", "Palazzo municipale, sala consiliare", 3, "20:30", none, "", -1},
    {town, "Fiera dei sapori", "Centro storico", 5, "09:00", 6, "22:00", 1},
    {town, "Concerto della Banda Musicale Cittadina", "Teatro Comunale", 8, "21:00", 8, "23:00", 0},
    {town, "Sportello casa: incontro informativo", "", 9, "18:00", 9, "19:30", -1},
    {town, "Polenta in piazza", "Piazza Garibaldi", -2, "12:00", -2, "16:00", 1},
    {live, "Aperitivo in jazz", "Caffè del Borgo", 0, "18:30", 0, "20:30", 8},
    {live, "Mercato contadino", "Piazza della Stazione", 2, "08:30", 2, "13:00", 1, 4, 7},
    {live, "Notte bianca dei negozi", "Corso Italia", 4, "18:00", 5, "01:00", 2},
    {live, "Degustazione guidata dei vini del territorio", "Enoteca Al Ponte", 6, "19:30", 6, "22:00", 7},
    {live, "Cineforum: serata d'autore", "Cinema Aurora", 10, "21:15", none, "", 2},
    {live, "Passeggiata tra i mulini", "Ritrovo al ponte vecchio", -1, "09:00", -1, "12:30", -1},
    {"calcio.varlo", "Calcio Varlo - Borgo San Rocco", "Stadio comunale", 1, "14:30", 1, "16:30", 4},
    {"calcio.varlo", "Allenamenti aperti della scuola calcio", "Campo sportivo", 3, "17:00", 3, "18:30", 4, 3, 7},
    {"volley.varlo", "Torneo giovanile di pallavolo", "Palazzetto dello sport", 5, "09:00", 6, "19:00", 9},
    {"volley.varlo", "Pallavolo Varlo - Volley Montalto", "Palazzetto dello sport", 8, "20:30", none, "", 9},
    {"basket.varlo", "Varlo Basket - Pallacanestro Riviera", "Palestra di via Manzoni", 2, "20:45", 2, "22:30", 9},
    {"basket.varlo", "Minibasket: giornata di prova", "Palestra di via Manzoni", -3, "15:00", -3, "17:00", 9},
    {"nuoto.varlo", "Trofeo di nuoto Città di Varlo", "Piscina comunale", 7, "08:30", 7, "18:00", 6},
    {"ciclistica.varlese", "Pedalata in compagnia", "Piazza Garibaldi", 1, "09:00", 1, "12:00", 5, 4, 7},
    {"ciclistica.varlese", "Cicloraduno dei tre colli", "Parco della Rocca", 12, "07:30", 13, "17:00", 5},
    {"tennis.varlo", "Torneo sociale di doppio misto", "Circolo del tennis", 4, "18:00", 4, "22:00", 9},
    {"ginnastica.aurora", "Saggio di ginnastica artistica", "Palazzetto dello sport", 11, "20:30", 11, "22:30", 2},
    {"podisti.varlo", "Camminata della salute", "Ritrovo in piazza della Stazione", 0, "19:00", 0, "20:30", -1, 5, 2},
};

constexpr struct Club { const char *page, *name; } clubs[] = {
    {"calcio.varlo", "Calcio Varlo"}, {"volley.varlo", "Pallavolo Varlo"},
    {"basket.varlo", "Varlo Basket"}, {"nuoto.varlo", "Nuoto Club Varlo"},
    {"ciclistica.varlese", "Ciclistica Varlese"}, {"tennis.varlo", "Tennis Club Varlo"},
    {"ginnastica.aurora", "Ginnastica Aurora"}, {"podisti.varlo", "Gruppo Podisti Varlo"},
};
// clang-format on

// "2026-11-21T16:30:00+0100"
std::string timeOf(CivilDay day, const std::string& time) {
  const std::string wall = isoDate(day) + "T" + time;
  const auto offset = offsetAt(parseInstant(wall).value_or(0)).count();
  return wall + ":00" + (offset == 120 ? "+0200" : "+0100");
}

std::string idOf(std::size_t plan, int time) {
  return std::to_string(120800000000000 + 1000037 * static_cast<long>(plan) + 101 * time);
}

std::string coverPath(int cover) { return "/immagini/eventi/" + std::to_string(cover) + ".png"; }

void writeTimes(JsonText& json, const Plan& plan, CivilDay today, int shift) {
  const auto day = [&](int n) { return today + std::chrono::days(n + shift); };
  json.text("start_time", timeOf(day(plan.day), plan.time));
  if (plan.endDay != none) json.text("end_time", timeOf(day(plan.endDay), plan.endTime));
}

void writeEvent(JsonText& json, std::size_t number, CivilDay today, const std::string& url) {
  const Plan& plan = plans[number];
  json.open().text("name", plan.name).flag("can_guests_invite", true);
  json.number("attending_count", 12 + 7 * static_cast<int>(number % 9));
  json.number("interested_count", 40 + 13 * static_cast<int>(number % 11));
  writeTimes(json, plan, today, 0);
  if (plan.cover >= 0) {
    json.open("cover").number("offset_x", 0).number("offset_y", 0);
    json.text("source", url + coverPath(plan.cover)).close();
  }
  if (*plan.place) json.open("place").text("name", plan.place).close();
  if (plan.times > 1) {
    json.openList("event_times");
    // As the network gives them, in no order.
    for (int i = plan.times - 1; i >= 0; --i) {
      json.open().text("id", idOf(number, i + 1));
      writeTimes(json, plan, today, i * plan.apart);
      json.close();
    }
    json.closeList();
  }
  json.text("id", idOf(number, 0)).close();
}

std::string eventsOf(const std::string& page, CivilDay today, const std::string& url) {
  JsonText json;
  json.open().openList("data");
  for (std::size_t i = 0; i < std::size(plans); ++i)
    if (plans[i].page == page) writeEvent(json, i, today, url);
  return json.closeList().close().take();
}

std::string clubsDocument() {
  JsonText json;
  json.openList();
  for (const Club& club : clubs) json.open().text("Nome", club.name).text("URL", club.page).close();
  return json.closeList().take();
}

}  // namespace

void publishEvents(Documents& documents, Gallery& gallery, const std::string& url) {
  documents.addFixed("/InfoVarlo/config/master/sport.json", kJsonType, clubsDocument());
  const auto publish = [&](const std::string& page) {
    documents.add("/v2.9/" + page + "/events", kJsonType, [page, url](const Occasion& occasion) {
      return eventsOf(page, dayAt(occasion.now), url);
    });
  };
  publish(town);
  publish(live);
  for (const Club& club : clubs) publish(club.page);
  for (int i = 0; i < static_cast<int>(std::size(covers)); ++i)
    gallery.add(documents, coverPath(i),
                [scene = covers[i]] { return paint(scene, coverWidth, coverHeight); });
}

}  // namespace town
