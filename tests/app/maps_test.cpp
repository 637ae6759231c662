// The thematic maps: which rows become markers, what a bad row costs, who gets the token,
// and what a marker's dialog leads to.
#include "app/mappe/modmaps.h"

#include "app/kit/fields.h"
#include "app/mappe/open_data.h"
#include "platform/ui/overlays/dialog.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr const char* kCatalogue = "/InfoVarlo/mappe/master/mappe.json";
constexpr const char* kRows = "/prova/righe.json";
constexpr int kMaps = 60;

class Maps : public LaunchedTest {
 protected:
  static kes_modmaps& page() { return kes_modmaps::instance(); }
  std::string mapAt(const std::string& path, const std::string& more = "") {
    return R"({"Nome":"Prova","URL":")" + host.url() + path +
           R"(","LAT":"lat","LON":"lon","TITLE":"nome")" + more + "}";
  }
  // Opens a map whose rows are these; `more` is the rest of its description.
  void open(const std::string& rows, const std::string& more = R"(,"SNIPPET":"info")") {
    publish(kRows, rows);
    describe(mapAt(kRows, more));
  }
  void describe(const std::string& description) {
    page().set_datimappa(mapOf(description));
    page()._avvia();
    settle();
  }
  static Trace markers() {
    Trace all;
    for (const auto& m : page()._gmap.native()->markers()) all.push_back(m->title());
    return all;
  }
  static KesMarker marker(std::size_t i) { return KesMarker(*page()._gmap.native()->markers()[i]); }
};

TEST_F(Maps, TheCatalogueLeadsToAMapOfTheTown) {
  visit(kMaps);
  EXPECT_EQ(title(), "Menu Mappe");
  EXPECT_THAT(rowsOf(app()._clv), testing::SizeIs(testing::Ge(6u)));
  ASSERT_TRUE(enter("Parchi gioco"));
  EXPECT_EQ(title(), "Parchi gioco");
  EXPECT_THAT(markers(), testing::Contains("Giardino Pascoli"));
  EXPECT_EQ(page()._markers.Size(), static_cast<int>(markers().size()));
  EXPECT_EQ(textOf(KesMap::fromBoxed(page()._markers.Get(Value(marker(0)))), "Nome").str(),
            markers()[0]);
  const auto& map = *page()._gmap.native();
  EXPECT_TRUE(map.compass() && map.hereButton() && map.showsHere());
  EXPECT_EQ(map.tiles().attribution, "© Comune di Varlo");
  EXPECT_EQ(map.bounds().size(), (ui::Size{320, 504}));
  // Another width: the map goes along.
  turn({568, 320});
  EXPECT_EQ(map.bounds().width, 568);
  EXPECT_EQ(map.frameInWindow().bottom(), 320);
}

TEST_F(Maps, ARowThatIsBadCostsItselfAndALine) {
  open(R"([{"lat":45.24,"lon":10.04,"nome":"numeri"},
           {"lat":"45.241","lon":"10.041","nome":"testi"},
           {"lat":"45,8","lon":"10,1","nome":"virgole"},
           {"lon":10.04,"nome":"senza"},
           {"lat":null,"lon":10.04,"nome":"nulla"},
           {"lat":[45],"lon":10.04,"nome":"lista"},
           {"lat":91,"lon":10,"nome":"oltre il polo"},
           {"lat":45,"lon":-181,"nome":"oltre la data"},
           {"lat":"1e999","lon":10,"nome":"infinito"},
           {"lat":0,"lon":0,"nome":"zero"},
           {"lat":-90,"lon":180,"nome":"polo"},
           {"lat":45,"lon":10,"nome":{"it":"x"}},
           7, null, "testo",
           {"lat":45.25,"lon":10.05}])");
  EXPECT_THAT(markers(), ElementsAre("numeri", "testi", "zero", "polo", ""));
  expectLogged({"Prova, record 3: ", "Prova, record 4: ", "Prova, record 7: Not a place",
                "Prova, record 10: stands at 0, 0", "Prova, record 12: "});
  EXPECT_EQ(toast(), "");
}

