#include <gmock/gmock.h>

#include <set>

#include "support.h"
#include "townhost/pharmacy_turns.h"

namespace town {
namespace {

using rapidjson::Value;
using test::get;
using test::json;

const std::string pharmacies = "/InfoVarlo/farmacie/master/farmacie.json";
const std::string turns = "/InfoVarlo/farmacie/master/turni.json";
const std::string directory = "/InfoVarlo/infocitta/master/";

bool isText(const Value& object, const char* key) {
  return object.HasMember(key) && object[key].IsString();
}

std::set<std::string> keysOf(const rapidjson::Document& list) {
  std::set<std::string> keys;
  for (const auto& pharmacy : list.GetArray()) keys.insert(pharmacy["Chiave"].GetString());
  return keys;
}

const Value* turnOf(const rapidjson::Document& list, int day, int month, int year) {
  const Value* found = nullptr;
  for (const auto& turn : list.GetArray()) {
    if (turn["Giorno"].GetInt() != day || turn["Mese"].GetInt() != month) continue;
    if (turn["Anno"].GetInt() != year) continue;
    EXPECT_EQ(found, nullptr) << "two entries for " << day << "/" << month << "/" << year;
    found = &turn;
  }
  return found;
}

TEST(TownDocuments, PharmaciesAreComplete) {
  TownHost host;
  const auto list = json(get(host, pharmacies).body());
  ASSERT_TRUE(list.IsArray());
  EXPECT_GE(list.Size(), 8u);
  EXPECT_EQ(keysOf(list).size(), list.Size()) << "a key stands twice";
  for (const auto& pharmacy : list.GetArray()) {
    for (const char* key : {"Chiave", "Farmacia", "Citta", "Telefono", "Indirizzo"})
      EXPECT_TRUE(isText(pharmacy, key)) << key;
    EXPECT_NEAR(pharmacy["Latitudine"].GetDouble(), 45.2, 0.3);
    EXPECT_NEAR(pharmacy["Longitudine"].GetDouble(), 10.0, 0.3);
  }
}

TEST(TownDocuments, TurnsCoverTheDaysAroundToday) {
  const struct {
    const char* now;
    int today[3], yesterday[3], before[3], after[3];
  } cases[] = {
      {"2026-01-01T00:30", {1, 1, 2026}, {31, 12, 2025}, {22, 11, 2025}, {10, 2, 2026}},
      {"2024-03-01T12:00", {1, 3, 2024}, {29, 2, 2024}, {21, 1, 2024}, {10, 4, 2024}},
      {"2026-07-15T23:59", {15, 7, 2026}, {14, 7, 2026}, {5, 6, 2026}, {24, 8, 2026}},
      {"2026-12-31T20:00", {31, 12, 2026}, {30, 12, 2026}, {21, 11, 2026}, {9, 2, 2027}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.now);
    TownHost host(test::on(c.now));
    const auto keys = keysOf(json(get(host, pharmacies).body()));
    const auto list = json(get(host, turns).body());
    for (const auto& turn : list.GetArray()) {
      for (const char* key : {"Giorno", "Mese", "Anno"}) ASSERT_TRUE(turn[key].IsInt()) << key;
      EXPECT_TRUE(keys.contains(turn["Turno1"].GetString())) << turn["Turno1"].GetString();
      const std::string second = turn["Turno2"].GetString();
      EXPECT_TRUE(second.empty() || keys.contains(second)) << second;
      EXPECT_NE(turn["Turno1"].GetString(), second);
    }
    for (const auto* date : {&c.today, &c.yesterday, &c.before, &c.after})
      EXPECT_NE(turnOf(list, (*date)[0], (*date)[1], (*date)[2]), nullptr)
          << (*date)[0] << "/" << (*date)[1];
    // None of these days is a Sunday: both turns are kept.
    EXPECT_STRNE((*turnOf(list, c.today[0], c.today[1], c.today[2]))["Turno2"].GetString(), "");
  }
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
// that a reader of the format has to cope with.
struct Variety {
  std::set<std::string> seen;

  void address(const Value& a) {
    EXPECT_TRUE(isText(a, "Title") && isText(a, "Value"));
    EXPECT_EQ(a.HasMember("Latitude"), a.HasMember("Longitude"));
    if (!a.HasMember("Latitude"))
      seen.insert("address without coordinates");
    else
      EXPECT_TRUE(a["Latitude"].IsDouble() && a["Longitude"].IsDouble());
  }

  void contact(const Value& c) {
    EXPECT_TRUE(isText(c, "Title") && isText(c, "Value"));
    if (!c.HasMember("Type")) return void(seen.insert("contact without type"));
    ASSERT_TRUE(c["Type"].IsInt());
    const std::string value = c["Value"].GetString();
    if (value.empty()) return void(seen.insert("empty contact"));
    const bool mail = c["Type"].GetInt() == 1;
    EXPECT_EQ(value.find('@') != std::string::npos, mail) << value;
    seen.insert(mail ? "e-mail" : "telephone");
    if (!c.HasMember("Note")) seen.insert("contact without note");
  }

  void calendar(const Value& c) {
    EXPECT_TRUE(isText(c, "Title"));
    ASSERT_TRUE(c["WeekDays"].IsArray());
    std::set<int> days;
    for (const auto& day : c["WeekDays"].GetArray()) {
      const int number = day["WeekDay"].GetInt();
      EXPECT_TRUE(number >= 1 && number <= 7) << number;
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
    ASSERT_TRUE(isText(e, "Name"));
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
    ASSERT_TRUE(isText(category, "Nome") && isText(category, "Link"));
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

}  // namespace
}  // namespace town
