#include "checker/town_check.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>
#include <optional>
#include <set>

#include "checker/shape_check.h"

namespace check {

namespace {

using namespace std::chrono;

constexpr int kDaysAhead = 60;
constexpr double kTownRadius = 15;  // km from the middle of the pharmacies

std::string written(sys_days day) {
  const year_month_day d(day);
  char text[16];
  std::snprintf(text, sizeof text, "%02u/%02u/%04d", static_cast<unsigned>(d.day()),
                static_cast<unsigned>(d.month()), static_cast<int>(d.year()));
  return text;
}

Words written(sys_days from, sys_days to) {
  if (from == to) return {"il " + written(from), "on " + written(from)};
  return {"dal " + written(from) + " al " + written(to),
          "from " + written(from) + " to " + written(to)};
}

struct Place {
  double latitude, longitude;
};

double kilometres(Place a, Place b) {
  constexpr double kDegree = 111.2;
  const double north = (a.latitude - b.latitude) * kDegree;
  const double east =
      (a.longitude - b.longitude) * kDegree * std::cos(a.latitude * std::numbers::pi / 180);
  return std::hypot(north, east);
}

// Names that are kept free for examples: asking them tells nothing.
bool isNobodys(const std::string& url) {
  const auto begin = url.find("://") + 3;
  const auto host = url.substr(begin, url.find_first_of(":/?#", begin) - begin);
  for (const char* name : {".example", ".invalid", ".test"})
    if (host.ends_with(name)) return true;
  return false;
}

class Town {
 public:
  Town(Source& source, const TownOptions& options) : source_(source), options_(options) {}

  TownReport check() {
    for (const DocumentShape& document : documents()) {
      auto& json = json_[document.path];
      json = readJson(document.path, document.without);
      if (json) checkShape(document.path, **json, document.list, *document.shape, findings());
    }
    checkPages();
    findTheTown();
    checkPharmacies();
    checkDirectory();
    checkWaste();
    checkRestaurants();
    checkSchools();
    checkMaps();
    checkServices();
    if (options_.links) checkLinks();
    return std::move(report_);
  }

 private:
  using Document = std::optional<std::unique_ptr<rapidjson::Document>>;

  Findings& findings() { return report_.findings; }

  void add(const std::string& document, const std::string& record, const std::string& field,
           Words found, Words expected, Words citizen) {
    findings().push_back(
        {document, record, field, std::move(found), std::move(expected), std::move(citizen)});
  }

  // The document's text, or nothing and a finding.
  std::optional<std::string> readText(const std::string& path, const Words& without) {
    auto answer = source_.read(path);
    if (!answer.good()) {
      add(path, "", "",
          {"non si legge (" + answer.fault.it + ")", "it can't be read (" + answer.fault.en + ")"},
          {"il documento", "the document"}, without);
      return std::nullopt;
    }
    ++report_.documents;
    return std::move(answer.body);
  }

  Document parsed(const std::string& path, const std::string& text, const Words& without) {
    auto document = std::make_unique<rapidjson::Document>();
    Words fault;
    if (parseJson(text, *document, fault)) return document;
    add(path, "", "", fault, {"un documento JSON, in UTF-8", "a JSON document, in UTF-8"}, without);
    return std::nullopt;
  }

  Document readJson(const std::string& path, const Words& without) {
    const auto text = readText(path, without);
    return text ? parsed(path, *text, without) : std::nullopt;
  }

  // The records of a list that was read, those that are objects; 1 is the first.
  template <class See>
  void eachOf(const char* path, See see) {
    const auto& document = json_[path];
    if (!document || !(*document)->IsArray()) return;
    int number = 0;
    for (const Json& record : (*document)->GetArray()) {
      ++number;
      if (record.IsObject()) see(record, number);
    }
  }

  static std::string named(int number, const std::string& name) {
    return std::to_string(number) + (name.empty() ? "" : " (" + name + ")");
  }

  void link(const std::string& document, const std::string& record, const std::string& field,
            const std::string& url) {
    if (url.starts_with("http://") || url.starts_with("https://"))
      links_.push_back({document, record, field, url});
  }

  // --- Pages that are no JSON.

