// The town as it is, and twenty towns with one thing spoiled each.
#include "checker/town_check.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>

#include "checker/report.h"
#include "checker/shapes.h"
#include "townhost/civil_time.h"
#include "townhost/town_host.h"

namespace check {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class TownCheck : public testing::Test {
 protected:
  std::string text(const std::string& path) {
    return host_.documents().make({now_.load(), path, {}}).value().text;
  }
  void publish(const std::string& path, const std::string& text) {
    host_.documents().addFixed(path, town::typeOfPath(path), text);
  }
  TownReport check() {
    const std::chrono::sys_days today(town::dayAt(now_).time_since_epoch());
    return checkTown(*source_, {today, true});
  }

  std::atomic<town::Instant> now_ = 1795258800000;  // Saturday 21 November 2026, 12:00 in the town
  town::TownHost host_{{.now = [this] { return now_.load(); }}};
  std::unique_ptr<Source> source_ = openTown(host_.url());
};

TEST_F(TownCheck, TheTownsOwnDocumentsAreSoundOnAnyDay) {
  // The year's ends, leap days, the nights of the clock changes, the ends of school seasons.
  for (const char* now :
       {"2026-11-21T12:00", "2025-12-31T23:30", "2026-01-01T00:15", "2024-02-29T12:00",
        "2024-03-01T12:00", "2026-03-29T02:30", "2026-03-31T08:00", "2026-07-15T23:59",
        "2026-10-25T02:30", "2026-10-30T08:00", "2028-02-29T12:00"}) {
    now_ = town::parseInstant(now).value();
    const auto report = check();
    EXPECT_THAT(report.findings, IsEmpty()) << now << reportText(report, Language::English);
    EXPECT_GT(report.documents, 25) << now;
    EXPECT_THAT(reportText(report, Language::Italian), HasSubstr("tutto in ordine"));
  }
}

struct Spoiled {
  const char* name;
  std::string path;
  std::string before, after;                   // the first place of the one becomes the other
  std::string document, record, field, found;  // parts of the one finding
};

// Writes the case's name where a test fails.
void PrintTo(const Spoiled& s, std::ostream* out) { *out << s.name; }

const Spoiled kSpoiled[] = {
    {"broken JSON", kPharmacies, "\"Citta\":", "\"Citta\"", "farmacie.json", "", "",
     "non è JSON valido dalla riga 5"},
    {"a missing field", kPharmacies, "\"Telefono\": \"0370 550236\",", "", "farmacie.json",
     "2 (Farmacia San Rocco)", "Telefono", "manca"},
    {"a number in quotes", kPharmacies, "45.2381", "\"45.2381\"", "farmacie.json",
     "1 (Farmacia Comunale)", "Latitudine", "il testo «45.2381»"},
    {"exchanged coordinates", kPharmacies, "\"Latitudine\": 45.2381,\n    \"Longitudine\": 10.0412",
     "\"Latitudine\": 10.0412,\n    \"Longitudine\": 45.2381", "farmacie.json",
     "1 (Farmacia Comunale)", "Latitudine, Longitudine", "km dal paese"},
    {"a key used twice", kPharmacies, "\"FAR02\"", "\"FAR01\"", "farmacie.json",
     "2 (Farmacia San Rocco)", "Chiave", "«FAR01» c'è già"},
    {"a list that is none", kCategories, "[", "{\"voci\": [", "menu.json", "", "", "un oggetto"},
    {"a record that is none", kCategories, "{", "\"Uffici\", {", "menu.json", "1", "",
     "il testo «Uffici»"},
    {"a link out of the folder", kCategories, "\"uffici\"", "\"../uffici\"", "menu.json", "1 (",
     "Link", "«../uffici»"},
    {"a category without a document", kCategories, "\"uffici\"", "\"ufici\"", "ufici.json", "", "",
     "HTTP 404"},
    {"a contact of no kind", "/InfoVarlo/infocitta/master/uffici.json", "\"Type\": 0",
     "\"Type\": 7", "uffici.json", "Contacts › 1 (Telefono)", "Type", "il numero 7"},
    {"a weekday that is none", "/InfoVarlo/infocitta/master/uffici.json", "\"WeekDay\": 1",
     "\"WeekDay\": 0", "uffici.json", "WeekDays", "WeekDay", "il numero 0"},
    {"a text that does not fit", "/InfoVarlo/infocitta/master/uffici.json",
     "\"Title\": \"Telefono\"",
     "\"Title\": \"Telefono dello sportello dell'anagrafe e dello stato civile\"", "uffici.json",
     "Contacts", "Title", "Telefono dello sportello"},
    {"a street of no zone", kStreets, "\"ZONA\": \"D\"", "\"ZONA\": \"Z\"", "zone.json",
     "1 (Cascina Alta)", "ZONA", "«Z» non c'è"},
    {"a colour by name", kWaste, "\"#F2C230\"", "\"giallo\"", "config.json", "ZONE › A", "COLOR",
     "«giallo»"},
    {"a day without a name", kWaste, "{\"NAME\": \"Lunedì\"}", "{}", "config.json",
     "ZONE › A › DAY1", "NAME", "manca"},
    {"a date the other way round", "/InfoVarlo/menuscuola/master/rodari.json",
     "\"valid_from\": \"01/11/2026\"", "\"valid_from\": \"2026-11-01\"", "rodari.json", "menu",
     "valid_from", "«2026-11-01»"},
    {"a period with a hole", "/InfoVarlo/menuscuola/master/rodari.json",
     "\"valid_to\": \"01/04/2027\"", "\"valid_to\": \"07/01/2027\"", "rodari.json", "", "menu",
     "nessun periodo vale dal 07/01/2027 al"},
    {"a map's row off the globe", "/InfoVarlo/mappe/master/defibrillatori.json", "45.2379",
     "452379", "defibrillatori.json", "1 (Municipio)", "Latitudine", "il numero 452379"},
    {"a version that is no number", kVersion, "1.0", "presto", "version_ios", "", "",
     "il testo «presto»"},
    {"a link that does not answer", kHome, "href=\"", "href=\"TOWN/assente.html\"> </a><a href=\"",
     "home_ios.html", "", "href", "/assente.html» non risponde (HTTP 404)"},
};

class SpoiledTown : public TownCheck, public testing::WithParamInterface<Spoiled> {};

TEST_P(SpoiledTown, IsFoundAndNamedAndNothingElseIs) {
  const Spoiled& c = GetParam();
  std::string document = text(c.path), after = c.after;
  const auto at = document.find(c.before);
  ASSERT_NE(at, document.npos) << "the town's own document has changed";
  if (const auto town = after.find("TOWN"); town != after.npos) after.replace(town, 4, host_.url());
  document.replace(at, c.before.size(), after);
  // An object in place of the list wants its end.
  if (after.starts_with("{\"voci\"")) document += "}";
  publish(c.path, document);

  const auto report = check();
  ASSERT_EQ(report.findings.size(), 1u) << reportText(report, Language::Italian);
  const Finding& found = report.findings.front();
  EXPECT_THAT(found.document, HasSubstr(c.document));
  EXPECT_THAT(found.found.it, HasSubstr(c.found));
  EXPECT_EQ(found.field, c.field);
  EXPECT_THAT(found.record, HasSubstr(c.record));
  // Both languages, and what it means for a citizen.
  for (const Words* words : {&found.found, &found.expected, &found.citizen}) {
    EXPECT_NE(words->it, "");
    EXPECT_NE(words->en, "");
  }
}

INSTANTIATE_TEST_SUITE_P(All, SpoiledTown, testing::ValuesIn(kSpoiled));

TEST_F(TownCheck, DaysWithoutAPharmacyAreToldAsOneSpan) {
  publish(kTurns, R"([{"Giorno":21,"Mese":11,"Anno":2026,"Turno1":"FAR01","Turno2":""},
                      {"Giorno":22,"Mese":11,"Anno":2026,"Turno1":"FAR99","Turno2":""}])");
  const auto report = check();
  ASSERT_EQ(report.findings.size(), 2u) << reportText(report, Language::Italian);
  EXPECT_EQ(report.findings[0].record, "2 (22/11/2026)");
  EXPECT_EQ(report.findings[1].found.it, "nessun turno dal 23/11/2026 al 19/01/2027");
}

