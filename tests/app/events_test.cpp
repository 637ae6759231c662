// Events and sport: which are listed, in what order, what a card says, and what is asked of
// which service. The phone's day is Wednesday, 15 November 2017, 09:30.
#include "runtime/views/wrappers/image_view_wrapper.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr int kTownEvents = 30, kSport = 32;
constexpr const char *kTownPage = "/v2.9/Comune.di.Varlo/events",
                     *kPicture = "/immagini/eventi/0.png";

class Events : public LaunchedTest {
 protected:
  Ref<kes_customlistview> list() { return app()._clv; }
  KesPanelWrapper card(int row) {
    return KesPanelWrapper::fromBoxed(list()->_getpanel(row).object());
  }
  Trace cards() {
    Trace all;
    for (int i = 0; i < list()->_getsize(); ++i)
      all.push_back(card(i).GetView(3).view().displayText());
    return all;
  }
  Trace ids() {
    Trace all;
    for (int i = 0; i < list()->_getsize(); ++i) all.emplace_back(list()->_getvalue(i).textView());
    return all;
  }
};

TEST_F(Events, OneCardAnOccurrenceUntilTheDayAfterItsEnd) {
  publish(kTownPage, R"({"data":[
    {"id":"5","name":"Due giorni","start_time":"2017-11-18T09:00:00+0100",
     "end_time":"2017-11-19T22:30:00+0100","place":{"name":"Centro"}},
    {"id":"0","name":"Finita ieri","start_time":"2017-11-14T20:00:00","end_time":"2017-11-14T23:59:00"},
    {"id":"1","name":"Finisce oggi","start_time":"2017-11-10T20:00:00","end_time":"2017-11-15T00:01:00"},
    {"id":"2","name":"Senza fine","start_time":"2017-11-15T08:00:00","place":{"name":"null"}},
    {"id":"3","name":"Fine nulla","start_time":"2017-11-16T21:00:00","end_time":"null"},
    {"id":"ieri","name":"Fine nulla","start_time":"2017-11-14T21:00:00","end_time":null},
    {"id":"r","name":"Mercato","start_time":"2017-11-01T08:00:00","event_times":[
      {"id":"r3","start_time":"2017-11-24T08:00:00","end_time":"2017-11-24T13:00:00"},
      {"id":"r2","start_time":"2017-11-17T08:00:00","end_time":"2017-11-17T13:00:00"},
      {"id":"r1","start_time":"2017-11-10T08:00:00","end_time":"2017-11-10T13:00:00"}]}]})");
  visit(kTownEvents);
  EXPECT_EQ(title(), "Eventi - Comune di Varlo");
  EXPECT_THAT(ids(), ElementsAre("1", "2", "3", "r2", "5", "r3"));
  EXPECT_THAT(cards(),
              ElementsAre("Finisce oggi\n\n\n10/11/2017  20:00\n15/11/2017  00:01",
                          "Senza fine\n\n\n15/11/2017  08:00", "Fine nulla\n\n\n16/11/2017  21:00",
                          "Mercato\n\n\n17/11/2017  08:00 - 13:00",
                          "Due giorni\nCentro\n\n18/11/2017  09:00\n19/11/2017  22:30",
                          "Mercato\n\n\n24/11/2017  08:00 - 13:00"));

  ASSERT_TRUE(tap("Due giorni"));
  phone.test.advance(150);
  EXPECT_EQ(opened(), "") << "a moment after the tap";
  phone.test.advance(100);
  EXPECT_EQ(opened(), deployment::hosts().facebook.str() + "/5");
}

TEST_F(Events, ABadEventCostsItsCardAtMost) {
  publish(kTownPage, R"({"data":[null, 7, {"id":"a","name":"Senza data"},
    {"id":"b","name":"Data corta","start_time":"2017-1"},
    {"id":"c","name":{},"start_time":"2017-11-15T10:00:00"},
    {"id":"d","name":"Luogo strano","start_time":"2017-11-15T10:00:00","place":[1]},
    {"id":"e","name":"Fine strana","start_time":"2017-11-16T10:00:00","end_time":"2017-12-01","cover":7},
    {"id":"f","name":"Volte strane","start_time":"2017-11-16T10:00:00","event_times":"no"},
    {"id":"g","name":"Una volta","start_time":"2017-11-01","event_times":[null,
      {"id":"g1","start_time":"2017-11-20T10:00:00"},{"id":"g2","start_time":{}}]}]})");
  visit(kTownEvents);
  EXPECT_THAT(cards(), ElementsAre("Luogo strano\n\n\n15/11/2017  10:00",
                                   "Fine strana\n\n\n16/11/2017  10:00\n01/12/2017",
                                   "Una volta\n\n\n20/11/2017  10:00"));
  EXPECT_TRUE(phone.test.logged("events, record 1: no map but null"));
}

