// What the town hall publishes: news, newsletters and acts, right for any day.
#include <gmock/gmock.h>

#include <set>

#include "support.h"
#include "townhost/hall/italian_dates.h"

namespace town {
namespace {

using test::get;
using test::json;
using testing::HasSubstr;

// A day in the middle, the year's ends, a leap day, the two clock changes at night.
constexpr const char* kDays[] = {"2026-11-21T20:00", "2026-12-31T23:30", "2027-01-01T00:15",
                                 "2028-02-29T12:00", "2026-03-29T02:30", "2026-10-25T02:30"};

std::string pathOf(const TownHost& host, std::string url) {
  EXPECT_TRUE(url.starts_with(host.url() + "/")) << url;
  return url.substr(host.url().size());
}

TEST(TownHall, NewsHavePicturesAndNoDateIsLeftOpen) {
  for (const char* now : kDays) {
    const TownHost host(test::on(now));
    const auto document = json(get(host, "/varlo/newsvarlo").body());
    const auto& items = document["NewDataSet"]["Table"];
    ASSERT_EQ(items.Size(), 20u) << now;
    for (const auto& item : items.GetArray())
      for (const char* key : {"Titolo", "DescrizioneBreve", "Descrizione"}) {
        EXPECT_GT(item[key].GetStringLength(), 10u) << key;
        EXPECT_EQ(std::string(item[key].GetString()).find('{'), std::string::npos)
            << item[key].GetString();
      }
  }
  const TownHost host;
  const auto document = json(get(host, "/varlo/newsvarlo").body());
  std::set<std::string> pictures;
  for (const auto& item : document["NewDataSet"]["Table"].GetArray()) {
    const auto picture = get(host, std::string("/upload/varlo/notizie/") + item["IMG"].GetString());
    EXPECT_EQ(picture.header("Content-Type"), "image/png");
    EXPECT_EQ(picture.body().substr(1, 3), "PNG") << item["IMG"].GetString();
    pictures.insert(picture.body());
  }
  EXPECT_EQ(pictures.size(), 20u) << "a picture each";
}

TEST(TownHall, DatesAreWrittenAsTheTownWritesThem) {
  const CivilDay saturday{std::chrono::year(2026) / 11 / 21};
  EXPECT_EQ(dated("{sab}|{sab2}|{dom}|{+0}|{-21}|{+10}|{x}|{", saturday),
            "sabato 28 novembre|sabato 5 dicembre|domenica 22 novembre|sabato 21 novembre|"
            "sabato 31 ottobre|martedì 1º dicembre|{x}|{");
  EXPECT_EQ(shortWordsFor(saturday), "21 novembre 2026");
}

TEST(TownHall, TheArchiveHoldsTheLastIssuesOfAnyDay) {
  for (const char* now : kDays) {
    const TownHost host(test::on(now));
    const auto list =
        json(get(host, "/repos/comune-varlo/newsletter/contents/archivio?ref=master").body());
    ASSERT_EQ(list.Size(), 24u);
    std::string former;
    for (const auto& issue : list.GetArray()) {
      const std::string name = issue["name"].GetString();
      EXPECT_LT(former, name);
      EXPECT_LE(name.substr(0, 10), std::string(now).substr(0, 10));
      former = name;
    }
    const auto& newest = list[23];
    const auto page = get(host, pathOf(host, newest["download_url"].GetString()));
    EXPECT_EQ(page.status(), 200) << now;
    EXPECT_THAT(page.body(), HasSubstr("Varlo informa"));
  }

  const TownHost host(test::on("2026-11-21T12:00"));
  const auto status = [&](const std::string& name) {
    return get(host, "/comune-varlo/newsletter/master/archivio/" + name).status();
  };
  EXPECT_EQ(status("2013-01-04-newsletter.html"), 200) << "listed long ago";
  for (const char* name : {"2026-12-04-newsletter.html", "2026-11-19-newsletter.html",
                           "2012-12-21-newsletter.html", "newsletter.html", ""})
    EXPECT_EQ(status(name), 404) << name;
}

TEST(TownHall, ActsAreNumberedDatedAndFoundByTheirSubject) {
  for (const char* now : kDays) {
    const TownHost host(test::on(now));
    const auto list = json(get(host, "/varlo/storicoattidettjson?oggetto=").body());
    ASSERT_EQ(list.Size(), 120u);
    std::set<int> ids;
    std::set<std::pair<int, int>> registered;
    std::string former = std::string(now).substr(0, 10) + "T99";
    for (const auto& act : list.GetArray()) {
      ids.insert(act["ID"].GetInt());
      registered.insert({act["REG_ANNO"].GetInt(), act["REG_NUM"].GetInt()});
      const std::string date = act["DATA_REG"].GetString();
      EXPECT_LE(date, former) << "the newest first";
      EXPECT_LE(std::string(act["DATA_DOC"].GetString()), date) << "written, then registered";
      EXPECT_EQ(std::stoi(date), act["REG_ANNO"].GetInt());
      former = date;
    }
    EXPECT_EQ(ids.size(), 120u) << now;
    EXPECT_EQ(registered.size(), 120u) << now;
  }

  const TownHost host;
  const auto found = [&](const std::string& words) {
    return json(get(host, "/varlo/storicoattidettjson?oggetto=" + words).body()).Size();
  };
  EXPECT_GT(found("viabilit%C3%A0"), 0u);
  EXPECT_EQ(found("VIABILITA"), found("viabilit%C3%A0"));
  EXPECT_LT(found("mensa"), 120u);
  EXPECT_GT(found("mensa"), 0u);
  EXPECT_EQ(found("xyzzy"), 0u);
}

TEST(TownHall, AnActHasItsPapers) {
  const TownHost host;
  const auto acts = json(get(host, "/varlo/storicoattidettjson").body());
  std::size_t without = 0;
  for (const auto& act : acts.GetArray()) {
    const auto papers = json(
        get(host, "/varlo/storicoattidettallegatijson?id=" + std::to_string(act["ID"].GetInt()))
            .body());
    ASSERT_TRUE(papers.IsArray());
    if (papers.Empty()) ++without;
  }
  EXPECT_GT(without, 0u);
  EXPECT_LT(without, 20u);
  const auto papers = json(
      get(host, "/varlo/storicoattidettallegatijson?id=" + std::to_string(acts[0]["ID"].GetInt()))
          .body());
  const auto paper = get(host, pathOf(host, papers[0]["LINK"].GetString()));
  EXPECT_EQ(paper.header("Content-Type"), "application/pdf");
  EXPECT_EQ(paper.body().substr(0, 4), "%PDF");
  EXPECT_EQ(json(get(host, "/varlo/storicoattidettallegatijson?id=1").body()).Size(), 0u);
}

}  // namespace
}  // namespace town
