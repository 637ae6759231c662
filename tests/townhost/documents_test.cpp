// That the town's documents offer every case; whether they are sound is the checker's to say,
// whose tests ask it of many a day.
#include <gmock/gmock.h>

#include <map>
#include <set>

#include "support.h"
#include "townhost/pharmacy_turns.h"
#include "townhost/school_menus.h"

namespace town {
namespace {

using rapidjson::Value;
using test::get;
using test::json;

const std::string turns = "/InfoVarlo/farmacie/master/turni.json";
const std::string directory = "/InfoVarlo/infocitta/master/";
const std::string waste = "/InfoVarlo/raccoltarifiuti/master/";
const std::string menus = "/InfoVarlo/menuscuola/master/";

bool isText(const Value& object, const char* key) {
  return object.HasMember(key) && object[key].IsString();
}

TEST(TownDocuments, TurnsRotateAndRestOnSundays) {
  const std::vector<std::string> keys = {"A", "B", "C", "D", "E"};
  // The Unix epoch lies in the middle: the rota must not stumble over it.
  for (const char* middle : {"1970-01-01", "2026-01-01"}) {
    const auto day = dayAt(test::at(middle));
    const auto all = turnsAround(day, 50, keys);
    ASSERT_EQ(all.size(), 101u);
    for (std::size_t i = 1; i < all.size(); ++i) {
      const bool sunday = std::chrono::weekday(all[i].day) == std::chrono::Sunday;
      EXPECT_EQ(all[i].day, all[i - 1].day + std::chrono::days(1));
      EXPECT_EQ(all[i].daytime.empty(), sunday);
      EXPECT_NE(all[i].daytime, all[i].roundTheClock);
      const auto last = all[i - 1].roundTheClock[0] - 'A';
      EXPECT_EQ(all[i].roundTheClock[0] - 'A', sunday ? last : (last + 1) % 5)
          << middle << " " << i;
    }
    const auto later = turnsAround(day + std::chrono::days(30), 50, keys);
    EXPECT_EQ(later[0].day, all[30].day);
    EXPECT_EQ(later[0].roundTheClock, all[30].roundTheClock) << "depends on when it is asked";
  }
}

// Walks one entity; what it counts tells that the directory offers every case
// that a reader of the format has to cope with. Fields of a wrong kind are the checker's.
struct Variety {
  std::set<std::string> seen;

  void address(const Value& a) {
    EXPECT_TRUE(isText(a, "Title") && isText(a, "Value"));
    EXPECT_EQ(a.HasMember("Latitude"), a.HasMember("Longitude"));
    if (!a.HasMember("Latitude")) seen.insert("address without coordinates");
  }

  void contact(const Value& c) {
    EXPECT_TRUE(isText(c, "Title") && isText(c, "Value"));
    if (!c.HasMember("Type")) return void(seen.insert("contact without type"));
    const std::string value = c["Value"].GetString();
    if (value.empty()) return void(seen.insert("empty contact"));
    const bool mail = c["Type"].GetInt() == 1;
    EXPECT_EQ(value.find('@') != std::string::npos, mail) << value;
    seen.insert(mail ? "e-mail" : "telephone");
    if (!c.HasMember("Note")) seen.insert("contact without note");
  }

  void calendar(const Value& c) {
    EXPECT_TRUE(isText(c, "Title"));
    std::set<int> days;
    for (const auto& day : c["WeekDays"].GetArray()) {
      const int number = day["WeekDay"].GetInt();
      EXPECT_TRUE(days.insert(number).second) << "day " << number << " stands twice";
      const auto& schedules = day["Schedules"].GetArray();
      if (schedules.Empty()) seen.insert("closed day");
      if (schedules.Size() > 1) seen.insert("several schedules");
      std::string last;
      for (const auto& s : schedules) {
        const std::string start = s["StartTime"].GetString(), end = s["EndTime"].GetString();
        EXPECT_THAT(start, testing::MatchesRegex("[0-2][0-9]:[0-5][0-9]"));
        EXPECT_THAT(end, testing::MatchesRegex("[0-2][0-9]:[0-5][0-9]"));
        EXPECT_LT(last, start);
        EXPECT_LT(start, end);
        last = end;
      }
    }
    if (days.empty()) seen.insert("empty week");
    if (days == std::set{1}) seen.insert("Monday only");
    if (!c.HasMember("Note")) seen.insert("calendar without note");
  }

