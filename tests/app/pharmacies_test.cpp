// The pharmacies on duty: which rows the two documents make, and what a row holds.
#include "town_phone.h"

namespace varlo {
namespace {

constexpr const char* kTwoPharmacies = R"([
  {"Chiave":"F1","Farmacia":"Centrale","Citta":"Varlo","Telefono":"0123 1","Indirizzo":"Via Roma 1",
   "Latitudine":45.5,"Longitudine":9.25},
  {"Chiave":"F2","Farmacia":"Stazione","Citta":"Varlo","Telefono":"0123 2",
   "Indirizzo":"Via Pace 2","Latitudine":"45","Longitudine":9}])";

struct Turns {
  int day;
  const char *first, *second;
};
std::string turnsOf(std::initializer_list<Turns> all) {
  std::string json;
  for (const auto& [day, first, second] : all)
    json += std::string(json.empty() ? "[" : ",") + R"({"Mese":11,"Anno":2017,"Giorno":)" +
            std::to_string(day) + R"(,"Turno1":")" + first + R"(","Turno2":")" + second + "\"}";
  return json + "]";
}

class Pharmacies : public LaunchedTest {
 protected:
  // "Label|Name" of each row.
  Trace rowsFor(const std::string& turns, const std::string& pharmacies = kTwoPharmacies) {
    publish(kTurnsPath, turns);
    publish(kPharmaciesPath, pharmacies);
    visit(kPharmacies);
    Trace rows;
    for (const auto& text : rowsOf(app()._clv)) {
      const auto first = text.find('\n');
      rows.push_back(text.substr(0, first) + "|" +
                     text.substr(first + 1, text.find(" - ", first) - first - 1));
    }
    return rows;
  }
};

constexpr const char* kUntil = "Farmacia di turno fino alle ore 8.30|";
constexpr const char* kAround =
    "Farmacia di turno dalle 8.30 fino alle ore 8.30 del giorno successivo|";
constexpr const char* kDay = "Farmacia di turno dalle ore 8.30-12.30 - 15.30-19.30|";

TEST_F(Pharmacies, TheTurnsMakeTheRows) {
  const std::string u(kUntil), a(kAround), d(kDay);
  const struct {
    const char* what;
    std::string turns;
    Trace rows;
  } cases[] = {
      {"all three",
       turnsOf({{14, "F1", "F2"}, {15, "F2", "F1"}}),
       {u + "Centrale", a + "Stazione", d + "Centrale"}},
      {"no daytime turn",
       turnsOf({{14, "F1", ""}, {15, "F2", ""}}),
       {u + "Centrale", a + "Stazione"}},
      {"one pharmacy on both days",
       turnsOf({{15, "F1", ""}, {14, "F1", ""}}),
       {u + "Centrale", a + "Centrale"}},
      {"yesterday is missing", turnsOf({{15, "F1", "F2"}}), {a + "Centrale", d + "Stazione"}},
      {"today is missing", turnsOf({{14, "F1", "F2"}, {16, "F1", "F2"}}), {u + "Centrale"}},
      {"a turn of nobody known", turnsOf({{14, "F9", "F9"}, {15, "F9", "F2"}}), {d + "Stazione"}},
      {"the first entry of a day counts",
       turnsOf({{15, "F1", ""}, {15, "F2", "F2"}}),
       {a + "Centrale"}},
      {"a day that is a text",
       R"([{"Giorno":"15","Mese":11,"Anno":2017,"Turno1":"F1","Turno2":"F2"}])",
       {}},
      {"the same day of other months and years",
       R"([{"Giorno":15,"Mese":10,"Anno":2017,"Turno1":"F1","Turno2":""},
           {"Giorno":15,"Mese":11,"Anno":2016,"Turno1":"F1","Turno2":""}])",
       {}},
      {"no turns at all", "[]", {}},
  };
  for (const auto& c : cases) EXPECT_EQ(rowsFor(c.turns), c.rows) << c.what;

  const std::string numbered =
      R"([{"Chiave":"7","Farmacia":"Testo","Citta":"V"},{"Chiave":8,"Farmacia":"Numero","Citta":"V"}])";
  EXPECT_EQ(rowsFor(R"([{"Giorno":15,"Mese":11,"Anno":2017,"Turno1":7,"Turno2":"8"}])", numbered),
            Trace{a + "Testo"})
      << "a turn may be a number, the key of a pharmacy may not";
}

TEST_F(Pharmacies, ARowTellsNameTelephoneAndAddress) {
  rowsFor(turnsOf({{15, "F1", "F2"}}));
  const auto& label = labelOf(app()._clv, 0);
  const std::string name = "Centrale - Varlo\n\n";
  EXPECT_EQ(label.text(),
            "Farmacia di turno dalle 8.30 fino alle ore 8.30 del giorno successivo\n" + name +
                "Telefono: 0123 1\nIndirizzo: Via Roma 1, Varlo");
  ASSERT_TRUE(label.attributedText());
  for (const auto& [part, size] :
       {std::pair{"Farmacia di", 12}, {"Centrale", 20}, {"Telefono", 12}, {"Via Roma", 12}})
    EXPECT_EQ(sizeOf(label, part), size) << part;

  const auto entity = KesMap::fromBoxed(app()._clv->_getvalue(0));
  EXPECT_EQ(entity.Get("Name"), "Centrale - Varlo");
  const auto contact = KesMap::fromBoxed(KesList::fromBoxed(entity.Get("Contacts")).Get(0));
  EXPECT_EQ(contact.Get("Value"), "0123 1");
  EXPECT_EQ(contact.Get("Type"), Value(0));
  const auto place = KesMap::fromBoxed(KesList::fromBoxed(entity.Get("Addresses")).Get(0));
  EXPECT_EQ(place.Get("Value"), "Via Roma 1, Varlo");
  EXPECT_EQ(place.Get("Latitude"), Value(45.5));
  EXPECT_EQ(place.Get("Longitude"), Value(9.25));
}

TEST_F(Pharmacies, APlaceWithoutCoordinatesLeadsNowhere) {
  rowsFor(turnsOf({{15, "F2", ""}}));
  ASSERT_TRUE(enter("Stazione"));
  EXPECT_EQ(title(), "Stazione - Varlo");
  ASSERT_TRUE(enter("Via Pace 2"));
  EXPECT_EQ(opened(), "");
  ASSERT_TRUE(enter("0123 2"));
  EXPECT_EQ(opened(), "tel:01232");
}

TEST_F(Pharmacies, EitherDocumentMayFailAlone) {
  for (const char* path : {kPharmaciesPath, kTurnsPath}) {
    host.faults().add(path, Fault::status(503));
    visit(kPharmacies);
    EXPECT_EQ(app()._clv->_getsize(), 0) << path;
    EXPECT_EQ(title(), "Farmacie di turno");
    EXPECT_FALSE(phone.app.hud().toastShown()) << "a failed document is no message here";
    host.faults().clear();
  }
  visit(kPharmacies);
  EXPECT_EQ(app()._clv->_getsize(), 3);
}

}  // namespace
}  // namespace varlo
