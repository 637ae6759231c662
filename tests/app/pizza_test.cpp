// Pizza prices: what a row says on a day, and the cache of the pictures. The phone's day is
// Wednesday, 15 November 2017.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/pizza/modpizzaprezzi.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr int kPizza = 3;
constexpr const char *kCatalogue = "/InfoVarlo/pizzaprezzi/master/menu.json",
                     *kContents = "/repos/InfoVarlo/pizzaprezzi/contents/";

class Pizza : public LaunchedTest {
 protected:
  Trace list(const std::string& catalogue) {
    publish(kCatalogue, catalogue);
    visit(kPizza);
    return rowsOf(app()._clv);
  }
  void open(const std::string& shop) {
    kes_modpizzaprezzi::instance()._pizzaprezzi_caricapizzeria(mapOf(shop));
    settle();
  }
  // The heights of the pictures shown, top to bottom.
  std::vector<int> pictures() {
    std::vector<int> heights;
    auto& shown = kes_modpizzaprezzi::instance()._pcontent;
    const auto page = KesScrollView::fromBoxed(shown.GetView(0).object()).Panel();
    for (int i = 0; i < page.NumberOfViews(); ++i)
      heights.push_back(static_cast<int>(page.GetView(i).Height()));
    return heights;
  }
  std::filesystem::path folder(const std::string& name) {
    return std::filesystem::path(File().DirTemp().str()) / name;
  }
  std::size_t filesIn(const std::string& name) {
    std::error_code none;
    std::size_t count = 0;
    for (std::filesystem::directory_iterator it(folder(name), none), end; it != end; ++it) ++count;
    return count;
  }
  std::string picture() {
    return host.url() + "/InfoVarlo/pizzaprezzi/master/IlTrancio/listino-1.png";
  }
};

constexpr const char* kGino = R"({"Title":"Gino","Folder":"IlTrancio","LastUpdate":"03/10/2017"})";

TEST_F(Pizza, ARowSaysTodaysHoursAndTodaysOffer) {
  const auto rows = list(R"([
    {"Type":"Asporto","Title":"Due orari","location":{"street":"Via Roma"},
     "hours":{"wed_1_open":"12:00","wed_1_close":"14:00","wed_2_open":"18:00","wed_2_close":"23:00"},
     "offer":{"wed":"Due per uno","thu":"Altro"}},
    {"Type":"A","Title":"Solo sera","hours":{"wed_2_open":"18:00","wed_2_close":"23:00","wed_1_open":"9"}},
    {"Type":"A","Title":"Chiuso","location":{},"hours":{"thu_1_open":"12:00","thu_1_close":"14:00"}},
    {"Type":"A","Title":"Senza orari","offer":{"thu":"Altro"}},
    null, {"Type":"A"}, {"Title":"Strano","hours":[]}, {"Title":"Ultimo"}])");
  EXPECT_THAT(rows, ElementsAre("   Asporto\nDue orari\nVia Roma\n\nOrario di apertura\n"
                                "Dalle 12:00 alle 14:00\nDalle 18:00 alle 23:00\n\n"
                                "Offerte del Giorno\nDue per uno",
                                "   A\nSolo sera\n\nOrario di apertura\nDalle 18:00 alle 23:00",
                                "   A\nChiuso\n\nOrario di apertura\nOGGI CHIUSO",
                                "   A\nSenza orari", "   \nUltimo"));
  EXPECT_EQ(title(), "PizzaPrezzi");
}

TEST_F(Pizza, TheSecondOpeningDownloadsNothingUntilThePicturesChange) {
  const auto fetched = [&] {
    return host.requests().count("/InfoVarlo/pizzaprezzi/master/IlTrancio/listino-1.png");
  };
  host.requests().clear();
  open(kGino);
  EXPECT_EQ(title(), "Gino");
  const auto upright = pictures();
  ASSERT_THAT(upright, testing::SizeIs(1));
  EXPECT_EQ(filesIn("IlTrancio-03-10-2017"), 1u);
  for (const auto& request : host.requests().all())
    EXPECT_EQ(request.userAgent == "InfoVARLO", request.path.starts_with(kContents));
  open(kGino);
  EXPECT_EQ(fetched(), 1u);
  lieDown();
  EXPECT_NEAR(pictures().at(0), upright[0] * 568 / 320, 2) << "as wide as the page";
  open(R"({"Title":"Gino","Folder":"IlTrancio","LastUpdate":"04/10/2017"})");
  EXPECT_EQ(fetched(), 2u);
  EXPECT_EQ(filesIn("IlTrancio-04-10-2017"), 1u);
}

TEST_F(Pizza, WhatIsNotWholeIsFetchedAgain) {
  host.faults().add("/InfoVarlo/pizzaprezzi/master/IlTrancio", Fault::truncate(2000));
  open(kGino);
  EXPECT_EQ(toast(), "Errore in download menu");
  EXPECT_EQ(filesIn("IlTrancio-03-10-2017"), 0u) << "nothing half is left";
  host.faults().clear();
  open(kGino);
  EXPECT_THAT(pictures(), testing::SizeIs(1));
  // Left by something else: empty, cut off, no picture.
  for (const std::string content : {"", "\x89PNG\r\n", "niente"}) {
    std::ofstream(folder("IlTrancio-03-10-2017") / "listino-1.png", std::ios::trunc) << content;
    open(kGino);
    EXPECT_THAT(pictures(), testing::SizeIs(1)) << content;
  }
}

TEST_F(Pizza, NamesFromTheServiceStayInTheirFolder) {
  const auto entriesThere = [&] {
    const std::filesystem::recursive_directory_iterator all(folder("").parent_path().parent_path());
    return std::distance(begin(all), end(all));
  };
  const auto before = entriesThere();
  std::string entries;
  for (const char* name : {"../fuori.png", "a/b.png", "..", "", "/tmp/fuori.png", "a\\u0000.png"})
    entries += R"({"name":")" + std::string(name) + R"(","download_url":")" + picture() + R"("},)";
  publish(std::string(kContents) + "X", "[" + entries + R"(null,{"name":"sola.png"},
    {"name":"buona.png","download_url":")" + picture() +
                                            R"("}])");
  open(R"({"Title":"X","Folder":"X","LastUpdate":"1"})");
  EXPECT_THAT(pictures(), testing::SizeIs(1));
  EXPECT_TRUE(phone.test.logged("X, record 1: \"../fuori.png\" is no file name"));
  EXPECT_TRUE(phone.test.logged("X, record 4: \"\" is no file name"));
  open(R"({"Title":"Su","Folder":"..","LastUpdate":""})");
  open(R"({"Title":"Su","LastUpdate":"1"})");
  EXPECT_THAT(std::exchange(faults, {}), ElementsAre("\"Folder\" is missing"));
  EXPECT_LE(entriesThere() - before, 4) << "two folders and the one picture";
}

TEST_F(Pizza, AFolderThatCannotBeListedSaysNothingOfItsOwn) {
  host.faults().add(kContents, Fault::status(404));
  open(kGino);
  EXPECT_THAT(pictures(), IsEmpty());
  EXPECT_EQ(toast(), "");
}

}  // namespace
}  // namespace varlo