  void checkPages() {
    const Words blank{"la pagina resta vuota", "the page stays empty"};
    for (const char* path : {kHome, kAbout}) {
      const auto text = readText(path, blank);
      if (!text) continue;
      if (text->find('<') == text->npos)
        add(path, "", "", {"non contiene HTML", "it holds no HTML"},
            {"una pagina HTML", "an HTML page"}, blank);
      linksOf(path, *text);
    }
    const Words silent{"nessuna nuova versione viene annunciata", "no new version is announced"};
    if (const auto text = readText(kVersion, silent)) {
      double number = 0;
      // The app takes a line end along.
      std::string trimmed = *text;
      while (!trimmed.empty() && std::isspace(static_cast<unsigned char>(trimmed.back())))
        trimmed.pop_back();
      Json plain(rapidjson::StringRef(trimmed.data(), trimmed.size()));
      if (!readNumber(plain, number))
        add(kVersion, "", "", describe(&plain), {"un numero come 1.0", "a number as 1.0"}, silent);
    }
  }

  void linksOf(const std::string& path, const std::string& html) {
    for (std::size_t at = 0; (at = html.find("href=\"", at)) != html.npos;) {
      at += 6;
      const auto end = html.find('"', at);
      if (end == html.npos) return;
      auto url = html.substr(at, end - at);
      for (std::size_t amp = 0; (amp = url.find("&amp;", amp)) != url.npos;) url.erase(++amp, 4);
      link(path, "", "href", url);
    }
  }

  // --- Places.

  // The town is where half of its pharmacies are.
  void findTheTown() {
    std::vector<double> latitudes, longitudes;
    eachOf(kPharmacies, [&](const Json& pharmacy, int) {
      const Json* a = member(pharmacy, "Latitudine");
      const Json* b = member(pharmacy, "Longitudine");
      if (!a || !b || !a->IsNumber() || !b->IsNumber()) return;
      latitudes.push_back(a->GetDouble());
      longitudes.push_back(b->GetDouble());
    });
    if (latitudes.size() < 3) return;
    const auto middle = [](std::vector<double>& v) {
      std::nth_element(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(v.size() / 2), v.end());
      return v[v.size() / 2];
    };
    town_ = Place{middle(latitudes), middle(longitudes)};
  }

  void checkPlace(const std::string& document, const std::string& record, const Json& holder,
                  const std::string& latitude, const std::string& longitude, bool texts) {
    const Json* a = member(holder, latitude);
    const Json* b = member(holder, longitude);
    if (!town_ || !a || !b) return;
    Place place{};
    if (!readNumber(*a, place.latitude) || !readNumber(*b, place.longitude)) return;
    if (!texts && (!a->IsNumber() || !b->IsNumber())) return;
    if (std::abs(place.latitude) > 90 || std::abs(place.longitude) > 180) return;
    const double far = kilometres(*town_, place);
    if (far <= kTownRadius) return;
    const auto km = std::to_string(static_cast<long>(std::lround(far)));
    add(document, record, latitude + ", " + longitude,
        {"è a " + km + " km dal paese", "it is " + km + " km from the town"},
        {"un punto del paese; latitudine e longitudine sono scambiate?",
         "a place in the town; are latitude and longitude exchanged?"},
        {"la mappa mostra un altro luogo", "the map shows another place"});
  }

  // --- Pharmacies and their turns.

  void checkPharmacies() {
    std::set<std::string> keys;
    bool sure = true;  // which key is whose
    eachOf(kPharmacies, [&](const Json& pharmacy, int number) {
      const auto name = named(number, textOf(pharmacy, "Farmacia"));
      const auto key = textOf(pharmacy, "Chiave");
      if (!key.empty() && !keys.insert(key).second) {
        sure = false;
        add(kPharmacies, name, "Chiave",
            {"la chiave «" + key + "» c'è già", "the key \"" + key + "\" is there already"},
            {"una chiave diversa per ogni farmacia", "a key of its own for each pharmacy"},
            {"al suo posto compare l'altra farmacia", "the other pharmacy shows in its place"});
      }
      checkPlace(kPharmacies, name, pharmacy, "Latitudine", "Longitudine", false);
    });
    if (!json_[kTurns] || !(*json_[kTurns])->IsArray()) return;
    std::set<sys_days> covered;
    eachOf(kTurns, [&](const Json& turn, int number) {
      // What is out of its range, and has its finding, is no day.
      const auto part = [&](const char* name, unsigned most) {
        const Json* value = member(turn, name);
        const double n = value && value->IsNumber() ? value->GetDouble() : 0;
        return n > 0 && n <= most ? static_cast<unsigned>(n) : 0;
      };
      const year_month_day day{year(static_cast<int>(part("Anno", 2999))), month(part("Mese", 12)),
                               std::chrono::day(part("Giorno", 31))};
      if (day.ok()) covered.insert(sys_days(day));
      for (const char* field : {"Turno1", "Turno2"}) {
        const auto key = textOf(turn, field);
        // Each key that is nobody's once: mended in one place it is mended in all.
        if (!sure || key.empty() || keys.empty() || !keys.insert(key).second) continue;
        add(kTurns, named(number, day.ok() ? written(sys_days(day)) : ""), field,
            {"nessuna farmacia ha la chiave «" + key + "»",
             "no pharmacy has the key \"" + key + "\""},
            {"una «Chiave» di farmacie.json", "a \"Chiave\" of farmacie.json"},
            {"quel turno non compare", "that turn does not show"});
      }
    });
    eachGap(
        [&](sys_days d) { return covered.count(d) > 0; }, options_.today,
        options_.today + days(kDaysAhead - 1),
        [&](sys_days from, sys_days to) {
          const auto when = written(from, to);
          add(kTurns, "", "", {"nessun turno " + when.it, "no turn " + when.en},
              {"un turno per ogni giorno dei prossimi 60", "a turn for each of the next 60 days"},
              {"in quei giorni nessuna farmacia compare", "no pharmacy shows on those days"});
        });
  }