TEST_F(Maps, AFilterShowsTheRowsThatAnyOfItsElementsFits) {
  const std::string rows = R"([{"lat":45,"lon":10,"nome":"a","tipo":"uno","n":1},
    {"lat":45,"lon":10,"nome":"b","tipo":"due","n":"1"},
    {"lat":45,"lon":10,"nome":"c","tipo":"UNO","n":2},
    {"lat":45,"lon":10,"nome":"d"}])";
  const struct {
    const char* filter;
    Trace shown;
  } cases[] = {
      {R"([{"FIELD":"tipo","VALUE":"uno"}])", {"a"}},
      {R"([{"FIELD":"tipo","VALUE":"due"},{"FIELD":"n","VALUE":2}])", {"b", "c"}},
      {R"([{"FIELD":"n","VALUE":1}])", {"a"}},  // a number is no text
      {R"([])", {}},
      {R"([5,{"FIELD":"tipo","VALUE":"uno"}])", {"a"}},
      {R"(null)", {"a", "b", "c", "d"}},
  };
  for (const auto& c : cases) {
    open(rows, R"(,"FILTER":)" + std::string(c.filter));
    EXPECT_EQ(markers(), c.shown) << c.filter;
  }
}

TEST_F(Maps, OnlyThreeEntitiesAreDecodedInOrder) {
  open(R"([{"lat":45,"lon":10,"nome":"a","info":"l&apos;et&agrave; 1&deg; &amp;deg; &egrave;"},
           {"lat":45,"lon":10,"nome":"b"},{"lat":45,"lon":10,"nome":"c","info":12.5}])");
  EXPECT_EQ(Kes::ObjectToString(marker(0).Tag()).str(), "l'età 1° &amp;deg; &egrave;");
  EXPECT_EQ(marker(0).Snippet().str(), "Click per dettagli");
  EXPECT_EQ(Kes::ObjectToString(marker(1).Tag()).str(), "");
  EXPECT_EQ(Kes::ObjectToString(marker(2).Tag()).str(), "12.5");
  open(R"([{"lat":45,"lon":10,"nome":"a","info":"x"}])", "");
  EXPECT_EQ(marker(0).Snippet().str(), "");
  EXPECT_TRUE(marker(0).Tag().isNil());
}

TEST_F(Maps, TheDialogOfAMarkerLeadsThere) {
  open(R"([{"lat":45.5,"lon":10.25,"nome":"Qui","info":"Dettagli\nsu due righe"}])");
  for (const bool goes : {false, true}) {
    page()._gmap_infowindowclick(marker(0));
    settle();
    ASSERT_EQ(phone.app.dialogs().size(), 1u);
    EXPECT_EQ(phone.app.dialogs().back()->title, "Qui");
    EXPECT_TRUE(shows("Dettagli\nsu due righe"));
    EXPECT_FALSE(phone.app.dialogs().back()->cancel()) << "no tap beside it ends it";
    ASSERT_TRUE(enter(goes ? "Naviga Verso" : "Chiudi"));
    EXPECT_EQ(opened(), goes ? "https://maps.apple.com/?q=45.5,10.25" : "");
  }
  // In a wide and low window the dialog has to fit as well.
  turn({667, 375});
  page()._gmap_infowindowclick(marker(0));
  settle();
  const ui::Rect card = phone.app.dialogs().back()->view()->frameInWindow();
  EXPECT_LE(page()._msglbl.Width(), card.width);
  EXPECT_LE(card.bottom(), 375);
}

