#include "townhost/pizza/pizzerias.h"

#include <vector>

#include "townhost/json_text.h"

namespace town {

namespace {

constexpr const char* days[] = {"mon", "tue", "wed", "thu", "fri", "sat", "sun"};

// "12:00-14:30"; empty where that span of the day is not used.
struct Pizzeria {
  const char *title, *type, *street, *folder, *lastUpdate;
  std::vector<const char*> spans;  // of an open day
  int dayOff;                      // 0 for Monday; -1: none
  const char *offerDays, *offer;   // letters as in `days`, by blanks
  int pages;
};

// clang-format off
const std::vector<Pizzeria>& pizzerias() {
  static const std::vector<Pizzeria> all{
      {"Pizzeria Da Gino", "Pizzeria d'asporto", "Via Roma 27", "DaGino", "03/10/2017", {"11:30-14:00", "17:30-22:00"}, 0, "tue wed thu", "Ogni cinque pizze una margherita in omaggio", 2},
      {"La Lanterna", "Ristorante pizzeria", "Corso Italia 102", "LaLanterna", "21/06/2017", {"", "18:30-23:30"}, 1, "mon sun", "Menù pizza, bibita e caffè a 11 euro", 2},
      {"Pizza al taglio Il Trancio", "Pizza al taglio", "Piazza Garibaldi 8", "IlTrancio", "15/09/2017", {"07:30-10:30", "11:00-15:00", "17:00-21:00"}, 6, "", "", 1},
      {"Antica Pizzeria Vesuvio", "Ristorante pizzeria", "Via dei Mille 5", "Vesuvio", "02/01/2017", {"12:00-14:30", "19:00-24:00"}, 2, "fri sat", "Fritto misto di benvenuto per chi prenota", 2},
      {"Spaccanapoli", "Pizzeria d'asporto e consegne a domicilio", "Viale della Stazione 31", "Spaccanapoli", "28/11/2016", {"18:00-22:30"}, 3, "mon tue wed thu fri sat sun", "Consegna gratuita in tutto il comune", 1},
      {"Mezzaluna", "Pizzeria", "Strada dei Colli 12", "Mezzaluna", "09/05/2017", {}, -1, "", "", 1},
      {"Circolo ricreativo San Giorgio", "Pizzeria sociale", "", "SanGiorgio", "30/04/2017", {"19:00-23:00"}, 4, "sat", "Pizza e partita: 10 euro ai soci", 1},
  };
  return all;
}

const std::vector<BoardLine>& pageLines(int page) {
  static const std::vector<BoardLine> pages[] = {
      {{"Classiche", ""}, {"Margherita", "5,00 €"}, {"Marinara", "4,50 €"}, {"Napoli", "6,00 €"}, {"Prosciutto e funghi", "7,00 €"},
       {"Quattro stagioni", "7,50 €"}, {"Capricciosa", "7,50 €"}, {"Diavola", "6,50 €"}, {"Quattro formaggi", "7,00 €"}, {"Tonno e cipolla", "7,00 €"},
       {"Calzoni", ""}, {"Calzone liscio", "6,50 €"}, {"Calzone farcito", "8,00 €"}},
      {{"Speciali", ""}, {"Bufala e pomodorini", "8,50 €"}, {"Salsiccia e friarielli", "8,50 €"}, {"Ortolana", "8,00 €"}, {"Speck e brie", "8,50 €"}, {"Frutti di mare", "10,00 €"},
       {"Bibite", ""}, {"Acqua mezzo litro", "1,00 €"}, {"Bibita in lattina", "2,00 €"}, {"Birra media", "4,00 €"}},
  };
  return pages[page % 2];
}
// clang-format on

std::string pictureName(int page) { return "listino-" + std::to_string(page + 1) + ".png"; }
std::string picturePath(const Pizzeria& shop, int page) {
  return "/InfoVarlo/pizzaprezzi/master/" + std::string(shop.folder) + "/" + pictureName(page);
}

void writeHours(JsonText& json, const Pizzeria& shop) {
  if (shop.spans.empty()) return;
  json.open("hours");
  for (int day = 0; day < 7; ++day)
    for (std::size_t n = 0; day != shop.dayOff && n < shop.spans.size(); ++n) {
      const std::string span = shop.spans[n];
      if (span.empty()) continue;
      const std::string key = days[day] + ("_" + std::to_string(n + 1));
      json.text(key + "_open", span.substr(0, 5));
      json.text(key + "_close", span.substr(6));
    }
  json.close();
}

void writeOffers(JsonText& json, const Pizzeria& shop) {
  if (!*shop.offer) return;
  json.open("offer");
  for (const char* day : days)
    if (std::string(shop.offerDays).find(day) != std::string::npos) json.text(day, shop.offer);
  json.close();
}

std::string catalogue() {
  JsonText json;
  json.openList();
  for (const Pizzeria& shop : pizzerias()) {
    json.open().text("Type", shop.type).text("Title", shop.title);
    if (*shop.street)
      json.open("location").text("street", shop.street).text("city", "Varlo").close();
    writeHours(json, shop);
    writeOffers(json, shop);
    json.text("Folder", shop.folder).text("LastUpdate", shop.lastUpdate).close();
  }
  return json.closeList().take();
}

std::string contentsOf(const Pizzeria& shop, Gallery& gallery, const std::string& url) {
  JsonText json;
  json.openList();
  for (int page = 0; page < shop.pages; ++page) {
    const std::string path = picturePath(shop, page);
    json.open().text("name", pictureName(page));
    json.text("path", std::string(shop.folder) + "/" + pictureName(page));
    json.number("size", static_cast<std::int64_t>(gallery.file(path).size()));
    json.text("download_url", url + path).text("type", "file").close();
  }
  return json.closeList().take();
}

}  // namespace

void publishPizzerias(Documents& documents, Gallery& gallery, const std::string& url) {
  documents.addFixed("/InfoVarlo/pizzaprezzi/master/menu.json", kJsonType, catalogue());
  for (const Pizzeria& shop : pizzerias()) {
    for (int page = 0; page < shop.pages; ++page)
      gallery.add(documents, picturePath(shop, page),
                  [&shop, page] { return drawBoard(shop.title, pageLines(page), false); });
    documents.add(
        "/repos/InfoVarlo/pizzaprezzi/contents/" + std::string(shop.folder), kJsonType,
        [&shop, &gallery, url](const Occasion&) { return contentsOf(shop, gallery, url); });
  }
}

}  // namespace town