  template <class Covered, class Gap>
  static void eachGap(Covered covered, sys_days from, sys_days to, Gap gap) {
    for (sys_days d = from; d <= to; d += days(1)) {
      if (covered(d)) continue;
      sys_days end = d;
      while (end < to && !covered(end + days(1))) end += days(1);
      gap(d, end);
      d = end;
    }
  }

  // --- The directory.

  void checkEntity(const std::string& path, const std::string& name, const Json& entity) {
    for (const char* section : {"Adresses", "Addresses"}) {
      const Json* addresses = member(entity, section);
      if (!addresses || !addresses->IsArray()) continue;
      int number = 0;
      for (const Json& address : addresses->GetArray())
        checkPlace(path, name + " › " + section + " › " + named(++number, textOf(address, "Value")),
                   address, "Latitude", "Longitude", false);
    }
  }

  // A document that a record names; false for a name that leads out of the folder.
  bool childPath(const char* parent, const std::string& record, const std::string& name,
                 const std::string& folder, std::string& path) {
    if (name.empty()) return false;
    if (name.find_first_of("/\\?#%") != name.npos || name.starts_with('.')) {
      add(parent, record, "Link", {"è il testo «" + name + "»", "it is the text \"" + name + "\""},
          {"il nome di un documento, senza cartelle e senza «.json»",
           "the name of a document, without folders and without \".json\""},
          {"la riga non si apre", "the row does not open"});
      return false;
    }
    path = folder + name + ".json";
    return true;
  }

  void checkDirectory() {
    eachOf(kCategories, [&](const Json& category, int number) {
      std::string path;
      const auto name = named(number, textOf(category, "Nome"));
      if (!childPath(kCategories, name, textOf(category, "Link"), kDirectory, path)) return;
      const auto document =
          readJson(path, {"la categoria «" + textOf(category, "Nome") + "» resta vuota",
                          "the category \"" + textOf(category, "Nome") + "\" stays empty"});
      if (!document) return;
      checkShape(path, **document, true, entity(), findings());
      if (!(*document)->IsArray()) return;
      int at = 0;
      for (const Json& each : (*document)->GetArray())
        checkEntity(path, named(++at, textOf(each, "Name")), each);
    });
  }

  // --- The waste collection.

  void checkWaste() {
    const auto& config = json_[kWaste];
    const Json* zones = config ? member(**config, "ZONE") : nullptr;
    if (zones && zones->IsObject())
      eachOf(kStreets, [&](const Json& street, int number) {
        const auto zone = textOf(street, "ZONA");
        if (zone.empty() || member(*zones, zone)) return;
        add(kStreets, named(number, textOf(street, "NOME")), "ZONA",
            {"la zona «" + zone + "» non c'è", "there is no zone \"" + zone + "\""},
            {"una delle zone di config.json", "one of the zones of config.json"},
            {"chi sceglie la via trova la pagina vuota",
             "who chooses the street finds an empty page"});
      });
    if (!config) return;
    if (const Json* entry = member(**config, "PIATTAFORMA"))
      checkEntity(kWaste, "PIATTAFORMA", *entry);
    if (const Json* entry = member(**config, "LINK"))
      link(kWaste, "LINK", "Link", textOf(*entry, "Link"));
    if (const Json* entry = member(**config, "MAPPA")) checkMap(kWaste, "MAPPA", *entry);
  }

  // --- The restaurants.

