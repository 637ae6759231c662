// Bad records: one that is no map, or whose fields are of another kind, costs its own row
// at most and one line in the log, wherever it stands.
#include "app/kit/records.h"

#include "app/kit/fields.h"
#include "town_phone.h"

namespace varlo {
namespace {

using BadRecords = LaunchedTest;

TEST_F(BadRecords, AWalkGoesOnAndTheLogSaysWhereItStumbled) {
  Trace read;
  eachRecord(
      parsedMaps("orari.json", R"([null, {"n":"a"}, "x", {"n":{}}, 7, [1], {"n":2}, {"m":1}])"),
      [&](const KesMap& row) { read.push_back(nameOf(row, "n").str()); });
  EXPECT_THAT(read, ElementsAre("a", "2"));
  expectLogged({
      "orari.json, record 1: no map but null",
      "orari.json, record 3: no map but a text",
      "orari.json, record 4: \"n\" is not a text but a map",
      "orari.json, record 5: no map but a number",
      "orari.json, record 6: no map but a list",
      "orari.json, record 8: \"n\" is missing",
  });
  EXPECT_THROW(parsedMaps("orari.json", "{}"), KesException);
  EXPECT_THROW(parsedMaps("orari.json", "["), KesException);
}

TEST_F(BadRecords, AFieldIsReadAsWhatItIsOrNotAtAll) {
  const auto map = mapOf(R"({"t":"x","n":1.5,"b":true,"z":null,"l":[1],"m":{"k":2}})");
  EXPECT_EQ(textOf(map, "t"), "x");
  EXPECT_EQ(textOf(map, "n"), "1.5");
  EXPECT_EQ(textOf(map, "z"), "");
  EXPECT_EQ(textOf(map, "absent"), "");
  EXPECT_EQ(numberOf(map, "n"), 1.5);
  EXPECT_EQ(numberOf(mapOf(R"({"t":"7"})"), "t"), 7);
  EXPECT_EQ(varlo::mapOf(map, "m").Get("k"), Value(2));
  EXPECT_EQ(listOf(map, "l").Size(), 1);
  for (const char* key : {"l", "m"}) EXPECT_THROW(textOf(map, key), KesException) << key;
  for (const char* key : {"z", "absent", "l"}) EXPECT_THROW(nameOf(map, key), KesException) << key;
  for (const char* key : {"t", "z", "absent", "m"}) {
    EXPECT_THROW(numberOf(map, key), KesException) << key;
    EXPECT_THROW(listOf(map, key), KesException) << key;
  }
  for (const char* key : {"t", "z", "absent", "l"})
    EXPECT_THROW(varlo::mapOf(map, key), KesException) << key;
}

TEST_F(BadRecords, PharmaciesAndTheDirectoryLoseTheBadOnesOnly) {
  publish(kPharmaciesPath, R"([null, {"Chiave":"F9","Farmacia":{}}, "x",
    {"Chiave":"F1","Farmacia":"Centrale","Citta":"Varlo"}])");
  publish(kTurnsPath, R"([null, 5, {"Giorno":15,"Mese":11,"Anno":2017,"Turno1":[]},
    {"Giorno":15,"Mese":11,"Anno":2017,"Turno1":"F1","Turno2":null}])");
  publish(std::string(kDirectoryPath) + "menu.json",
          R"([null, {"Link":"a"}, {"Nome":"Uffici","Link":"uffici"}, 3])");
  publish(std::string(kDirectoryPath) + "uffici.json", R"([[], {"Name":" "}, {"Name":"Anagrafe",
    "Contacts":[null, {"Value":{}}, {"Title":"Telefono","Value":"0123","Type":0}],
    "Addresses":["x", {"Title":"Sede","Value":"Via Uno"}],
    "Calendar":[7, {"Title":"Rotto","WeekDays":5}, {"Title":"Orari","WeekDays":[null,
      {"WeekDay":3,"Schedules":[null, {"StartTime":{}}, {"StartTime":"8","EndTime":"9"}]}]}]}])");
  visit(kPharmacies);
  ASSERT_EQ(app()._clv->_getsize(), 1);
  EXPECT_THAT(rowsOf(app()._clv)[0], HasSubstr("Centrale - Varlo"));

  visit(kDirectory);
  EXPECT_THAT(rowsOf(app()._clv), ElementsAre("Uffici"));
  ASSERT_TRUE(enter("Uffici"));
  EXPECT_THAT(rowsOf(kes_infocitta::instance()._clv), ElementsAre("Anagrafe"));
  ASSERT_TRUE(enter("Anagrafe"));
  EXPECT_EQ(kes_infocitta_entity::instance()._clv->_getsize(), 3);
  EXPECT_TRUE(shows("8 - 9"));
  ASSERT_TRUE(enter("Orari"));
  EXPECT_EQ(dialogText(), "Orari: Mercoledì\n8 - 9\n");

  expectLogged({
      "farmacie.json, record 1: ",
      "farmacie.json, record 2: \"Farmacia\"",
      "farmacie.json, record 3: ",
      "turni.json, record 1: ",
      "turni.json, record 2: ",
      "turni.json, record 3: \"Turno1\"",
      "menu.json, record 1: ",
      "menu.json, record 2: \"Nome\"",
      "menu.json, record 4: ",
      "uffici.json, record 1: ",
      "uffici.json, record 2: \"Name\"",
      "uffici.json, Contacts, record 1: ",
      "uffici.json, Contacts, record 2: \"Value\"",
      "uffici.json, Addresses, record 1: ",
      "uffici.json, Calendar, record 1: ",
      "uffici.json, Calendar, record 2, WeekDays: ",
      "uffici.json, Calendar, record 3, WeekDays, record 1: ",
      "uffici.json, Calendar, record 3, WeekDays, record 2, Schedules, record 1: ",
      "uffici.json, Calendar, record 3, WeekDays, record 2, Schedules, record 2: \"StartTime\"",
  });
}

}  // namespace
}  // namespace varlo