TEST_F(TownCheck, AReportForMachinesHoldsTheSame) {
  publish(kVersion, "presto");
  const auto json = reportJson(check(), Language::English);
  EXPECT_THAT(json, HasSubstr("\"document\": \"/InfoVarlo/config/master/version_ios\""));
  EXPECT_THAT(json, HasSubstr("it is the text \\\"presto\\\""));
  EXPECT_THROW(openTown("/no/such/folder"), std::invalid_argument);
  EXPECT_THROW(openTown("ftp://varlo.example"), std::invalid_argument);
}

// What a folder holds may be anything: nothing is waited for, nothing enormous read, and
// nothing reaches the clerk's terminal but words.
TEST(TownFolder, IsReadWithoutTrust) {
  namespace fs = std::filesystem;
  constexpr std::chrono::sys_days kDay{std::chrono::year(2026) / 11 / 21};
  const fs::path folder = fs::temp_directory_path() / ("town-" + std::to_string(::getpid()));
  const auto file = [&](const char* path) {
    const fs::path place = folder / fs::path(path).relative_path();
    fs::create_directories(place.parent_path());
    return place;
  };
  std::ofstream(file(kPharmacies)) << "[{\"Telefono\": {}, \"Chiave\": \"\\u001b[2J\"},"
                                      " {\"Chiave\": \"\\u001b[2J\"}]";
  std::ofstream(file(kTurns)) << R"([{"Giorno": 1e300, "Mese": 257, "Anno": -1}])";
  std::ofstream(file(kHome)) << "<a href=\"http://127.0.0.1:1/\xff\x9b\">";
  std::ofstream(file(kStreets)) << "[";
  fs::resize_file(file(kStreets), 33 << 20);
  ASSERT_EQ(::mkfifo(file(kCategories).c_str(), 0600), 0);
  fs::create_directories(file(kMaps));

  const auto report = checkTown(*openTown(folder.string()), {kDay, true});
  fs::remove_all(folder);
  const auto text = reportText(report, Language::Italian);
  for (const char* part :
       {"l'host non accetta la connessione", "menu.json non si apre", "mappe.json non si apre",
        "ha più di 32 MB", "non c'è il file", "la chiave « [2J» c'è già", "il numero 257"})
    EXPECT_THAT(text, HasSubstr(part));
  for (const auto& said : {text, reportJson(report, Language::English)}) {
    EXPECT_EQ(said.find('\x1b'), said.npos);
    EXPECT_EQ(said.find('\xff'), said.npos);
    EXPECT_THAT(said, HasSubstr("http://127.0.0.1:1/\uFFFD\uFFFD"));
  }
}

}  // namespace
}  // namespace check
