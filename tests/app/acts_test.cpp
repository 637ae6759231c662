// The archive of acts: what a row says, the search, the page of an act and its documents.
#include "town_phone.h"

namespace varlo {
namespace {

constexpr const char* kActsPath = "/varlo/storicoattidettjson";
constexpr const char* kAttachmentsPath = "/varlo/storicoattidettallegatijson";
constexpr int kActs = 55;

std::string act(const std::string& id, const std::string& more = "") {
  return R"({"ID":)" + id + R"(,"REG_ANNO":2017,"REG_NUM":12,"ATTO_ANNO":2016.9,"ATTO_NUM":"3",
    "DATA_REG":"2017-11-05T00:00:00","DATA_DOC":"2017","PROPONENTE":"Giunta",
    "SOTTOCATEGORIA":"DELIBERA","OGGETTO":"Strade")" +
         more + "}";
}

class Acts : public LaunchedTest {
 protected:
  void open(const std::string& acts) {
    publish(kActsPath, acts);
    visit(kActs);
  }
  Trace queries() { return asked(kActsPath); }
};

TEST_F(Acts, ARowTellsTheRegisterTheDatesAndTheSubject) {
  open("[" + act("7") + "]");
  EXPECT_EQ(title(), "Storico Atti Varlo");
  EXPECT_THAT(rowsOf(app()._clv), ElementsAre("Registro: 2017/12 Atto: 2016/3\n"
                                              "Data Registro: 05/11/2017 Data documento: \n"
                                              "Giunta\nDELIBERA\n\nStrade\n"));
  const std::pair<const char*, double> sizes[] = {
      {"Registro", 10}, {"Data", 10}, {"Giunta", 10}, {"DELIBERA", 16}, {"Strade", 14}};
  for (const auto& [part, size] : sizes)
    EXPECT_EQ(sizeOf(labelOf(app()._clv, 0), part), size) << part;
}

TEST_F(Acts, BadActsCostTheirOwnRow) {
  open("[null," + act("1") + R"(,{"ID":2},)" + act("[]") + "," + act("4", R"(,"OGGETTO":{})") +
       ",7," + act("\"5\"") + "]");
  EXPECT_EQ(app()._clv->_getsize(), 2);
  expectLogged({"storicoattidettjson, record 1: ", "record 3: \"REG_ANNO\"", "record 4: \"ID\"",
                "record 5: \"OGGETTO\"", "record 6: "});
}

TEST_F(Acts, TheSearchSendsTheTextAsItStandsAndOnlyWhenItIsAskedFor) {
  visit(kActs);
  EXPECT_EQ(app()._clv->_getsize(), 120);
  const auto search = [&](const char* text, const char* button) {
    ASSERT_TRUE(enter("Cerca")) << "the button of the bar";
    EXPECT_TRUE(shows("Ricerca per oggetto"));
    EXPECT_EQ(app()._atti_oggetto.Text(), "") << "the field opens empty";
    app()._atti_oggetto.setText(text);
    ASSERT_TRUE(enter(button));
    EXPECT_TRUE(phone.app.dialogs().empty());
  };
  search("mensa", "Annulla");
  EXPECT_EQ(queries().size(), 1u);
  EXPECT_EQ(app()._clv->_getsize(), 120);

  search("scolastica", "Cerca");
  EXPECT_THAT(queries().back(), HasSubstr("?oggetto=scolastica"));
  ASSERT_GT(app()._clv->_getsize(), 0);
  EXPECT_LT(app()._clv->_getsize(), 120);
  for (const auto& row : rowsOf(app()._clv)) EXPECT_THAT(row, HasSubstr("scolastica"));

  search("xyz", "Cerca");
  EXPECT_TRUE(shows("Nessun elemento"));

  const auto sent = queries().size();
  search("due parole", "Cerca");
  EXPECT_EQ(queries().size(), sent) << "no address has a blank in it";
  EXPECT_EQ(toast(), kNoConnection);
  EXPECT_FALSE(shows("Nessun elemento"));
  visit(kPharmacies);
  EXPECT_EQ(app()._home.TopRightButtons().Size(), 0) << "the search's button goes with its list";
}

TEST_F(Acts, AnActOpensWithItsDocumentsAndTheSenderTellsTheListsApart) {
  publish(
      kAttachmentsPath,
      R"([{"TITOLO":"Testo","LINK":"https://albo.varlo.example/1.pdf"},null,{"TITOLO":"Senza"}])");
  open("[" + act("20007.9") + "," + act("8") + "]");
  const auto list = app()._clv;
  ASSERT_TRUE(enter("Registro"));
  EXPECT_EQ(title(), "Storico atti - Dettaglio");
  EXPECT_THAT(asked(kAttachmentsPath).back(), HasSubstr("?id=20007"));
  EXPECT_TRUE(shows("Elenco documenti:"));
  EXPECT_THAT(rowsOf(app()._clv), ElementsAre("Testo"));
  EXPECT_NE(app()._clv, list);
  ASSERT_TRUE(enter("Testo"));
  EXPECT_EQ(opened(), "https://albo.varlo.example/1.pdf");
  ASSERT_TRUE(enter("Sito WEB"));
  EXPECT_EQ(opened(),
            deployment::hosts().acts.str() + "/web/albo/storico-atti/-/papca/display/20007");

  // Back on the list: a tap opens an act, and a search fills this list and not the other.
  goBack();
  app()._storicoatti_caricalista("");
  settle();
  EXPECT_EQ(list->_getsize(), 2);
  ASSERT_TRUE(enter("Strade"));
  EXPECT_EQ(title(), "Storico atti - Dettaglio");
}

TEST_F(Acts, WithoutItsDocumentsTheActsPageStaysEmpty) {
  open("[" + act("7") + "]");
  host.faults().add(kAttachmentsPath, Fault::status(500));
  ASSERT_TRUE(enter("Registro"));
  EXPECT_EQ(title(), "Storico atti - Dettaglio");
  EXPECT_FALSE(shows("Elenco documenti:"));
  EXPECT_EQ(toast(), kNoConnection);
  host.faults().clear();
  publish(kAttachmentsPath, "[]");
  goBack();
  ASSERT_TRUE(enter("Registro"));
  EXPECT_TRUE(shows("Elenco documenti:"));
  EXPECT_TRUE(shows("Nessun elemento"));
}

}  // namespace
}  // namespace varlo