TEST_F(Maps, TheTokenGoesToTheServiceAndToNobodyElse) {
  const struct {
    const char* address;
    bool token;
  } cases[] = {
      {"https://dati.varlo.example/resource/a.json", true},
      {"HTTPS://Dati.Varlo.Example:443/resource/a.json", true},
      {"https://dati.varlo.example", true},
      {"http://dati.varlo.example/resource/a.json", false},  // would go in the clear
      {"https://dati.varlo.example:8443/a.json", false},
      {"https://dati.varlo.example.evil.example/a.json", false},
      {"https://evil.example/?x=https://dati.varlo.example/", false},
      {"https://dati.varlo.example@evil.example/a.json", false},
      {"https://evil.example\\@dati.varlo.example/a.json", false},
      {"https://xdati.varlo.example/a.json", false},
      {"dati.varlo.example/a.json", false},
      {"", false},
  };
  deployment::pointEveryServiceAt("https://dati.varlo.example");
  for (const auto& c : cases) {
    const Text made = openDataAddress(c.address);
    EXPECT_EQ(made.str() != c.address, c.token) << c.address;
  }
  EXPECT_EQ(openDataAddress("https://dati.varlo.example/a.json").str(),
            "https://dati.varlo.example/a.json?$$app_token=" + deployment::openDataToken().str());
  EXPECT_EQ(deployment::openDataToken().Length(), 25);
  EXPECT_EQ(openDataAddress("https://dati.varlo.example/a.json?$limit=9").str(),
            "https://dati.varlo.example/a.json?$limit=9&$$app_token=" +
                deployment::openDataToken().str());
}

TEST_F(Maps, ARedirectToAnotherHostLosesTheToken) {
  town::TownHost other;
  other.documents().addFixed("/altrove.json", "application/json",
                             R"([{"lat":45,"lon":10,"nome":"altrove"}])");
  publish(kRows, "[]");
  host.faults().add(kRows, Fault::redirect(other.url() + "/altrove.json"));
  describe(mapAt(kRows));
  EXPECT_THAT(markers(), ElementsAre("altrove"));
  EXPECT_THAT(asked(kRows), ElementsAre(HasSubstr("app_token=")));
  for (const auto& request : other.requests().all())
    EXPECT_THAT(request.path, testing::Not(HasSubstr("app_token")));
}

TEST_F(Maps, WhatCannotBeHadLeavesAMapWithoutMarkersAndSaysSo) {
  host.faults().add(kRows, Fault::status(500));
  open("[]");
  EXPECT_EQ(toast(), "Errore in download dati");
  EXPECT_EQ(title(), "Prova");
  EXPECT_THAT(markers(), IsEmpty());
  host.faults().clear();
  for (const char* bad : {"niente", "{\"a\":1}", "", "[{\"lat\":45,"}) {
    phone.pump.advance(5000);
    EXPECT_EQ(toast(), "");
    open(bad);
    EXPECT_EQ(toast(), "Errore in download dati") << bad;
    EXPECT_THAT(markers(), IsEmpty());
  }
  host.faults().add(kCatalogue, Fault::drop());
  phone.pump.advance(5000);
  visit(kMaps);
  EXPECT_EQ(toast(), kNoConnection);
}

// Two maps, the second opened while the first is still on its way.
TEST_F(Maps, WhatComesLateDoesNotLandOnAnotherMap) {
  publish("/lenta.json", R"([{"lat":45,"lon":10,"nome":"lenta"}])");
  host.faults().add("/lenta.json", Fault::delay(300));
  page().set_datimappa(mapOf(mapAt("/lenta.json")));
  page()._avvia();
  phone.pump.advance(50);
  open(R"([{"lat":45,"lon":10,"nome":"veloce"}])");
  EXPECT_THAT(markers(), ElementsAre("veloce"));
}

// An address of the town's own documents may be written without its host.
TEST_F(Maps, AnAddressThatBeginsWithASlashIsOneOfTheTownsDocuments) {
  describe(R"({"Nome":"Sacchi","URL":"/InfoVarlo/mappe/master/ritiro_sacchi.json",
    "LAT":"Latitudine","LON":"Longitudine","TITLE":"Nome","SNIPPET":"Descrizione"})");
  EXPECT_THAT(markers(), testing::Contains("Piattaforma ecologica"));
}

TEST_F(Maps, FiveThousandMarkersAreReadInOneGo) {
  visit(kMaps);
  ASSERT_TRUE(enter("Alberi pubblici"));
  EXPECT_EQ(markers().size(), 5000u);
  EXPECT_EQ(page()._markers.Size(), 5000);
  EXPECT_THAT(asked("/resource/alberi"), ElementsAre(HasSubstr("?$$app_token=")));
}

}  // namespace
}  // namespace varlo
