// The city directory: an entity's rows, the line of a calendar, and what taps do.
#include "town_phone.h"

namespace varlo {
namespace {

constexpr std::int64_t kDayLength = 86400000;

struct Row {
  std::string icon, title, value, note;
  bool operator==(const Row&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Row& r) {
  return out << '{' << testing::PrintToString(r.icon) << " | " << r.title << " | " << r.value
             << " | " << r.note << '}';
}

class Directory : public LaunchedTest {
 protected:
  void open(std::string_view json) {
    kes_infocitta_entity::instance()._caricaentity(mapOf(json));
    settle();
  }
  static const Ref<kes_customlistview>& list() { return kes_infocitta_entity::instance()._clv; }
  static const ui::View* part(int row, std::string_view name) {
    for (const auto& v : list()->_getpanel(row).view().children())
      if (v->name() == name) return v.get();
    return nullptr;
  }
  static std::vector<Row> rows() {
    std::vector<Row> all;
    for (int i = 0; i < list()->_getsize(); ++i) {
      const auto text = [&](const char* name) {
        const auto* view = part(i, name);
        return view ? view->displayText() : "?";
      };
      all.push_back(
          {text("item_image"), text("item_title"), text("item_value"), text("item_note")});
    }
    return all;
  }
};

constexpr const char *kPhone = "\uE0B0", *kMail = "\uE0BE", *kPlace = "\uE55D",
                     *kCalendar = "\uE8DF";

TEST_F(Directory, AnEntityShowsWhatItHasInAFixedOrder) {
  open(R"({"Name":"Biblioteca",
    "Calendar":[{"Title":"Orari","Note":"Estate","WeekDays":[]}],
    "Addresses":[{"Title":"Nuova","Value":"Via Due"}],
    "Adresses":[{"Title":"Sede","Value":"Via Uno","Note":"Piano 1"}],
    "Contacts":[{"Title":"Telefono","Value":"0123","Type":0},
                {"Title":"Vuoto","Value":"","Type":0},
                {"Title":"Senza valore","Type":1},
                {"Title":"Nullo","Value":null,"Type":1},
                {"Value":"a@b.it","Note":"solo mattina","Type":1},
                {"Title":"Fax","Value":"0124","Type":2}]})");
  EXPECT_EQ(title(), "Biblioteca");
  EXPECT_THAT(
      rows(),
      ElementsAre(Row{kPhone, "Telefono", "0123", ""}, Row{kMail, "", "a@b.it", "solo mattina"},
                  Row{"", "Fax", "0124", ""}, Row{kPlace, "Sede", "Via Uno", "Piano 1"},
                  Row{kPlace, "Nuova", "Via Due", ""},
                  Row{kCalendar, "Orari", "NESSUN VALORE TROVATO", "Estate"}));
  for (int i = 0; i < list()->_getsize(); ++i) EXPECT_EQ(list()->_getitem(i)->Size, 80);
}

TEST_F(Directory, ABrokenSectionIsLoggedAndTheOthersAreShown) {
  open(R"({"Name":"Guasto","Contacts":5,"Adresses":[{"Title":"A","Value":"Via"},"no"],
    "Addresses":{"Title":"B"},"Calendar":[{"Title":"C","WeekDays":[]}]})");
  EXPECT_THAT(rows(), ElementsAre(Row{kPlace, "A", "Via", ""},
                                  Row{kCalendar, "C", "NESSUN VALORE TROVATO", ""}));
  expectLogged({"Contacts: ", "Adresses, record 2: ", "Addresses: "});
  open("{}");
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(title(), "");
}

TEST_F(Directory, ACalendarTellsTodaysHoursOrTheNextOpenDay) {
  const auto day = [](int number, const std::string& schedules) {
    return R"({"WeekDay":)" + std::to_string(number) + R"(,"Schedules":[)" + schedules + "]}";
  };
  const std::string am = R"({"StartTime":"08:30","EndTime":"12:30"})",
                    pm = R"({"StartTime":"15:00","EndTime":"17:30"})";
  const struct {
    const char* what;
    int today;  // 1 is Monday
    std::string weekDays, line;
  } cases[] = {
      {"open today", 3, day(3, am), "08:30 - 12:30"},
      {"two schedules", 3, day(3, am + "," + pm), "08:30 - 12:30    15:00 - 17:30"},
      {"two objects for today", 3, day(3, am) + "," + day(3, pm), "08:30 - 12:3015:00 - 17:30"},
      {"times stand as they are", 3, day(3, R"({"StartTime":8,"EndTime":"tardi"})"), "8 - tardi"},
      {"Monday seen on Thursday", 4, day(1, am + "," + pm),
       "Lunedì  08:30 - 12:30    15:00 - 17:30"},
      {"Sunday is the seventh", 7, day(7, am), "08:30 - 12:30"},
      {"Sunday seen on Saturday", 6, day(7, am), "Domenica  08:30 - 12:30"},
      {"the nearest wins, not the first", 5, day(1, am) + "," + day(6, pm),
       "Sabato  15:00 - 17:30"},
      {"from Sunday to Monday", 7, day(2, am) + "," + day(1, pm), "Lunedì  15:00 - 17:30"},
      {"only the first object of a later day", 3, day(4, am) + "," + day(4, pm),
       "Giovedì  08:30 - 12:30"},
      {"a later day without hours is taken as found", 3, day(4, "") + "," + day(5, am),
       "Giovedì  "},
      {"today without hours, nothing else", 3, day(3, ""), "Mercoledì  "},
      {"a day that is no day", 3, day(8, am) + "," + day(0, am), "NESSUN VALORE TROVATO"},
      {"a day that is a text", 3, R"({"WeekDay":"3","Schedules":[]})", "NESSUN VALORE TROVATO"},
      {"an empty week", 3, "", "NESSUN VALORE TROVATO"},
  };
  const auto start = DateTime().Now();  // a Wednesday
  for (const auto& c : cases) {
    phone.test.clock().setNow(start + (c.today - 3) * kDayLength);
    open(R"({"Calendar":[{"Title":"Orari","WeekDays":[)" + c.weekDays + "]}]}");
    EXPECT_THAT(rows(), ElementsAre(Row{kCalendar, "Orari", c.line, ""})) << c.what;
  }
}

TEST_F(Directory, AValueMayFillTheRowWhereThereIsNoNote) {
  open(R"({"Calendar":[{"WeekDays":[]},{"WeekDays":[],"Note":"n"}]})");
  EXPECT_EQ(part(0, "item_value")->frame().height, 60);
  EXPECT_LT(part(1, "item_value")->frame().height, 60);
}

TEST_F(Directory, ARowGrowsWithItsWordsAndNothingRunsIntoAnother) {
  std::string schedules;
  for (int i = 8; i < 20; ++i)
    schedules += std::string(i > 8 ? "," : "") + R"({"StartTime":")" + std::to_string(i) +
                 R"(:00","EndTime":")" + std::to_string(i) + R"(:45"})";
  const std::string slots = R"([{"WeekDay":3,"Schedules":[)" + schedules + "]}]";
  const std::string entity =
      R"({"Contacts":[{"Title":"Telefono","Value":"0123","Note":"Solo il mattino","Type":0},
        {"Title":"Posta","Value":"un.indirizzo.davvero.molto.lungo@ufficio.comune.varlo.example",
         "Note":"Una nota che va a capo più d'una volta perché è fatta di parole lunghissime, come precipitevolissimevolmente e altre ancora","Type":1}],
      "Calendar":[{"Title":"Orari","Note":"In agosto solo il mattino","WeekDays":)" +
      slots + R"(},{"Title":"Sportello","WeekDays":)" + slots + "}]}";
  for (const ui::Size size : {ui::Size{320, 568}, {568, 320}, {768, 1024}}) {
    SCOPED_TRACE(size.width);
    turn(size);
    open(entity);
    for (const bool turned : {false, true}) {
      if (turned) turn({size.height, size.width});
      ASSERT_EQ(list()->_getsize(), 4);
      if (size.width < 768) {
        EXPECT_EQ(list()->_getitem(0)->Size, 80) << "the usual row";
      }
      for (int i = 0; i < 4; ++i) {
        const auto* title = part(i, "item_title");
        const auto* value = part(i, "item_value");
        const auto* note = part(i, "item_note");
        const double width = value->bounds().width;
        EXPECT_LE(title->frame().bottom(), value->frame().y + 2) << i;
        EXPECT_LE(value->sizeThatFits({width, 0}).height, value->bounds().height) << i;
        EXPECT_LE(note->sizeThatFits({width, 0}).height * !note->displayText().empty(),
                  note->bounds().height)
            << i;
        if (!note->displayText().empty()) {
          EXPECT_LE(value->frame().bottom(), note->frame().y + 0.5) << i;
        }
        EXPECT_LE(value->frame().right(), list()->_asview().Width()) << i;
        EXPECT_LE(std::max(value->frame().bottom(), note->frame().bottom()),
                  list()->_getitem(i)->Size + 0.5)
            << i;
      }
    }
  }
}