TEST_F(Events, NothingToShowAndNothingToReachAreTold) {
  publish(kTownPage, R"({"data":[]})");
  visit(kTownEvents);
  EXPECT_EQ(toast(), "Nessun evento trovato");
  EXPECT_TRUE(shows("Nessun elemento"));
  host.faults().add("/v2.9/", Fault::status(500));
  visit(kTownEvents);
  EXPECT_EQ(toast(), kNoConnection);
  EXPECT_FALSE(shows("Nessun elemento"));
  host.faults().clear();
  publish(kTownPage, "no json");
  visit(kTownEvents);
  EXPECT_THAT(ids(), IsEmpty());
}

TEST_F(Events, SportIsOneListOfAllClubsAsFarAsTheyCanBeReached) {
  publish("/InfoVarlo/config/master/sport.json", R"([{"URL":"primo","Nome":"Primo"}, null,
    {"Nome":"Senza pagina"}, {"URL":"../x","Nome":"Altrove"}, {"URL":"guasto","Nome":"Guasto"},
    {"URL":"secondo","Nome":"Secondo"}, {"URL":"terzo","Nome":"Terzo"}])");
  publish("/v2.9/primo/events", R"({"data":[
    {"id":"2","name":"Dopo","start_time":"2017-11-20T10:00:00","event_times":[{"id":"x"}]}]})");
  publish("/v2.9/guasto/events", "[]");
  publish("/v2.9/secondo/events",
          R"({"data":[{"id":"1","name":"Prima","start_time":"2017-11-18T10:00:00"}]})");
  publish("/v2.9/terzo/events", R"({"data":[]})");
  visit(kSport);
  EXPECT_EQ(title(), "Eventi - Associazioni sportive Varlo");
  EXPECT_THAT(cards(), ElementsAre("Prima\n\n\n18/11/2017  10:00\nSecondo",
                                   "Dopo\n\n\n20/11/2017  10:00\nPrimo"));
  host.faults().add("/v2.9/secondo", Fault::drop());
  visit(kSport);
  EXPECT_THAT(ids(), ElementsAre("2")) << "what was loaded before";
  EXPECT_EQ(toast(), kNoConnection);
}

TEST_F(Events, TheTokenAndTheNameOfTheAppGoToTheGraphOnly) {
  host.requests().clear();
  visit(kTownEvents);
  int graph = 0;
  for (const auto& request : host.requests().all()) {
    const bool toGraph = request.path.starts_with("/v2.9/");
    graph += toGraph;
    EXPECT_EQ(request.userAgent == "InfoVARLO", toGraph) << request.path;
    EXPECT_EQ(request.path.find("token") != std::string::npos, toGraph) << request.path;
    if (!toGraph) continue;
    EXPECT_EQ(request.path,
              "/v2.9/Comune.di.Varlo/events?fields=name,can_guests_invite,attending_count,"
              "interested_count,start_time,end_time,cover,place,event_times&limit=50"
              "&access_token=" +
                  deployment::graphToken().str());
  }
  EXPECT_EQ(graph, 1);
  EXPECT_EQ(deployment::graphToken().Length(), 166) << "Varlo's own; a town's may differ";
  EXPECT_GT(host.requests().count(kPicture), 0u);
}

TEST_F(Events, ACardKeepsItsSizeWhateverBecomesOfItsPicture) {
  publish(kTownPage, R"({"data":[
    {"id":"1","name":"Intera","start_time":"2017-11-15T10:00:00","cover":{"source":")" +
                         host.url() + R"(/immagini/eventi/1.png"}},
    {"id":"2","name":"Rotta","start_time":"2017-11-15T11:00:00","cover":{"source":")" +
                         host.url() + R"(/_bytes/50"}},
    {"id":"3","name":"Mancante","start_time":"2017-11-15T12:00:00","cover":{"source":")" +
                         host.url() + R"(/niente.png"}}]})");
  visit(kTownEvents);
  ASSERT_EQ(list()->_getsize(), 3);
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(card(row).Height(), 220);
    const double third = card(row).Width() / 3;
    const auto picture = KesImageViewWrapper::fromBoxed(card(row).GetView(1).object());
    EXPECT_EQ(picture.Bitmap().IsInitialized(), row == 0);
    EXPECT_EQ(picture.view().frame(), (ui::Rect{0, 0, 2 * third, 220}));
    EXPECT_EQ(card(row).GetView(3).view().frame(), (ui::Rect{third, 0, 2 * third, 220}));
  }
  lieDown();
  EXPECT_GT(card(0).Width(), 500);
  EXPECT_DOUBLE_EQ(card(0).GetView(3).view().frame().right(), card(0).Width())
      << "in landscape too";
}

}  // namespace
}  // namespace varlo
