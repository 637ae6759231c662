// Waste collection: the street and its zone, the page of a zone, its buttons and faults.
#include <bit>

#include "app/kit/contrast.h"
#include "app/mappe/modmaps.h"
#include "app/rifiuti/rifiuti.h"
#include "runtime/views/pages/bar_button_item.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr int kWaste = 22;
constexpr const char *kStreets = "/InfoVarlo/raccoltarifiuti/master/zone.json",
                     *kCalendar = "/InfoVarlo/raccoltarifiuti/master/config.json";

class Waste : public LaunchedTest {
 protected:
  static kes_rifiuti& waste() { return kes_rifiuti::instance(); }

  Waste() {
    publish(kStreets, R"([{"NOME":"Via Roma","ZONA":"A"}, null, {"NOME":"Via senza zona"},
      {"ZONA":"B"}, {"NOME":"Via Po","ZONA":"B"}, {"NOME":{},"ZONA":"B"},
      {"NOME":"Viale Romagna","ZONA":7}])");
  }
  // A calendar with two zones and whatever else is given.
  void publishCalendar(const std::string& more = "") {
    publish(kCalendar, R"({"NOTE":"Dopo le 20.","ZONE":{
      "A":{"COLOR":"#FFE000","DAY1":{"NAME":"Lunedì"},"DAY2":{"NAME":"Giovedì"}},
      "7":{"COLOR":"#102040","DAY1":{"NAME":"Martedì"},"DAY2":{"NAME":"Venerdì"}}})" +
                           more + "}");
  }
  void openZone(const std::string& zone) {
    visit(kWaste);
    waste()._caricazona(zone);
    settle();
  }
  void pressCambiaVia() {
    const auto buttons = waste()._home.TopRightButtons();
    ASSERT_EQ(buttons.Size(), 1);
    KesBarButtonItemWrapper::fromBoxed(buttons.Get(0)).native()->press();
    settle();
  }
  Trace streetsFor(std::string_view text) {
    waste()._sv->_et.native()->userEdited("");
    waste()._sv->_et.native()->userEdited(std::string(text));
    settle();
    Trace rows;
    for (int i = 0; i < waste()._sv->_lv.Size(); ++i)
      rows.push_back(waste()._sv->_lv.GetItem(0, i).PlainText().str());
    return rows;
  }
  static bool zoneStored() { return waste()._kvs->_containskey("ZONARIFIUTI"); }
  std::size_t asked(const char* path) { return host.requests().count(path); }
  static double pageHeight() { return waste()._svw.ContentHeight(); }
};

TEST_F(Waste, TheStreetIsAskedForOnceAndItsZoneOpensFromThenOn) {
  publishCalendar();
  visit(kWaste);
  EXPECT_EQ(title(), "Raccolta rifiuti");
  EXPECT_TRUE(waste()._sv->_et.HintText() == "Seleziona via");
  EXPECT_THAT(streetsFor("ROMA"), ElementsAre("Via Roma", "Viale Romagna"))
      << "streets without a name or a zone are left out";
  EXPECT_FALSE(zoneStored());
  ASSERT_TRUE(enter("Viale Romagna"));
  EXPECT_TRUE(shows("ZONA 7"));
  EXPECT_TRUE(waste()._kvs->_getsimple("ZONARIFIUTI") == "7");
  EXPECT_FALSE(shows("Seleziona via"));

  const auto streets = asked(kStreets);
  goBack();
  visit(kWaste);
  EXPECT_TRUE(shows("Venerdì"));
  EXPECT_EQ(asked(kStreets), streets) << "nothing is asked where the zone is known";

  pressCambiaVia();
  EXPECT_FALSE(zoneStored()) << "opening the search forgets the zone";
  EXPECT_TRUE(shows("Seleziona via"));
  app()._navcontrol.RemoveCurrentPage2(false);
  visit(kWaste);
  EXPECT_TRUE(shows("Seleziona via"));
}