  void checkRestaurants() {
    const char* path = "/InfoVarlo/config/master/menudelgiorno.json";
    eachOf(path, [&](const Json& restaurant, int number) {
      if (textOf(restaurant, "Type") == "Facebook" && textOf(restaurant, "URL").empty())
        add(path, named(number, textOf(restaurant, "Nome")), "URL",
            describe(member(restaurant, "URL")),
            {"il nome della pagina, perché «Type» è «Facebook»",
             "the name of the page, as \"Type\" is \"Facebook\""},
            {"il menu non si apre", "the menu does not open"});
    });
  }

  // --- The school menus.

  void checkSchools() {
    eachOf(kSchools, [&](const Json& school, int number) {
      std::string path;
      const auto name = named(number, textOf(school, "Nome"));
      if (!childPath(kSchools, name, textOf(school, "Link"), kSchoolFolder, path)) return;
      const auto document =
          readJson(path, {"il menu della scuola resta vuoto", "the school's menu stays empty"});
      if (!document) return;
      checkShape(path, **document, false, schoolMenu(), findings());
      checkPeriods(path, **document);
    });
  }

  // Days of school that no period covers. The last day of a period is not one of it.
  void checkPeriods(const std::string& path, const Json& document) {
    const Json* menu = member(document, "menu");
    if (!menu || !menu->IsArray()) return;
    std::vector<std::pair<sys_days, sys_days>> periods;
    int number = 0;
    for (const Json& period : menu->GetArray()) {
      ++number;
      Day a, b;
      // One whose dates can't be read has its finding already: what it covers is not known.
      if (!readDate(textOf(period, "valid_from"), a) || !readDate(textOf(period, "valid_to"), b))
        return;
      const auto from = dayOf(a), to = dayOf(b);
      if (to <= from)
        add(path, "menu › " + named(number, written(from)), "valid_to",
            {"finisce il " + written(to), "it ends on " + written(to)},
            {"un giorno dopo «valid_from»", "a day after \"valid_from\""},
            {"il periodo non vale mai", "the period is never valid"});
      else
        periods.emplace_back(from, to);
    }
    const auto covered = [&](sys_days d) {
      return std::any_of(periods.begin(), periods.end(),
                         [&](const auto& p) { return d >= p.first && d < p.second; });
    };
    const auto isSchoolDay = [](sys_days d) {
      const auto m = year_month_day(d).month();
      return weekday(d) != Saturday && weekday(d) != Sunday && m != July && m != August;
    };
    eachGap(covered, options_.today, options_.today + days(kDaysAhead - 1),
            [&](sys_days from, sys_days to) {
              bool missed = false;
              for (sys_days d = from; d <= to; d += days(1)) missed = missed || isSchoolDay(d);
              if (!missed) return;
              const auto when = written(from, to);
              add(path, "", "menu",
                  {"nessun periodo vale " + when.it, "no period is valid " + when.en},
                  {"periodi senza buchi; l'ultimo giorno, «valid_to», non è compreso",
                   "periods without holes; the last day, \"valid_to\", is not within"},
                  {"in quei giorni si legge «NON CARICATO»", "those days read \"NON CARICATO\""});
            });
  }

  static sys_days dayOf(const Day& d) {
    return year(d.year) / month(static_cast<unsigned>(d.month)) /
           std::chrono::day(static_cast<unsigned>(d.day));
  }

  // --- Maps and their data.

  void checkMaps() {
    eachOf(kMaps, [&](const Json& map, int number) {
      checkMap(kMaps, named(number, textOf(map, "Nome")), map);
    });
  }

  void checkMap(const std::string& document, const std::string& record, const Json& map) {
    const auto url = textOf(map, "URL");
    const bool own = url.starts_with('/');
    if (!own && !url.starts_with("http://") && !url.starts_with("https://")) return;
    if (!mapsRead_.insert(url).second) return;
    if (!own && isNobodys(url)) {
      ++report_.unasked;
      return;
    }
    const Words empty{"la mappa resta senza segni", "the map stays without pins"};
    const auto answer = own ? source_.read(url) : source_.ask(url, true);
    if (!answer.good()) {
      add(document, record, "URL",
          {"non risponde (" + answer.fault.it + ")",
           "it does not answer (" + answer.fault.en + ")"},
          {"un documento che risponde", "a document that answers"}, empty);
      return;
    }
    ++report_.documents;
    const auto data = parsed(url, answer.body, empty);
    if (!data) return;
    if (!(*data)->IsArray()) {
      add(url, "", "", describe(data->get()),
          {"un elenco tra quadre [ ]", "a list in brackets [ ]"}, empty);
      return;
    }
    int number = 0;
    for (const Json& row : (*data)->GetArray()) checkRow(url, ++number, row, map);
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
        add(url, name, field, describe(value),
            {"gradi con il punto, come 45.2379", "degrees with a point, as 45.2379"}, lost);
    }
    if (!title.empty() && !member(row, title))
      add(url, name, title, describe(nullptr), {"un testo", "a text"},
          {"il segno resta senza nome", "the pin has no name"});
    checkPlace(url, name, row, latitude, longitude, true);
  }

