// News and newsletter: the rows, the page composed from an item, the archive's order.
#include "platform/ui/controls/web_view.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr const char* kNewsPath = "/varlo/newsvarlo";
constexpr const char* kArchivePath = "/repos/comune-varlo/newsletter/contents/archivio";
enum { kNews = 50, kNewsletter = 51 };

class News : public LaunchedTest {
 protected:
  Trace rowsFor(int menuValue, const std::string& path, const std::string& document) {
    publish(path, document);
    visit(menuValue);
    return rowsOf(app()._clv);
  }
  std::string page() { return app()._web.native()->request().html; }
  std::string newsOf(const std::string& items) {
    return R"({"NewDataSet":{"Table":[)" + items + "]}}";
  }
};

TEST_F(News, AnItemIsARowAndOpensFromTheListWithoutAnotherRequest) {
  const auto rows = rowsFor(kNews, kNewsPath, newsOf(R"(
      {"Titolo":"Neve","DescrizioneBreve":"Mezzi pronti","IMG":"neve.png","Descrizione":"<p>Sale</p>"},
      {"Titolo":"Mercato","DescrizioneBreve":"Si sposta","Descrizione":"<p>Banchi</p>"},
      {"Titolo":"Nullo","IMG":null,"Descrizione":"<p>Vuoto</p>"})"));
  EXPECT_EQ(title(), "News Comune di Varlo");
  EXPECT_THAT(rows, ElementsAre("Neve\n\nMezzi pronti", "Mercato\n\nSi sposta", "Nullo\n\n"));
  const auto before = host.requests().count(kNewsPath);

  const std::string head =
      "<img style=\"max-width: 100%;\" src=\"" + host.url() + "/upload/varlo/notizie/";
  const std::pair<const char*, std::string> pages[] = {
      {"Mezzi pronti", head + "neve.png\"><p>Sale</p>"},
      {"Si sposta", "<p>Banchi</p>"},
      {"Nullo", head + "\"><p>Vuoto</p>"}};
  for (const auto& [row, html] : pages) {
    ASSERT_TRUE(enter(row)) << row;
    EXPECT_EQ(title(), "News");
    EXPECT_EQ(page(), html) << row;
    goBack();
  }
  EXPECT_EQ(host.requests().count(kNewsPath), before);
}

TEST_F(News, ADocumentWithoutItemsAndOneThatIsNotThereAreToldApart) {
  for (const char* document : {"{}", R"({"NewDataSet":{}})", R"({"NewDataSet":{"Table":[]}})"}) {
    EXPECT_THAT(rowsFor(kNews, kNewsPath, document), IsEmpty()) << document;
    EXPECT_TRUE(shows("Nessun elemento")) << document;
  }
  host.faults().add(kNewsPath, Fault::status(500));
  visit(kNews);
  EXPECT_EQ(toast(), kNoConnection);
  EXPECT_FALSE(shows("Nessun elemento"));
}

TEST_F(News, BadItemsCostTheirOwnRow) {
  const auto rows = rowsFor(kNews, kNewsPath, newsOf(R"(null,{"Titolo":"A"},"x",{"Titolo":[]},
      {"DescrizioneBreve":"senza titolo"},{"Titolo":"B","Descrizione":{}},{"Titolo":"C"})"));
  EXPECT_THAT(rows, ElementsAre("A\n\n", "C\n\n"));
  expectLogged({"newsvarlo, Table, record 1: ", "newsvarlo, Table, record 4: ",
                "newsvarlo, Table, record 6: \"Descrizione\""});
}

TEST_F(News, TheNewestIssueIsFirstAndIsFetchedUnderTheAppsName) {
  const std::string issue = host.url() + "/numeri/";
  host.documents().addFixed("/numeri/b.html", "text/html", "<p>Numero due</p>");
  const auto row = [&](const char* name, const char* file) {
    return R"({"name":")" + std::string(name) + R"(","download_url":")" + issue + file + R"("})";
  };
  const auto rows =
      rowsFor(kNewsletter, kArchivePath,
              "[" + row("2018-03-01-a", "a.html") + "," + row("2018-03-15-b", "b.html") + "," +
                  row("2018-03-15-c", "c.html") + R"(,null,{"name":"2019-01-01"}])");
  EXPECT_EQ(title(), "Newsletter Varlo");
  EXPECT_THAT(rows, ElementsAre("Newsletter del 15/03/2018", "Newsletter del 15/03/2018",
                                "Newsletter del 01/03/2018"));
  EXPECT_TRUE(phone.test.logged("archivio, record 5: \"download_url\" is missing"));

  host.faults().add("/numeri/b.html", Fault::delay(200));
  app()._clv_itemclick(1, app()._clv->_getvalue(1));
  phone.pump.advance(20);
  EXPECT_EQ(title(), "Newsletter") << "the page is there before its content";
  EXPECT_EQ(page(), "");
  settle();
  EXPECT_EQ(page(), "<p>Numero due</p>");
  for (const auto& request : host.requests().all()) {
    const bool ofTheArchive =
        request.path.starts_with("/numeri/") || request.path.starts_with(kArchivePath);
    EXPECT_EQ(request.userAgent == "InfoVARLO", ofTheArchive) << request.path;
  }
}

TEST_F(News, AnIssueThatCannotBeHadLeavesItsPageEmpty) {
  visit(kNewsletter);
  ASSERT_EQ(app()._clv->_getsize(), 24);
  host.faults().add("/comune-varlo/", Fault::drop());
  app()._clv_itemclick(0, app()._clv->_getvalue(0));
  settle();
  EXPECT_EQ(title(), "Newsletter");
  EXPECT_EQ(page(), "");
  EXPECT_EQ(toast(), kNoConnection);

  rowsFor(kNewsletter, kArchivePath, "nessun json");
  EXPECT_TRUE(phone.test.logged("Newsletter: Error parsing string"));
}

}  // namespace
}  // namespace varlo