TEST_F(Directory, ATapDoesWhatTheRowIs) {
  open(R"({"Name":"E","Contacts":[{"Title":"Telefono","Value":"+39 0123","Type":0},
      {"Title":"Posta","Value":"a@b.it","Type":1},{"Title":"Fax","Value":"0124","Type":2}],
    "Addresses":[{"Title":"Qui","Value":"Via Uno","Latitude":45.5,"Longitude":-9},
      {"Title":"Altrove","Value":"Via Due","Longitude":9},
      {"Title":"Ignoto","Value":"Via Tre","Latitude":null,"Longitude":null}]})");
  const std::pair<const char*, std::string> taps[] = {
      {"Altrove", ""},
      {"Ignoto", ""},
      {"Fax", ""},
      {"Telefono", "tel:+390123"},
      {"Posta", "mailto:a@b.it"},
      {"Qui", deployment::hosts().maps.str() + "/?q=45.5,-9"}};
  for (const auto& [row, url] : taps) {
    ASSERT_TRUE(enter(row)) << row;
    EXPECT_EQ(opened(), url) << row;
  }
  EXPECT_EQ(dialogText(), "");
}

TEST_F(Directory, ACalendarOpensItsWholeWeek) {
  open(R"({"Calendar":[{"Title":"Orari","WeekDays":[
    {"WeekDay":7,"Schedules":[]},
    {"WeekDay":1,"Schedules":[{"StartTime":"08:30","EndTime":"12:30"},
                              {"StartTime":"15:00","EndTime":"17:00"}]}]}]})");
  ASSERT_TRUE(enter("Orari"));
  EXPECT_EQ(dialogText(), "Orari: Domenica\nLunedì\n08:30 - 12:30\n15:00 - 17:00\n");
  ASSERT_TRUE(enter("Chiudi"));
  EXPECT_EQ(dialogText(), "");
  EXPECT_EQ(title(), "") << "the page is still the entity's";
}

