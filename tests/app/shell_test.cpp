// The shell: the version check, the menu while something loads, faults, and the small
// services that it offers to the features.
#include <random>

#include "town_phone.h"

namespace varlo {
namespace {

using Launch = TownTest;
using Shell = LaunchedTest;

TEST_F(Launch, ANewerVersionIsAnnouncedAndLeadsToTheStore) {
  publish(kVersionPath, "1.1");
  launch();
  EXPECT_EQ(dialogText(), "InfoVarlo: Nuova versione rilasciata!");
  EXPECT_EQ(opened(), "");
  ASSERT_TRUE(enter("OK"));
  EXPECT_EQ(opened(), deployment::appStorePage().str());
  EXPECT_EQ(dialogText(), "");
}

TEST_F(Shell, VersionsAreComparedAsNumbers) {
  const struct {
    const char *released, *installed;
    bool announced;
  } cases[] = {{"1.0", "1.0", false}, {"0.9", "1.0", false}, {"1.10", "1.9", false},
               {"1.9", "1.10", true}, {"2", "1.99", true},   {"1.10", "1.1", false},
               {"1.01", "1.0", true}, {"1e1", "1.0", true}};
  for (const auto& c : cases) {
    publish(kVersionPath, c.released);
    phone.test.platform().bundleVersion = c.installed;
    app()._controlloversione();
    settle();
    EXPECT_EQ(dialogText() != "", c.announced) << c.released << " over " << c.installed;
    if (c.announced) enter("OK");
  }
}

TEST_F(Launch, AVersionThatCannotBeReadIsSilent) {
  host.faults().add(kVersionPath, Fault::status(404));
  launch();
  EXPECT_EQ(dialogText(), "");
  EXPECT_FALSE(phone.app.hud().toastShown());
}

TEST_F(Launch, AVersionThatIsNoNumberEndsTheCheckAndNothingElse) {
  publish(kVersionPath, "presto");
  launch();
  EXPECT_THAT(std::exchange(faults, {}), ElementsAre("Cannot parse: presto"));
  EXPECT_EQ(dialogText(), "");
  EXPECT_EQ(title(), "InfoVarlo");
  EXPECT_TRUE(temporaryFilesGo());
  visit(kPharmacies);
  EXPECT_EQ(app()._clv->_getsize(), 3);
}

TEST_F(Shell, AValueThatNoRowHasLeavesThePageAndItsTapsAsTheyAre) {
  visit(kPharmacies);
  const auto* list = app()._clv.get();
  for (const int value : {99, 0, -1}) {
    phone.test.clearLog();
    visit(value);
    EXPECT_EQ(title(), "Farmacie di turno") << value;
    EXPECT_EQ(app()._clv.get(), list) << value;
    EXPECT_EQ(app()._imenu, kPharmacies) << value;
    EXPECT_TRUE(phone.test.logged("Menu row " + std::to_string(value))) << value;
  }
  ASSERT_TRUE(enter("del giorno successivo"));
  EXPECT_TRUE(shows("Telefono"));
}

TEST_F(Shell, ATapOnAListIsReadByTheRowLastChosen) {
  visit(kDirectory);
  const Value category = app()._clv->_getvalue(0);
  visit(kHome);
  app()._clv_itemclick(0, category);
  settle();
  EXPECT_EQ(title(), "InfoVarlo") << "the home page has no rows to tap";
}

// An earlier choice goes on while a later one is shown: neither may hold the other up,
// and the overlay goes with the last.
TEST_F(Shell, TheMenuWorksWhileSomethingLoads) {
  host.faults().add(kPharmaciesPath, Fault::delay(300));
  choose(kPharmacies);
  phone.pump.advance(20);
  EXPECT_EQ(phone.app.hud().progressText(), "Caricamento dati in corso...");
  choose(kDirectory);
  EXPECT_EQ(phone.app.hud().progressText(), "Caricamento dati...");
  settle();
  EXPECT_EQ(title(), "InfoCittà");
  EXPECT_TRUE(shows("Uffici comunali"));

  for (const int value : {kPharmacies, kHome, kDirectory, kDisclaimer, kPharmacies, kPharmacies})
    choose(value);
  settle();
  EXPECT_EQ(title(), "Farmacie di turno");
  EXPECT_TRUE(temporaryFilesGo());
}

TEST_F(Shell, HomeIsLoadedAnewEachTime) {
  const auto loaded = [&] {
    return host.requests().count("/InfoVarlo/config/master/home_ios.html");
  };
  EXPECT_EQ(loaded(), 1u);
  visit(kHome);
  visit(kHome);
  EXPECT_EQ(loaded(), 3u);
}

TEST_F(Shell, LinksOfAPageOpenOutsideWhenTheyAreOfAKnownKind) {
  EXPECT_TRUE(app()._web_overrideurl("https://www.varlo.example/avvisi"));
  EXPECT_EQ(opened(), "https://www.varlo.example/avvisi");
  EXPECT_TRUE(app()._web_overrideurl("javascript:alert(1)"));
  EXPECT_EQ(opened(), "https://www.varlo.example/avvisi");
}

TEST_F(Shell, EveryFaultOfEveryDocumentEndsWithoutAnOverlay) {
  visit(kDirectory);
  const auto link = KesMap::fromBoxed(app()._clv->_getvalue(0)).Get("Link").asText();
  const std::pair<const char*, std::function<void()>> features[] = {
      {"home", [&] { app()._caricahome(); }},
      {"disclaimer", [&] { app()._caricadisclaimer(); }},
      {"version", [&] { app()._controlloversione(); }},
      {"pharmacies", [&] { app()._farmacie_farmaciaaperta(); }},
      {"categories", [&] { app()._infocitta_caricalistacategorie(); }},
      {"a category", [&] { kes_infocitta::instance()._infocitta_caricaelementi("C", link); }},
  };
  const std::pair<const char*, Fault> kinds[] = {{"drop", Fault::drop()},
                                                 {"truncate", Fault::truncate(30)},
                                                 {"status", Fault::status(500)},
                                                 {"wrong length", Fault::wrongLength(40)},
                                                 {"garbage", Fault::garbage()},
                                                 {"nothing", Fault::garbage(" ")},
                                                 {"shape", Fault::shape()},
                                                 {"numbers", Fault::shape("[1,2,null]")},
                                                 {"an object", Fault::shape("{\"a\":[]}")}};
  for (const auto& [kind, fault] : kinds) {
    host.faults().clear();
    host.faults().add("/InfoVarlo/", fault);
    for (const auto& [feature, open] : features) {
      SCOPED_TRACE(std::string(kind) + " on " + feature);
      open();
      settle();
      EXPECT_TRUE(temporaryFilesGo());
      while (!phone.app.dialogs().empty() && tap("OK")) settle();
    }
  }
  host.faults().clear();
  faults.clear();  // told, as they have to be
  visit(kPharmacies);
  EXPECT_EQ(app()._clv->_getsize(), 3) << "when it is back, so is everything";
}

// Impatient fingers on a bad line, sixty choices, several in flight at once.
TEST_F(Shell, ABadLineNeverLeavesAnythingBehind) {
  town::FaultMix mix;
  mix.seed = 7;
  for (std::size_t kind = 0; kind < Fault::kinds; ++kind) mix.rates[kind] = 0.08;
  host.faults().mix("/InfoVarlo/", mix);
  std::mt19937 random(7);
  constexpr int choices[] = {kHome, kPharmacies, kDirectory, kDisclaimer};
  for (int i = 0; i < 60; ++i) {
    choose(choices[random() % std::size(choices)]);
    phone.pump.advance(static_cast<std::int64_t>(random() % 40));
    if (i % 10 == 9) {
      settle();
      EXPECT_TRUE(temporaryFilesGo());
    }
  }
  host.faults().clear();
  faults.clear();  // told, as they have to be
  visit(kPharmacies);
  EXPECT_EQ(app()._clv->_getsize(), 3);
}

TEST_F(Shell, ACopiedMapIsDeepAndCanBeChanged) {
  const auto original = mapOf(R"({"a":{"b":{"c":1}},"l":[{"x":true},"è",null,2.5]})");
  ASSERT_TRUE(original.IsReadOnly());
  auto copy = app()._copymap(original);
  EXPECT_TRUE(copy.isEqual(Value(original))) << copy.description().view();
  auto inner = KesMap::fromBoxed(KesMap::fromBoxed(copy.Get("a")).Get("b"));
  inner.Put("c", 2);
  KesList::fromBoxed(copy.Get("l")).Add("nuovo");
  KesMap::fromBoxed(KesList::fromBoxed(copy.Get("l")).Get(0)).Put("x", false);
  copy.Put("z", 1);
  EXPECT_EQ(KesMap::fromBoxed(KesMap::fromBoxed(copy.Get("a")).Get("b")).Get("c"), Value(2));
  EXPECT_TRUE(
      original.isEqual(Value(mapOf(R"({"a":{"b":{"c":1}},"l":[{"x":true},"è",null,2.5]})"))));
}

TEST_F(Shell, DatesAreWrittenForACitizen) {
  const struct {
    const char *date, *plain, *named, *next;  // the day after
  } cases[] = {
      {"2017-11-05", "05/11/2017", "domenica 5 novembre 2017", "2017-11-06"},
      {"2018-01-31T20:30:00+0100", "31/01/2018", "mercoledì 31 gennaio 2018", "2018-02-01"},
      {"2020-02-29", "29/02/2020", "sabato 29 febbraio 2020", "2020-03-01"},
      {"2017-03-26", "26/03/2017", "domenica 26 marzo 2017", "2017-03-27"},  // 23 hours
      {"2017-12-31", "31/12/2017", "domenica 31 dicembre 2017", "2018-01-01"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(app()._formatodata(c.date, false), c.plain);
    EXPECT_EQ(app()._formatodata(c.date, true), c.named);
    const auto ticks = app()._datetolong(c.date);
    EXPECT_EQ(app()._datetolongfb(c.date), ticks);
    const KeptDateFormat kept;
    DateTime().setDateFormat("yyyy-MM-dd HH:mm");
    EXPECT_EQ(DateTime().Date(ticks), std::string(c.next) + " 00:00") << c.date;
  }
  EXPECT_EQ(app()._formatoora("2017-11-05T20:30:00+0100"), "20:30");
  for (const bool withNames : {false, true}) {
    phone.test.clearLog();
    EXPECT_EQ(app()._formatodata("2017-11", withNames), "") << "what is no date is no text";
    EXPECT_TRUE(phone.test.logged("No date: \"2017-11\": "));
  }
  EXPECT_THROW(app()._formatoora("2017-11-05"), KesException);
  EXPECT_THROW(app()._datetolong("2017-13-40"), KesException);
}

TEST_F(Shell, SmallThings) {
  EXPECT_EQ(app()._getstringdayfb(1), "sun");
  EXPECT_EQ(app()._getstringdayfb(7), "sat");
  EXPECT_EQ(app()._getstringdayfb(0), "");
  EXPECT_EQ(app()._getstringdayfb(8), "");
  EXPECT_EQ(app()._cint(2.9), 2);
  EXPECT_EQ(app()._cint(-2.9), -2);
  EXPECT_EQ(app()._cint(1e300), app()._cint(2e300)) << "any number has an answer";
  EXPECT_EQ(app()._getversion(), "1.0");
}

}  // namespace
}  // namespace varlo
