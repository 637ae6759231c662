#include "checker/town_check.h"

#include <cctype>
#include <cmath>
#include <set>

#include "checker/calendar_check.h"
#include "checker/places.h"
#include "checker/services_check.h"
#include "checker/shape_check.h"
#include "checker/town_reader.h"

namespace check {

namespace {

// What each document says beyond its shape, and the documents that others name.
class Town {
 public:
  Town(TownReader& town, std::chrono::sys_days today) : town_(town), today_(today), places_(town) {}

  void check() {
    checkPages();
    checkPharmacies();
    checkDirectory();
    checkWaste();
    checkRestaurants();
    checkSchools();
    town_.eachOf(kMaps, [&](const Json& map, int number) {
      checkMap(kMaps, named(number, textOf(map, "Nome")), map);
    });
    checkServices(town_);
  }

 private:
  // --- Pages that are no JSON.

  void checkPages() {
    const Words blank{"la pagina resta vuota", "the page stays empty"};
    for (const char* path : {kHome, kAbout}) {
      const auto text = town_.readText(path, blank);
      if (!text) continue;
      if (text->find('<') == text->npos)
        town_.add({path, "", ""}, {"non contiene HTML", "it holds no HTML"},
                  {"una pagina HTML", "an HTML page"}, blank);
      linksOf(path, *text);
    }
    const Words silent{"nessuna nuova versione viene annunciata", "no new version is announced"};
    if (const auto text = town_.readText(kVersion, silent)) {
      double number = 0;
      // The app takes a line end along.
      std::string trimmed = *text;
      while (!trimmed.empty() && std::isspace(static_cast<unsigned char>(trimmed.back())))
        trimmed.pop_back();
      const Json plain(rapidjson::StringRef(trimmed.data(), trimmed.size()));
      if (!readNumber(plain, number))
        town_.add({kVersion, "", ""}, describe(&plain), {"un numero come 1.0", "a number as 1.0"},
                  silent);
    }
  }

  void linksOf(const std::string& path, const std::string& html) {
    constexpr std::string_view kBefore = "href=\"";
    for (std::size_t at = 0; (at = html.find(kBefore, at)) != html.npos;) {
      at += kBefore.size();
      const auto end = html.find('"', at);
      if (end == html.npos) return;
      auto url = html.substr(at, end - at);
      for (std::size_t amp = 0; (amp = url.find("&amp;", amp)) != url.npos;) url.erase(++amp, 4);
      town_.link({path, "", "href"}, url);
    }
  }

  // --- Pharmacies and their turns.

  void checkPharmacies() {
    town_.eachOf(kPharmacies, [&](const Json& pharmacy, int number) {
      places_.check({kPharmacies, named(number, textOf(pharmacy, "Farmacia")), ""}, pharmacy,
                    "Latitudine", "Longitudine", false);
    });
    checkTurns(town_, today_);
  }

  // --- The directory.

  void checkEntity(const std::string& path, const std::string& name, const Json& entity) {
    for (const char* section : {"Adresses", "Addresses"}) {
      const Json* addresses = member(entity, section);
      if (!addresses || !addresses->IsArray()) continue;
      int number = 0;
      for (const Json& address : addresses->GetArray())
        places_.check(
            {path, name + " › " + section + " › " + named(++number, textOf(address, "Value")), ""},
            address, "Latitude", "Longitude", false);
    }
  }

  // The document that a record names; "" for none, and for a name that leads out of the folder.
  std::string childPath(const char* parent, const std::string& record, const std::string& name,
                        const std::string& folder) {
    if (name.empty()) return "";
    if (name.find_first_of("/\\?#%") == name.npos && !name.starts_with('.'))
      return folder + name + ".json";
    town_.add({parent, record, "Link"},
              {"è il testo «" + name + "»", "it is the text \"" + name + "\""},
              {"il nome di un documento, senza cartelle e senza «.json»",
               "the name of a document, without folders and without \".json\""},
              {"la riga non si apre", "the row does not open"});
    return "";
  }

  void checkDirectory() {
    town_.eachOf(kCategories, [&](const Json& category, int number) {
      const auto name = textOf(category, "Nome");
      const auto path =
          childPath(kCategories, named(number, name), textOf(category, "Link"), kDirectory);
      if (path.empty()) return;
      const auto document = town_.readJson(path, {"la categoria «" + name + "» resta vuota",
                                                  "the category \"" + name + "\" stays empty"});
      if (!document) return;
      checkShape(path, *document, true, entity(), town_.findings());
      if (!document->IsArray()) return;
      int at = 0;
      for (const Json& each : document->GetArray())
        checkEntity(path, named(++at, textOf(each, "Name")), each);
    });
  }