TEST_F(Waste, ThePageOfAZoneIsAsHighAsWhatItHas) {
  const char* const optional[] = {
      R"(,"MAPPA":{"Nome":"Sacchi"})", R"(,"PIATTAFORMA":{"Name":"Piattaforma"})",
      R"(,"LINK":{"Title":"Guida completa","Link":"https://varlo.example/guida"})"};
  const char* const names[] = {"Mappa ritiro sacchi", "Piattaforma Ecologica", "Guida completa"};
  double least = 0;
  for (int chosen = 0; chosen < 8; ++chosen) {
    std::string more;
    for (int i = 0; i < 3; ++i)
      if (chosen & 1 << i) more += optional[i];
    publishCalendar(more);
    openZone("A");
    if (chosen == 0) least = pageHeight();
    EXPECT_EQ(pageHeight(), least + 50 * std::popcount(static_cast<unsigned>(chosen))) << more;
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(shows(names[i]), (chosen & 1 << i) != 0) << names[i] << more;
  }
  for (const char* text : {"ZONA A", "ORARIO DI ESPOSIZIONE\nDopo le 20.", "Giorno di ritiro",
                           "Lunedì", "UMIDO", "CARTA", "PLASTICA", "Giovedì", "VETRO", "SECCO"})
    EXPECT_TRUE(shows(text)) << text;
}

TEST_F(Waste, TheButtonsDoWhatTheySay) {
  publishCalendar(R"(,"RIFIUTI":{"VETRO":{"SI":"Bottiglie","NO":"Specchi"},"CARTA":{"SI":"Libri"},
      "UMIDO":3},
    "MAPPA":{"Nome":"Sacchi","URL":"http://nowhere.varlo.example/"},
    "PIATTAFORMA":{"Name":"La piattaforma","Contacts":[{"Title":"Tel","Value":"0123","Type":0}]},
    "LINK":{"Title":"Guida","Link":"https://varlo.example/guida"})");
  openZone("A");
  const auto dialogAfter = [&](const char* button) {
    EXPECT_TRUE(tap(button));
    settle();
    const std::string text = dialogText();
    if (!text.empty()) tap("OK");
    settle();
    return text;
  };
  EXPECT_EQ(dialogAfter("VETRO"), "VETRO: SI\nBottiglie\nNO\nSpecchi");
  EXPECT_EQ(dialogAfter("CARTA"), "CARTA: SI\nLibri\nNO\n");
  EXPECT_EQ(dialogAfter("UMIDO"), "");
  EXPECT_EQ(dialogAfter("SECCO"), "");
  EXPECT_TRUE(phone.test.logged("\"UMIDO\" is not a map"));
  EXPECT_EQ(dialogAfter("Lunedì"), "");
  ASSERT_TRUE(tap("Guida"));
  EXPECT_EQ(opened(), "https://varlo.example/guida");
  ASSERT_TRUE(enter("Piattaforma Ecologica"));
  EXPECT_EQ(title(), "La piattaforma");
  EXPECT_TRUE(shows("0123"));
  app()._navcontrol.RemoveCurrentPage2(false);
  ASSERT_TRUE(tap("Mappa ritiro sacchi"));
  EXPECT_TRUE(app()._modmaps->_datimappa.Get("Nome") == Value("Sacchi"));
  settle();
}

