// The waste calendar and the schools' menus: whole, and consistent with themselves.
#include <gmock/gmock.h>

#include <map>
#include <set>

#include "support.h"
#include "townhost/school_menus.h"

namespace town {
namespace {

using rapidjson::Value;
using test::get;
using test::json;

const std::string waste = "/InfoVarlo/raccoltarifiuti/master/";
const std::string menus = "/InfoVarlo/menuscuola/master/";

TEST(TownDocuments, EveryStreetHasAZoneThatTheCalendarKnows) {
  TownHost host;
  const auto streets = json(get(host, waste + "zone.json").body());
  const auto config = json(get(host, waste + "config.json").body());
  ASSERT_TRUE(streets.IsArray());
  EXPECT_EQ(streets.Size(), 900u);
  std::set<std::string> names;
  std::map<std::string, int> zones;
  for (const auto& street : streets.GetArray()) {
    EXPECT_TRUE(names.insert(street["NOME"].GetString()).second) << street["NOME"].GetString();
    ++zones[street["ZONA"].GetString()];
  }
  EXPECT_EQ(zones.size(), 4u);
  for (const auto& [zone, count] : zones) {
    SCOPED_TRACE(zone);
    EXPECT_GE(count, 100) << "a quarter of the town";
    const Value& known = config["ZONE"][zone.c_str()];
    EXPECT_THAT(known["COLOR"].GetString(), testing::MatchesRegex("#[0-9A-F]{6}"));
    for (const char* day : {"DAY1", "DAY2"})
      EXPECT_STRNE(known[day]["NAME"].GetString(), "") << day;
  }
  for (const char* material : {"UMIDO", "CARTA", "PLASTICA", "VETRO", "SECCO"})
    for (const char* list : {"SI", "NO"})
      EXPECT_STRNE(config["RIFIUTI"][material][list].GetString(), "") << material << list;
  for (const char* key : {"NOTE", "MAPPA", "PIATTAFORMA", "LINK"})
    EXPECT_TRUE(config.HasMember(key)) << key;
  const std::string points = config["MAPPA"]["URL"].GetString();
  ASSERT_TRUE(points.starts_with("/InfoVarlo/")) << points;
  const auto map = json(get(host, points).body());
  ASSERT_TRUE(map.IsArray());
  for (const char* field : {"LAT", "LON", "TITLE", "SNIPPET"})
    EXPECT_TRUE(map[0].HasMember(config["MAPPA"][field].GetString())) << field;
}

CivilDay dateOf(const Value& text) {
  const std::string s = text.GetString();
  EXPECT_THAT(s, testing::MatchesRegex("[0-9]{2}/[0-9]{2}/[0-9]{4}"));
  return CivilDay(std::chrono::year(std::stoi(s.substr(6))) /
                  std::chrono::month(static_cast<unsigned>(std::stoi(s.substr(3, 2)))) /
                  std::chrono::day(static_cast<unsigned>(std::stoi(s.substr(0, 2)))));
}

// What a school cooks on a day, by the rules of the published form; nothing where no
// period holds the day.
std::string mealOf(const Value& menu, CivilDay day) {
  for (const auto& period : menu.GetArray()) {
    if (day < dateOf(period["valid_from"]) || day >= dateOf(period["valid_to"])) continue;
    const auto since = (day - dateOf(period["date_start"])).count();
    const auto week = "week_" + std::to_string(since / 7 % 4 + 1);
    const auto weekday = std::chrono::weekday(day).iso_encoding();
    return period[week.c_str()][("day_" + std::to_string(weekday)).c_str()].GetString();
  }
  return "";
}

TEST(TownDocuments, EverySchoolHasALunchForEachSchoolDayAroundToday) {
  std::set<std::string> winterAndSummer;
  for (const char* now : {"2026-01-01T08:00", "2026-03-31T08:00", "2026-07-15T08:00",
                          "2026-10-30T08:00", "2026-12-31T23:59", "2028-02-29T12:00"}) {
    SCOPED_TRACE(now);
    TownHost host(test::on(now));
    const auto list = json(get(host, menus + "scuole.json").body());
    ASSERT_EQ(list.Size(), 5u);
    for (const auto& school : list.GetArray()) {
      const auto answer = get(host, menus + school["Link"].GetString() + ".json");
      ASSERT_EQ(answer.status(), 200) << school["Link"].GetString();
      const auto document = json(answer.body());
      EXPECT_STREQ(document["name"].GetString(), school["Nome"].GetString());
      const CivilDay today = dayAt(test::at(now));
      for (int i = -7; i <= 7; ++i) {
        const auto day = today + std::chrono::days(i);
        if (std::chrono::weekday(day).iso_encoding() > 5) continue;
        EXPECT_THAT(mealOf(document["menu"], day), testing::HasSubstr("|")) << i;
      }
      winterAndSummer.insert(document["menu"][0]["note"].GetString());
      winterAndSummer.insert(document["menu"][1]["note"].GetString());
    }
  }
  EXPECT_EQ(winterAndSummer.size(), 2u);
}

TEST(TownDocuments, SchoolsTakeTurnsWithTheirRotation) {
  TownHost host(test::on("2026-11-18T09:00"));
  std::set<std::string> lunches;
  const auto monday = dayAt(test::at("2026-11-16T12:00"));
  for (const School& school : schools())
    lunches.insert(mealOf(json(get(host, menus + school.link + ".json").body())["menu"], monday));
  EXPECT_GE(lunches.size(), 4u) << "not all the town eats the same";
}

}  // namespace
}  // namespace town