  // --- What is served besides documents, where it is.

  void checkServices() {
    const Words news{"le notizie restano vuote", "the news stay empty"};
    const std::string newsPath = "/varlo/newsvarlo";
    if (const auto document = service(newsPath, news)) {
      const Json* set = member(**document, "NewDataSet");
      const Json* table = set ? member(*set, "Table") : nullptr;
      if (!table || !table->IsArray())
        add(newsPath, "", "NewDataSet › Table", describe(table),
            {"un elenco tra quadre [ ]", "a list in brackets [ ]"}, news);
      else
        checkShape(newsPath, *table, true, newsItem(), findings());
    }
    const std::string issues = "/repos/comune-varlo/newsletter/contents/archivio?ref=master";
    const Words noIssues{"la newsletter resta vuota", "the newsletter stays empty"};
    if (const auto document = service(issues, noIssues))
      checkShape(issues, **document, true, newsletterIssue(), findings());
    const std::string acts = "/varlo/storicoattidettjson?oggetto=";
    const Words noActs{"gli atti restano vuoti", "the acts stay empty"};
    if (const auto document = service(acts, noActs))
      checkShape(acts, **document, true, act(), findings());
    for (const char* page : {"Comune.di.Varlo", "live.in.varlo"}) checkEvents(page);
    eachOf("/InfoVarlo/config/master/sport.json",
           [&](const Json& club, int) { checkEvents(textOf(club, "URL")); });
  }

  // Without the token, which only the app has: a host that wants it serves nothing here.
  void checkEvents(const std::string& page) {
    if (page.empty() || page.find_first_of("/?#%\\ ") != page.npos) return;
    const std::string path = "/v2.9/" + page + "/events";
    const Words none{"gli eventi di «" + page + "» non compaiono",
                     "the events of \"" + page + "\" do not show"};
    const auto document = service(path, none);
    if (!document) return;
    const Json* data = member(**document, "data");
    if (data && data->IsArray())
      checkShape(path, *data, true, event(), findings());
    else
      add(path, "", "data", describe(data), {"un elenco tra quadre [ ]", "a list in brackets [ ]"},
          none);
  }

  // Nothing, and no finding, where this address does not serve it.
  Document service(const std::string& path, const Words& without) {
    const auto answer = source_.read(path);
    const bool elsewhere = answer.status == 400 || answer.status == 401 || answer.status == 403 ||
                           answer.status == 404 || answer.notHere;
    if (elsewhere) return std::nullopt;
    if (!answer.good()) {
      add(path, "", "",
          {"non risponde (" + answer.fault.it + ")",
           "it does not answer (" + answer.fault.en + ")"},
          {"una risposta", "an answer"}, without);
      return std::nullopt;
    }
    ++report_.documents;
    return parsed(path, answer.body, without);
  }

  // --- Links.

  void checkLinks() {
    std::map<std::string, Words> faults;
    for (const auto& each : links_) {
      if (isNobodys(each.url)) {
        ++report_.unasked;
        continue;
      }
      if (!faults.count(each.url)) {
        const auto answer = source_.ask(each.url, false);
        // Who wants a log-in is there all the same.
        const bool there = answer.good() || answer.status == 401 || answer.status == 403;
        faults[each.url] = there ? Words() : answer.fault;
      }
      if (const Words& fault = faults[each.url]; !fault.it.empty())
        add(each.document, each.record, each.field,
            {"«" + each.url + "» non risponde (" + fault.it + ")",
             "\"" + each.url + "\" does not answer (" + fault.en + ")"},
            {"un indirizzo che risponde", "an address that answers"},
            {"il collegamento si apre su un errore", "the link opens on an error"});
    }
  }

  struct Link {
    std::string document, record, field, url;
  };

  Source& source_;
  const TownOptions& options_;
  TownReport report_;
  std::map<std::string, Document> json_;
  std::optional<Place> town_;
  std::set<std::string> mapsRead_;
  std::vector<Link> links_;
};

}  // namespace

TownReport checkTown(Source& source, const TownOptions& options) {
  return Town(source, options).check();
}

}  // namespace check