TEST_F(Waste, AFaultyCalendarShowsWhatItCan) {
  struct Case {
    const char* what;
    std::string document;
    std::vector<const char*> shown, missing;
    const char* logged;
  };
  const std::string days = R"("DAY1":{"NAME":"Lunedì"},"DAY2":{"NAME":"Giovedì"})";
  const Case cases[] = {
      {"a colour by name",
       R"({"ZONE":{"A":{"COLOR":"red",)" + days + "}}}",
       {"ZONA A", "Giovedì", "SECCO"},
       {},
       "config.json: "},
      {"no colour", R"({"ZONE":{"A":{)" + days + "}}}", {"ZONA A", "SECCO"}, {}, "\"COLOR\""},
      {"one day",
       R"({"ZONE":{"A":{"COLOR":"#123456","DAY1":{"NAME":"Lunedì"}}},"MAPPA":{}})",
       {"ZONA A", "Lunedì", "PLASTICA", "Giorno di ritiro"},
       {"SECCO", "Mappa"},
       "\"DAY2\""},
      {"another zone", R"({"ZONE":{"B":{}},"MAPPA":{}})", {}, {"ZONA", "Mappa"}, nullptr},
      {"a zone that is none", R"({"ZONE":{"A":[]}})", {}, {"ZONA"}, "\"A\" is not a map"},
      {"no zones", "{}", {}, {"ZONA"}, "\"ZONE\" is missing"},
      {"a link without an address",
       R"({"ZONE":{"A":{)" + days + R"(}},"LINK":{"Title":"Guida"}})",
       {"SECCO"},
       {"Guida"},
       "\"Link\" is missing"},
      {"no object", "[]", {}, {"ZONA"}, "config.json"},
      {"no JSON", "<html>", {}, {"ZONA"}, "config.json"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    publish(kCalendar, c.document);
    phone.test.clearLog();
    openZone("A");
    for (const char* text : c.shown) EXPECT_TRUE(shows(text)) << text;
    for (const char* text : c.missing) EXPECT_FALSE(shows(text)) << text;
    EXPECT_TRUE(!c.logged || phone.test.logged(c.logged)) << c.logged;
    EXPECT_EQ(waste()._home.TopRightButtons().Size(), 1) << "another street can be chosen";
    const auto& content = waste()._svw.Panel().view();
    for (const auto& view : content.children())
      EXPECT_LE(view->frame().bottom(), content.bounds().height) << "out of the finger's reach";
  }
}

TEST_F(Waste, WithoutAConnectionNothingIsLost) {
  host.faults().add(kStreets, Fault::drop());
  visit(kWaste);
  EXPECT_EQ(toast(), kNoConnection);
  EXPECT_THAT(streetsFor("roma"), IsEmpty());
  EXPECT_FALSE(zoneStored());
  waste()._kvs->_putsimple("ZONARIFIUTI", "A");
  host.faults().clear();
  host.faults().add(kCalendar, Fault::status(404));
  visit(kWaste);
  EXPECT_EQ(toast(), kNoConnection);
  EXPECT_TRUE(zoneStored());
  EXPECT_FALSE(shows("ZONA"));
  EXPECT_EQ(waste()._svw.ContentHeight(), 100);
  publishCalendar();
  host.faults().clear();
  pressCambiaVia();
  ASSERT_THAT(streetsFor("via roma"), ElementsAre("Via Roma"));
  ASSERT_TRUE(enter("Via Roma"));
  EXPECT_TRUE(shows("ZONA A"));
}

// Each leaves the page while something is on its way, or comes to it again.
TEST_F(Waste, LateAnswersHarmNobody) {
  publishCalendar();
  host.faults().add("/InfoVarlo/raccoltarifiuti", Fault::delay(150));
  choose(kWaste);
  app()._navcontrol.RemoveCurrentPage2(false);
  visit(kWaste);
  EXPECT_THAT(streetsFor("po"), ElementsAre("Via Po"));
  waste()._caricazona("A");
  phone.pump.drain();
  waste()._setting_click();
  settle();
  EXPECT_FALSE(shows("ZONA A")) << "the search was asked for last";
  EXPECT_THAT(streetsFor("po"), ElementsAre("Via Po"));
  visit(kHome);
}

TEST_F(Waste, ThePageFollowsThePhoneWhenItIsTurned) {
  publishCalendar(R"(,"LINK":{"Title":"Guida","Link":"https://varlo.example/guida"})");
  openZone("A");
  const double upright = pageHeight();
  for (const ui::Size size : {ui::Size{568, 320}, {320, 568}}) {
    turn(size);
    EXPECT_EQ(waste()._svw.Width(), size.width);
    EXPECT_EQ(waste()._svw.ContentWidth(), size.width);
    EXPECT_EQ(waste()._lblzona.Width(), size.width - 20);
    for (const char* text : {"ZONA A", "SECCO", "Guida"}) EXPECT_TRUE(shows(text)) << text;
  }
  EXPECT_EQ(pageHeight(), upright);
}

TEST_F(Waste, TheSearchFollowsThePhoneAndStaysAboveTheKeyboard) {
  phone.screen.keyboard = 216;
  visit(kWaste);
  const auto field = [&] { return waste()._sv->_et.view().frameInWindow(); };
  const auto list = [&] { return waste()._sv->_lv.view().frameInWindow(); };
  for (const ui::Size size : {ui::Size{568, 320}, {320, 568}}) {
    turn(size);
    EXPECT_NEAR(field().width, size.width - 2 * field().x, 1);
    EXPECT_NEAR(list().width, field().width, 0.01);
    EXPECT_NEAR(list().y, field().bottom(), 0.01);
    EXPECT_NEAR(list().bottom(), size.height, 0.01);
  }
  waste()._sv->_et.RequestFocus();
  phone.pump.drain();
  EXPECT_NEAR(list().bottom(), 568 - 216, 0.01);
  waste()._sv->_et.ResignFocus();
  phone.pump.drain();
  EXPECT_NEAR(list().bottom(), 568, 0.01);
}

TEST_F(Waste, ColoursAreReadByPairsAndTextStandsOutFromThem) {
  const std::pair<const char*, std::uint32_t> colours[] = {
      {"#CE924F", 0xFFCE924F}, {"#00a1e3", 0xFF00A1E3}, {"-FFFFFF and more", 0xFFFFFFFF}};
  for (const auto& [text, argb] : colours)
    EXPECT_EQ(static_cast<std::uint32_t>(waste()._getcolor(text)), argb) << text;
  for (const char* text : {"", "red", "#12345", "#GGGGGG", "#-1-1-1", "# 1 2 3"})
    EXPECT_THROW(waste()._getcolor(text), KesException) << text;

  for (const char* color :
       {"#CE924F", "#F493AE", "#F9A51B", "#253F8E", "#00A1E3", "#FFFFFF", "#000000", "#777777"}) {
    auto button = waste()._getbutton("CARTA", color, 120, "btn");
    const auto ink = button.TextColor();
    EXPECT_GE(contrast(ink, button.Color()), 4.5) << color;
    EXPECT_EQ(ink == KesColors::Black, contrast(KesColors::Black, button.Color()) >= 4.5) << color;
  }
  const auto button = waste()._getbutton("CARTA", "#F493AE", 120, "btn");
  EXPECT_EQ(button.Width(), 120);
  EXPECT_EQ(button.Height(), 40);
  EXPECT_EQ(button.Font().Size(), 16);
  EXPECT_EQ(button.view().border().width, 3);
  EXPECT_EQ(button.view().border().radius, 5);
}

}  // namespace
}  // namespace varlo
