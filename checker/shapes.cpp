#include "checker/shapes.h"

namespace check {

namespace {

// The page's bar between its buttons, in its small letters; the lines of an entity's row.
constexpr Box kTitle{200, 13, 2};
constexpr Box kRowTitle{268, 13, 1};
constexpr Box kRowValue{268, 12, 2};
constexpr Box kRowNote{268, 12, 2};
constexpr Box kButton{288, 16, 1};

Field text(std::string name, Words citizen, const Box* box = nullptr) {
  Field f{std::move(name), Kind::Text, true, std::move(citizen)};
  f.box = box;
  f.mayBeEmpty = false;
  return f;
}
Field optionalText(std::string name, Words citizen, const Box* box = nullptr) {
  Field f{std::move(name), Kind::Plain, false, std::move(citizen)};
  f.box = box;
  return f;
}
Field number(std::string name, double low, double high, Words citizen, bool required = true) {
  Field f{std::move(name), Kind::Number, required, std::move(citizen)};
  f.low = low;
  f.high = high;
  return f;
}
Field one(std::string name, Kind kind, Words citizen, bool required = true) {
  Field f{std::move(name), kind, required, std::move(citizen)};
  f.mayBeEmpty = false;
  return f;
}
Field inner(std::string name, Kind kind, const Shape& shape, Words citizen, bool required = false) {
  Field f{std::move(name), kind, required, std::move(citizen)};
  f.inner = &shape;
  return f;
}

const Words kNoPin{"il tocco sull'indirizzo non apre la mappa",
                   "a tap on the address opens no map"};

const Shape& pharmacy() {
  static const Shape shape{
      {"la farmacia", "the pharmacy"},
      "Farmacia",
      {text("Chiave", {"la farmacia non compare nei turni", "the pharmacy is in no turn"}),
       text("Farmacia", {"la riga dei turni resta senza nome", "its row has no name"}, &kTitle),
       text("Citta", {"l'indirizzo resta senza città", "the address has no town"}),
       text("Telefono", {"non si può telefonare alla farmacia", "nobody can call the pharmacy"}),
       text("Indirizzo", {"manca la via", "the street is missing"}, &kRowValue),
       one("Latitudine", Kind::Latitude, kNoPin), one("Longitudine", Kind::Longitude, kNoPin)}};
  return shape;
}

const Shape& turn() {
  const Words lost{"quel giorno nessuna farmacia compare", "no pharmacy shows on that day"};
  static const Shape shape{
      {"il turno", "the turn"},
      "",
      {number("Giorno", 1, 31, lost), number("Mese", 1, 12, lost), number("Anno", 2000, 2999, lost),
       text("Turno1", lost),
       Field{"Turno2",
             Kind::Text,
             true,
             {"il turno diurno non compare", "the turn of the day does not show"}}}};
  return shape;
}

const Shape& category() {
  static const Shape shape{
      {"la categoria", "the category"},
      "Nome",
      {text("Nome", {"la riga di InfoCittà non compare", "its row does not show"}, &kTitle),
       text("Link", {"la categoria non si apre", "the category does not open"})}};
  return shape;
}

const Shape& contact() {
  static const Shape shape{
      {"il contatto", "the contact"},
      "Title",
      {optionalText("Title", {"la riga non ha titolo", "the row has no title"}, &kRowTitle),
       optionalText("Value", {"il contatto non si legge", "the contact can't be read"}, &kRowValue),
       optionalText("Note", {"la nota non si legge", "the note can't be read"},
                    &kRowNote),  // A name, say, has none.
       number("Type", 0, 1,
              {"il tocco non telefona e non scrive", "a tap neither calls nor writes"}, false)}};
  return shape;
}

const Shape& address() {
  static const Shape shape{
      {"l'indirizzo", "the address"},
      "Value",
      {optionalText("Title", {"la riga non ha titolo", "the row has no title"}, &kRowTitle),
       optionalText("Value", {"l'indirizzo non si legge", "the address can't be read"}, &kRowValue),
       optionalText("Note", {"la nota non si legge", "the note can't be read"}, &kRowNote),
       // A post box has no place.
       one("Latitude", Kind::Latitude, kNoPin, false),
       one("Longitude", Kind::Longitude, kNoPin, false)}};
  return shape;
}

const Shape& calendar() {
  static const Words lost{"quell'orario non compare", "that opening time does not show"};
  static const Shape schedule{{"l'orario", "the opening time"},
                              "",
                              {optionalText("StartTime", lost), optionalText("EndTime", lost)}};
  static const Shape weekDay{
      {"il giorno", "the day"},
      "WeekDay",
      {number("WeekDay", 1, 7, lost), inner("Schedules", Kind::List, schedule, lost, true)}};
  static const Shape shape{
      {"gli orari", "the opening times"},
      "Title",
      {optionalText("Title", {"la riga non ha titolo", "the row has no title"}, &kRowTitle),
       optionalText("Note", {"la nota non si legge", "the note can't be read"}, &kRowNote),
       inner("WeekDays", Kind::List, weekDay, lost, true)}};
  return shape;
}

const Shape& sportsClub() {
  const Words lost{"gli eventi della società non compaiono", "the club's events do not show"};
  static const Shape shape{
      {"la società", "the club"}, "Nome", {text("Nome", lost), text("URL", lost)}};
  return shape;
}

const Shape& restaurant() {
  const Words closed{"il menu non si apre", "the menu does not open"};
  static const Shape shape{
      {"il ristorante", "the restaurant"},
      "Nome",
      {text("Nome", {"la riga resta senza nome", "its row has no name"}), text("Type", closed),
       // Only those of the social network have a page there.
       optionalText("URL", closed)}};
  return shape;
}

const Shape& pizzeria() {
  static const Shape location{
      {"il luogo", "the place"},
      "street",
      {optionalText("street", {"la via non si legge", "the street can't be read"})}};
  static const Shape any{{"il giorno", "the day"}, "", {}};
  static const Shape shape{
      {"la pizzeria", "the shop"},
      "Title",
      {text("Type", {"il genere non compare", "its kind does not show"}),
       text("Title", {"la riga resta senza nome", "its row has no name"}),
       inner("location", Kind::Map, location, {"la via non compare", "the street does not show"}),
       inner("hours", Kind::Map, any, {"gli orari non compaiono", "the hours do not show"}),
       inner("offer", Kind::Map, any, {"l'offerta non compare", "the offer does not show"}),
       text("Folder", {"i prezzi non si aprono", "the prices do not open"}),
       text("LastUpdate", {"i prezzi restano quelli vecchi", "the prices stay the old ones"})}};
  return shape;
}

const Shape& street() {
  const Words lost{"la via non si può scegliere", "the street can't be chosen"};
  static const Shape shape{
      {"la via", "the street"}, "NOME", {text("NOME", lost), text("ZONA", lost)}};
  return shape;
}

const Shape& mapDescription() {
  const Words closed{"la mappa non si apre", "the map does not open"};
  static const Shape filter{
      {"il filtro", "the filter"},
      "FIELD",
      {text("FIELD", closed),
       Field{"VALUE", Kind::Plain, true, {"la mappa resta vuota", "the map stays empty"}}}};
  static const Shape shape{
      {"la mappa", "the map"},
      "Nome",
      {text("Nome", {"la riga resta senza nome", "its row has no name"}, &kTitle),
       one("URL", Kind::Document, closed), inner("FILTER", Kind::List, filter, closed),
       text("LAT", closed), text("LON", closed), text("TITLE", closed),
       optionalText("SNIPPET", {"i dettagli non compaiono", "the details do not show"})}};
  return shape;
}

const Shape& waste() {
  static const Words blank{"la pagina della zona resta vuota", "the zone's page stays empty"};
  static const Shape day{{"il giorno", "the day"}, "NAME", {text("NAME", blank)}};
  static const Shape zone{
      {"la zona", "the zone"},
      "",
      {one("COLOR", Kind::Color, {"la zona resta senza colore", "the zone has no colour"}),
       inner("DAY1", Kind::Map, day, blank, true), inner("DAY2", Kind::Map, day, blank, true)}};
  static const Words untold{"il tocco sul rifiuto non dice nulla",
                            "a tap on the waste tells nothing"};
  static const Shape material{
      {"il rifiuto", "the waste"}, "", {text("SI", untold), text("NO", untold)}};
  // Their members are named by the town: the zones by its keys, the five kinds by name.
  static const Shape zones{{"le zone", "the zones"}, "", {inner("*", Kind::Map, zone, blank)}};
  static const Shape materials = [] {
    Shape s{{"i rifiuti", "the wastes"}, "", {}};
    for (const char* name : {"UMIDO", "CARTA", "PLASTICA", "VETRO", "SECCO"})
      s.fields.push_back(inner(name, Kind::Map, material, untold, true));
    return s;
  }();
  static const Shape link{
      {"il collegamento", "the link"},
      "Title",
      {text("Title", {"il bottone resta senza testo", "the button has no text"}, &kButton),
       one("Link", Kind::Web, {"il bottone non apre nulla", "the button opens nothing"})}};
  static const Shape shape{
      {"la raccolta", "the collection"},
      "",
      {inner("ZONE", Kind::Map, zones, blank, true),
       text("NOTE", {"manca l'orario di esposizione", "the time to put it out is missing"}),
       inner("RIFIUTI", Kind::Map, materials, untold, true),
       inner("MAPPA", Kind::Map, mapDescription(),
             {"la mappa dei sacchi non si apre", "the map of the sacks does not open"}),
       inner("PIATTAFORMA", Kind::Map, entity(),
             {"la piattaforma non si apre", "the platform's page does not open"}),
       inner("LINK", Kind::Map, link, {"il bottone non apre nulla", "the button opens nothing"})}};
  return shape;
}

const Shape& school() {
  const Words lost{"il menu della scuola non si apre", "the school's menu does not open"};
  static const Shape shape{
      {"la scuola", "the school"}, "Nome", {text("Nome", lost), text("Link", lost)}};
  return shape;
}

}  // namespace

const Shape& entity() {
  const auto section = [](const char* it, const char* en) { return Words{it, en}; };
  static const Shape shape{
      {"la voce", "the entry"},
      "Name",
      {text("Name", {"la riga resta senza nome", "its row has no name"}, &kTitle),
       inner("Contacts", Kind::List, contact(),
             section("i contatti non compaiono", "the contacts do not show")),
       inner("Adresses", Kind::List, address(),
             section("gli indirizzi non compaiono", "the addresses do not show")),
       inner("Addresses", Kind::List, address(),
             section("gli indirizzi non compaiono", "the addresses do not show")),
       inner("Calendar", Kind::List, calendar(),
             section("gli orari non compaiono", "the opening times do not show"))}};
  return shape;
}

const Shape& schoolMenu() {
  static const Words lost{"in quei giorni si legge «NON CARICATO»",
                          "those days read \"NON CARICATO\""};
  static const Shape week = [] {
    Shape s{{"la settimana", "the week"}, "", {}};
    for (int day = 1; day <= 5; ++day) s.fields.push_back(text("day_" + std::to_string(day), lost));
    return s;
  }();
  static const Shape period = [] {
    Shape s{{"il periodo", "the period"},
            "valid_from",
            {one("valid_from", Kind::Date, lost), one("valid_to", Kind::Date, lost),
             one("date_start", Kind::Date, lost),
             optionalText("note", {"la nota non si legge", "the note can't be read"})}};
    for (int n = 1; n <= 4; ++n)
      s.fields.push_back(inner("week_" + std::to_string(n), Kind::Map, week, lost, true));
    return s;
  }();
  static const Shape shape{
      {"il menu", "the menu"},
      "name",
      {text("name", {"la pagina resta senza titolo", "the page has no title"}, &kTitle),
       inner("menu", Kind::List, period, lost, true)}};
  return shape;
}

const Shape& newsItem() {
  static const Shape shape{
      {"la notizia", "the news item"},
      "Titolo",
      {text("Titolo", {"la notizia resta senza titolo", "the item has no title"}),
       optionalText("DescrizioneBreve", {"manca il sunto", "the summary is missing"}),
       text("Descrizione", {"la notizia si apre vuota", "the item opens empty"})}};
  return shape;
}

const Shape& newsletterIssue() {
  static const Shape shape{
      {"il numero", "the issue"},
      "name",
      {one("name", Kind::IsoDate, {"il numero non è in ordine", "the issue is out of order"}),
       one("download_url", Kind::Web, {"il numero non si apre", "the issue does not open"})}};
  return shape;
}

const Shape& act() {
  static const Words lost{"l'atto non si legge", "the act can't be read"};
  static const Shape shape = [] {
    Shape s{{"l'atto", "the act"}, "OGGETTO", {}};
    constexpr double kMost = 2147483647;
    for (const char* name : {"ID", "REG_ANNO", "REG_NUM", "ATTO_ANNO", "ATTO_NUM"})
      s.fields.push_back(number(name, 0, kMost, lost));
    for (const char* name : {"DATA_REG", "DATA_DOC"})
      s.fields.push_back(one(name, Kind::IsoDate, lost));
    for (const char* name : {"PROPONENTE", "SOTTOCATEGORIA"})
      s.fields.push_back(optionalText(name, lost));
    s.fields.push_back(text("OGGETTO", lost));
    return s;
  }();
  return shape;
}

const Shape& event() {
  static const Words lost{"l'evento non compare", "the event does not show"};
  static const Shape cover{
      {"la copertina", "the cover"},
      "",
      {one("source", Kind::Web, {"la copertina non compare", "the cover does not show"})}};
  static const Shape place{
      {"il luogo", "the place"},
      "",
      {optionalText("name", {"il luogo non si legge", "the place can't be read"})}};
  static const Shape shape{
      {"l'evento", "the event"},
      "name",
      {text("id", {"il tocco non apre l'evento", "a tap does not open the event"}),
       text("name", lost), one("start_time", Kind::IsoDate, lost),
       optionalText("end_time", {"la fine non si legge", "its end can't be read"}),
       inner("cover", Kind::Map, cover, {"la copertina non compare", "the cover does not show"}),
       inner("place", Kind::Map, place, {"il luogo non compare", "the place does not show"})}};
  return shape;
}

const std::vector<DocumentShape>& documents() {
  const Words empty{"la pagina resta vuota", "the page stays empty"};
  static const std::vector<DocumentShape> all{
      {kPharmacies, true, &pharmacy(), empty},
      {kTurns, true, &turn(), empty},
      {kCategories, true, &category(), empty},
      {kStreets, true, &street(), {"nessuna via si può scegliere", "no street can be chosen"}},
      {kWaste, false, &waste(), empty},
      {kClubs, true, &sportsClub(), empty},
      {kMaps, true, &mapDescription(), empty},
      {kRestaurants, true, &restaurant(), empty},
      {kSchools, true, &school(), empty},
      {"/InfoVarlo/pizzaprezzi/master/menu.json", true, &pizzeria(), empty},
  };
  return all;
}

}  // namespace check
