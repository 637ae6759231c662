// Daily menus: which post is today's menu and what of it is shown. The phone's day is
// Wednesday, 15 November 2017.
#include "app/menu/menudelgiorno.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr int kDayMenus = 5;

class DayMenu : public LaunchedTest {
 protected:
  static kes_menudelgiorno& module() { return kes_menudelgiorno::instance(); }
  void open(const std::string& page) {
    publish("/v2.9/nando", page);
    module()._caricadati(mapOf(R"({"Nome":"Nando","Type":"Facebook","URL":"nando"})"));
    settle();
  }
  void openPosts(const std::string& posts) { open(R"({"posts":{"data":[)" + posts + "]}}"); }
  std::string post(const std::string& message, const std::string& more = "",
                   const std::string& time = "2017-11-15T10:00:00+0000") {
    return R"({"message":")" + message + R"(","created_time":")" + time + "\"" + more + "}";
  }
  std::string media(const std::string& sizes) {
    return R"({"media":{"image":{"src":")" + host.url() + R"(/immagini/menu/0.png")" + sizes +
           "}}}";
  }
  static KesPanelWrapper page() { return module()._ppost.Panel(); }
  std::string text() { return page().GetView(0).view().displayText(); }
  // Of the pictures below the text.
  std::vector<int> heights() {
    std::vector<int> all;
    for (int i = 1; i < page().NumberOfViews(); ++i)
      all.push_back(static_cast<int>(page().GetView(i).Height()));
    return all;
  }
  static constexpr const char* kMissing = "MENU ANCORA NON PRESENTE";
};

TEST_F(DayMenu, TheListShowsEveryRestaurantAndEachOpensItsPage) {
  visit(kDayMenus);
  EXPECT_EQ(title(), "Menu del giorno");
  EXPECT_EQ(rowsOf(app()._clv).size(), 6u);
  ASSERT_TRUE(enter("Trattoria da Nando"));
  EXPECT_EQ(title(), "Menu mercoledì 15 novembre 2017");
  EXPECT_EQ(module()._ltitle.Text(), "Trattoria da Nando");
  EXPECT_EQ(module()._laddress.Text(), "Via Mazzini 14, Varlo");
  EXPECT_TRUE(module()._logo.Bitmap().IsInitialized());
  EXPECT_THAT(text(), HasSubstr("#menudelgiorno"));
  EXPECT_THAT(heights(), testing::SizeIs(1));
  module()._caricadati(mapOf(R"({"Nome":"Altro","Type":"Sito","URL":"x"})"));
  settle();
  EXPECT_EQ(page().NumberOfViews(), 0) << "a page with its title only";
}

TEST_F(DayMenu, TheFirstPostOfTodayWithTheHashtagIsTheMenu) {
  const struct {
    std::string posts, shown;
  } cases[] = {
      {post("ciao") + "," + post("uno #menudelgiorno") + "," + post("due #menudelgiorno"),
       "uno #menudelgiorno"},
      {post("con #menùdelgiorno accento"), "con #menùdelgiorno accento"},
      {post("#MenuDelGiorno"), kMissing},
      {post("#menudelgiorno", "", "2017-11-14T23:00:00+0000"), kMissing},
      {post("#menudelgiorno", "", "2017"), kMissing},
      {R"(null, {"message":[1],"created_time":"2017-11-15"}, {"created_time":7},)" +
           post("dopo i guasti #menudelgiorno"),
       "dopo i guasti #menudelgiorno"},
      {post("1") + "," + post("2") + "," + post("3") + "," + post("4") + "," + post("5") + "," +
           post("sesto #menudelgiorno"),
       kMissing},
      {"", kMissing},
  };
  for (const auto& c : cases) {
    openPosts(c.posts);
    EXPECT_EQ(text(), c.shown) << c.posts;
  }
  open("{}");
  EXPECT_EQ(text(), kMissing);
  open(R"({"name":{},"phone":["1"],"location":{"street":"Via"},"picture":3,
    "posts":{"data":[)" +
       post("resta #menudelgiorno") + "]}}");
  EXPECT_EQ(text(), "resta #menudelgiorno");
}

TEST_F(DayMenu, PicturesStandBelowTheTextInTheirProportion) {
  const auto attached = [&](const std::string& data) {
    openPosts(post("#menudelgiorno", R"(,"attachments":{"data":[)" + data + "]}"));
    return heights();
  };
  const double width = [&] {
    attached("");
    return module()._ppost.Width();
  }();
  const auto high = [&](double proportion) { return static_cast<int>(width * proportion); };
  const std::string wide = media(R"(,"width":800,"height":400)");
  EXPECT_THAT(attached(wide), ElementsAre(high(0.5)));
  EXPECT_THAT(attached(wide + "," + wide), IsEmpty());
  EXPECT_THAT(attached(R"({"subattachments":{"data":[null,)" + wide + R"(,{"media":7},)" +
                       media(R"(,"width":100,"height":200)") + "]}}"),
              ElementsAre(high(0.5), high(2)));
  // Sizes that are none count as a photograph's; none is higher than 10,000 points.
  for (const char* sizes :
       {"", R"(,"width":0,"height":0)", R"(,"width":-4,"height":3)", R"(,"width":10,"height":"x")"})
    EXPECT_THAT(attached(media(sizes)), ElementsAre(high(0.75))) << sizes;
  attached(wide);
  lieDown();
  EXPECT_GT(page().GetView(0).Width(), 500);
  EXPECT_THAT(heights(), ElementsAre(static_cast<int>(module()._ppost.Width() * 0.5)));
  EXPECT_THAT(attached(media(R"(,"width":1,"height":1e300)")), ElementsAre(10000));
  EXPECT_LE(module()._ppost.ContentHeight(), 10100);
  EXPECT_EQ(page().GetView(1).Tag().textView(), host.url() + "/immagini/menu/0.png");
}

TEST_F(DayMenu, ThePageThatCannotBeHadIsTold) {
  host.faults().add("/v2.9/", Fault::drop());
  open("{}");
  EXPECT_EQ(toast(), kNoConnection);
  host.faults().clear();
  open("<html>");
  EXPECT_EQ(page().NumberOfViews(), 0);
}

}  // namespace
}  // namespace varlo