TEST_F(Directory, TheRowsCopyIsPrivate) {
  const auto entity = mapOf(R"({"Contacts":[{"Title":"T","Value":"1","Type":0}]})");
  kes_infocitta_entity::instance()._caricaentity(entity);
  settle();
  EXPECT_EQ(KesMap::fromBoxed(list()->_getvalue(0)).Get("TYPE"), "CONTACT");
  const auto contact = KesMap::fromBoxed(KesList::fromBoxed(entity.Get("Contacts")).Get(0));
  EXPECT_FALSE(contact.ContainsKey("TYPE"));
}

TEST_F(Directory, ACategoryThatFailsLeavesAnEmptyPageAndAMessage) {
  visit(kDirectory);
  ASSERT_GE(app()._clv->_getsize(), 6);
  const auto category = KesMap::fromBoxed(app()._clv->_getvalue(0));
  const auto name = category.Get("Nome").asText().str();
  host.faults().add(kDirectoryPath + category.Get("Link").asText().str(), Fault::drop());
  ASSERT_TRUE(enter(name));
  EXPECT_EQ(title(), name);
  EXPECT_EQ(kes_infocitta::instance()._clv->_getsize(), 0);
  EXPECT_EQ(toast(), kNoConnection);
}

TEST_F(Directory, EachCategoryFillsItsOwnPageWhateverAnswersFirst) {
  publish(std::string(kDirectoryPath) + "uno.json", R"([{"Name":"Primo"},{"Name":"Ancora"}])");
  publish(std::string(kDirectoryPath) + "due.json", R"([{"Name":"Secondo"}])");
  host.faults().add(std::string(kDirectoryPath) + "uno", Fault::delay(300));
  auto& directory = kes_infocitta::instance();
  directory._infocitta_caricaelementi("Uno", "uno");
  const auto first = directory._clv;
  directory._infocitta_caricaelementi("Due", "due");
  settle();
  EXPECT_THAT(rowsOf(first), ElementsAre("Primo", "Ancora"));
  EXPECT_THAT(rowsOf(directory._clv), ElementsAre("Secondo"));
}

}  // namespace
}  // namespace varlo