  void entity(const Value& e) {
    SCOPED_TRACE(e["Name"].GetString());
    const bool odd = e.HasMember("Adresses"), right = e.HasMember("Addresses");
    seen.insert(odd && right ? "both spellings"
                : odd        ? "odd spelling"
                : right      ? "right spelling"
                             : "no address");
    for (const char* key : {"Adresses", "Addresses"})
      if (e.HasMember(key))
        for (const auto& a : e[key].GetArray()) address(a);
    if (!e.HasMember("Contacts")) seen.insert("no contacts");
    if (e.HasMember("Contacts"))
      for (const auto& c : e["Contacts"].GetArray()) contact(c);
    if (!e.HasMember("Calendar")) seen.insert("no calendar");
    if (e.HasMember("Calendar"))
      for (const auto& c : e["Calendar"].GetArray()) calendar(c);
  }
};

TEST(TownDocuments, DirectoryKeepsItsFormAndShowsEveryCase) {
  TownHost host;
  const auto menu = json(get(host, directory + "menu.json").body());
  EXPECT_GE(menu.Size(), 6u);
  Variety variety;
  for (const auto& category : menu.GetArray()) {
    SCOPED_TRACE(category["Nome"].GetString());
    const auto answer = get(host, directory + category["Link"].GetString() + ".json");
    ASSERT_EQ(answer.status(), 200);
    const auto entities = json(answer.body());
    EXPECT_GE(entities.Size(), 5u);
    for (const auto& entity : entities.GetArray()) variety.entity(entity);
  }
  EXPECT_THAT(variety.seen, testing::IsSupersetOf(
                                {"address without coordinates", "empty contact", "e-mail",
                                 "telephone", "contact without note", "contact without type",
                                 "closed day", "several schedules", "empty week", "Monday only",
                                 "calendar without note", "both spellings", "odd spelling",
                                 "right spelling", "no address", "no contacts", "no calendar"}));
}

TEST(TownDocuments, PagesStandAloneAndAnswerAsTheyShould) {
  auto options = test::on("2026-05-04T09:00");
  options.version = "2.5";
  TownHost host(options);
  const std::string config = "/InfoVarlo/config/master/";
  EXPECT_EQ(get(host, config + "version_ios").body(), "2.5");
  for (const char* page : {"home_ios.html", "about.html"}) {
    const auto answer = get(host, config + page);
    EXPECT_EQ(answer.status(), 200);
    EXPECT_EQ(answer.header("Content-Type"), "text/html; charset=utf-8");
    EXPECT_THAT(answer.body(), testing::HasSubstr("lang=\"it\""));
    EXPECT_THAT(answer.body(), testing::HasSubstr("width=device-width"));
    EXPECT_THAT(answer.body(), testing::HasSubstr("href=\"tel:"));
    for (const char* foreign : {"<script", "<link", "src=", "url(", "@import"})
      EXPECT_THAT(answer.body(), testing::Not(testing::HasSubstr(foreign))) << page;

    const auto head = test::rawRequest(
        host, "HEAD " + config + page + " HTTP/1.1\r\nHost: varlo\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(head.status(), 200);
    EXPECT_EQ(head.header("Content-Length"), std::to_string(answer.body().size()));
    EXPECT_EQ(head.body(), "");
  }
  for (const char* path : {"/", "/InfoVarlo", "/InfoVarlo/config/master/", "/InfoVarlo//config",
                           "/InfoVarlo/config/master/../../../etc/passwd", "/%00", "/%0a", "/_nil"})
    EXPECT_EQ(get(host, path).status(), 404) << path;
}

TEST(TownDocuments, CanBeAddedReplacedAndTakenAway) {
  TownHost host(test::on("2026-05-04T09:00"));
  auto& documents = host.documents();
  documents.addFixed(turns, "application/json", "[]");
  EXPECT_EQ(get(host, turns).body(), "[]");
  documents.add("/varlo/x", "text/plain", [](const Occasion& occasion) {
    const auto found = occasion.query.find("q");
    return std::to_string(occasion.now) + " " +
           (found == occasion.query.end() ? "" : found->second);
  });
  EXPECT_EQ(get(host, "/varlo/x?q=a%26b").body(),
            std::to_string(test::at("2026-05-04T07:00Z")) + " a&b");
  documents.add("/varlo/x", "text/plain",
                [](const Occasion&) -> std::string { throw std::runtime_error("guasto"); });
  EXPECT_EQ(get(host, "/varlo/x").status(), 500);
  documents.remove("/varlo/x");
  EXPECT_EQ(get(host, "/varlo/x").status(), 404);
}

TEST(TownDocuments, StreetsAreManyAndEachZoneHasItsPart) {
  TownHost host;
  const auto streets = json(get(host, waste + "zone.json").body());
  const auto config = json(get(host, waste + "config.json").body());
  EXPECT_EQ(streets.Size(), 900u);
  std::set<std::string> names;
  std::map<std::string, int> zones;
  for (const auto& street : streets.GetArray()) {
    EXPECT_TRUE(names.insert(street["NOME"].GetString()).second) << street["NOME"].GetString();
    ++zones[street["ZONA"].GetString()];
  }
  EXPECT_EQ(zones.size(), 4u);
  for (const auto& [zone, count] : zones)
    EXPECT_GE(count, 100) << zone << ": a quarter of the town";
  for (const char* key : {"MAPPA", "PIATTAFORMA", "LINK"})
    EXPECT_TRUE(config.HasMember(key)) << key;
}

TEST(TownDocuments, SchoolsTakeTurnsWithTheirRotation) {
  TownHost host;
  std::set<std::string> lunches, notes;
  for (const School& school : schools()) {
    const auto document = json(get(host, menus + school.link + ".json").body());
    EXPECT_STREQ(document["name"].GetString(), school.name);
    for (const auto& season : document["menu"].GetArray()) {
      lunches.insert(season["week_1"]["day_1"].GetString());
      notes.insert(season["note"].GetString());
    }
  }
  EXPECT_EQ(lunches.size(), 8u) << "in neither season all the town eats the same";
  EXPECT_THAT(lunches, testing::Each(testing::HasSubstr("|")));
  EXPECT_EQ(notes.size(), 2u);
}

}  // namespace
}  // namespace town