  // --- The waste collection.

  void checkWaste() {
    const Json* config = town_.document(kWaste);
    if (!config) return;
    checkZones(member(*config, "ZONE"));
    if (const Json* entry = member(*config, "PIATTAFORMA"))
      checkEntity(kWaste, "PIATTAFORMA", *entry);
    if (const Json* entry = member(*config, "LINK"))
      town_.link({kWaste, "LINK", "Link"}, textOf(*entry, "Link"));
    if (const Json* entry = member(*config, "MAPPA")) checkMap(kWaste, "MAPPA", *entry);
  }

  void checkZones(const Json* zones) {
    if (!zones || !zones->IsObject()) return;
    town_.eachOf(kStreets, [&](const Json& street, int number) {
      const auto zone = textOf(street, "ZONA");
      if (zone.empty() || member(*zones, zone)) return;
      town_.add({kStreets, named(number, textOf(street, "NOME")), "ZONA"},
                {"la zona «" + zone + "» non c'è", "there is no zone \"" + zone + "\""},
                {"una delle zone di config.json", "one of the zones of config.json"},
                {"chi sceglie la via trova la pagina vuota",
                 "who chooses the street finds an empty page"});
    });
  }

  // --- The restaurants.

  void checkRestaurants() {
    town_.eachOf(kRestaurants, [&](const Json& restaurant, int number) {
      if (textOf(restaurant, "Type") == "Facebook" && textOf(restaurant, "URL").empty())
        town_.add({kRestaurants, named(number, textOf(restaurant, "Nome")), "URL"},
                  describe(member(restaurant, "URL")),
                  {"il nome della pagina, perché «Type» è «Facebook»",
                   "the name of the page, as \"Type\" is \"Facebook\""},
                  {"il menu non si apre", "the menu does not open"});
    });
  }

  // --- The school menus.

  void checkSchools() {
    town_.eachOf(kSchools, [&](const Json& school, int number) {
      const auto path = childPath(kSchools, named(number, textOf(school, "Nome")),
                                  textOf(school, "Link"), kSchoolFolder);
      if (path.empty()) return;
      const auto document = town_.readJson(
          path, {"il menu della scuola resta vuoto", "the school's menu stays empty"});
      if (!document) return;
      checkShape(path, *document, false, schoolMenu(), town_.findings());
      checkPeriods(town_, path, *document, today_);
    });
  }

  // --- Maps and their data.

  void checkMap(const std::string& document, const std::string& record, const Json& map) {
    const auto url = textOf(map, "URL");
    if (!url.starts_with('/') && !isWeb(url)) return;
    if (!mapsRead_.insert(url).second) return;
    const Words empty{"la mappa resta senza segni", "the map stays without pins"};
    const auto data = town_.readLinked(url, {document, record, "URL"}, empty);
    if (!data) return;
    if (!data->IsArray()) {
      town_.add({url, "", ""}, describe(data.get()), kAList, empty);
      return;
    }
    int number = 0;
    for (const Json& row : data->GetArray()) checkRow(url, ++number, row, map);
  }

  void checkRow(const std::string& url, int number, const Json& row, const Json& map) {
    const Words lost{"quel segno non compare", "that pin does not show"};
    const auto title = textOf(map, "TITLE"), latitude = textOf(map, "LAT"),
               longitude = textOf(map, "LON");
    const auto name = named(number, textOf(row, title));
    for (const auto& field : {latitude, longitude}) {
      if (field.empty()) continue;
      const Json* value = member(row, field);
      double degrees = 0;
      const double most = field == latitude ? 90 : 180;
      if (!value || !readNumber(*value, degrees) || std::abs(degrees) > most)
        town_.add({url, name, field}, describe(value),
                  {"gradi con il punto, come 45.2379", "degrees with a point, as 45.2379"}, lost);
    }
    if (!title.empty() && !member(row, title))
      town_.add({url, name, title}, describe(nullptr), {"un testo", "a text"},
                {"il segno resta senza nome", "the pin has no name"});
    places_.check({url, name, ""}, row, latitude, longitude, true);
  }

  TownReader& town_;
  const std::chrono::sys_days today_;
  Places places_;
  std::set<std::string> mapsRead_;
};

}  // namespace

TownReport checkTown(Source& source, const TownOptions& options) {
  TownReport report;
  TownReader reader(source, report);
  reader.readAll();
  Town(reader, options.today).check();
  if (options.links) reader.checkLinks();
  return report;
}

}  // namespace check
