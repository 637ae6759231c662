// School menus: the rotation and its dates, the days on the page, how one gets from one to
// the next.
#include "app/scuola/modscuola.h"
#include "runtime/data/dates/dateutils.h"
#include "town_phone.h"

namespace varlo {
namespace {

constexpr int kSchools = 2;
constexpr const char* kFolder = "/InfoVarlo/menuscuola/master/";
constexpr std::int64_t kHour = 3600000;

class Schools : public LaunchedTest {
 protected:
  static kes_modscuola& school() { return kes_modscuola::instance(); }

  // An instant of a day in the town's time.
  std::int64_t on(int year, int month, int day, int hour = 12) {
    return app()._dateutils->_setdateandtime(year, month, day, hour, 0, 0);
  }
  // A period with a meal for each day of each week: "1.2" is Tuesday of the first.
  static std::string period(const std::string& from, const std::string& to,
                            const std::string& anchor, const std::string& prefix = "") {
    std::string json = R"({"valid_from":")" + from + R"(","valid_to":")" + to +
                       R"(","date_start":")" + anchor + R"(","note":"nota )" + prefix + R"(")";
    for (int week = 1; week <= 4; ++week) {
      json += ",\"week_" + std::to_string(week) + "\":{";
      for (int day = 1; day <= 5; ++day)
        json += (day > 1 ? ",\"day_" : "\"day_") + std::to_string(day) + "\":\"" + prefix +
                std::to_string(week) + "." + std::to_string(day) + "\"";
      json += "}";
    }
    return json + "}";
  }
  std::string meal(const std::string& menu, std::int64_t d) {
    return school()._menuscuola_recuperamenugiorno(mapOf("{\"menu\":[" + menu + "]}"), d).str();
  }
  std::string note(const std::string& menu, std::int64_t d) {
    return school()._menuscuola_recuperamenunote(mapOf("{\"menu\":[" + menu + "]}"), d).str();
  }
  void openSchool(const std::string& document) {
    publish(std::string(kFolder) + "prova.json", document);
    school()._start("prova");
    settle();
  }
  static const ui::View* viewOf(const ui::View& view, std::string_view name) {
    if (view.name() == name) return &view;
    for (const auto& child : view.children())
      if (const auto* found = viewOf(*child, name)) return found;
    return nullptr;
  }
  static std::string part(int day, std::string_view name) {
    const auto* view = viewOf(KesPanelWrapper::fromBoxed(school()._panels.Get(day)).view(), name);
    return view ? view->displayText() : "?";
  }
  Trace days() {
    Trace all;
    for (int i = 0; i < school()._panels.Size(); ++i) all.push_back(part(i, "lbltile"));
    return all;
  }
  // The day that is on the screen; nothing while two are.
  std::string shownDay() {
    const double page = school()._scview.ScrollOffsetX() / school()._scview.Width();
    return page == std::floor(page) ? part(static_cast<int>(page), "lbltile") : "";
  }
};

TEST_F(Schools, TheRotationCountsWeeksFromItsAnchor) {
  const std::string monday = period("01/09/2025", "01/07/2026", "15/09/2025");
  const struct {
    const char* what;
    int year, month, day;
    const char* meal;
  } cases[] = {
      {"the anchor's day", 2025, 9, 15, "1.1"},
      {"its Friday", 2025, 9, 19, "1.5"},
      {"day 7", 2025, 9, 22, "2.1"},
      {"day 14", 2025, 9, 29, "3.1"},
      {"day 21", 2025, 10, 6, "4.1"},
      {"day 25", 2025, 10, 10, "4.5"},
      {"day 28", 2025, 10, 13, "1.1"},
      {"behind the change to winter time", 2025, 10, 27, "3.1"},
      {"day 56", 2025, 11, 10, "1.1"},
      {"New Year's Eve", 2025, 12, 31, "4.3"},
      {"behind the change to summer time", 2026, 3, 30, "1.1"},
      {"its Tuesday", 2026, 3, 31, "1.2"},
      {"before the anchor", 2025, 9, 12, "NON CARICATO"},
      {"long before the anchor", 2025, 9, 1, "NON CARICATO"},
      {"before the period", 2025, 8, 29, "NON CARICATO"},
      {"the last day within", 2026, 6, 30, "2.2"},
      {"the day that valid_to names", 2026, 7, 1, "NON CARICATO"},
      {"a Saturday", 2025, 9, 20, "NON CARICATO"},
  };
  for (const auto& c : cases)
    for (const int hour : {0, 1, 12, 23}) {
      if (hour == 0 && std::string_view(c.what).starts_with("the day that")) continue;
      EXPECT_EQ(meal(monday, on(c.year, c.month, c.day, hour)), c.meal) << c.what << hour;
    }
  EXPECT_EQ(meal(monday, on(2026, 7, 1, 0)), "2.3") << "at midnight it still is within";
  // An anchor on a Wednesday changes the week on Wednesdays.
  const std::string wednesday = period("01/09/2025", "01/07/2026", "17/09/2025");
  EXPECT_EQ(meal(wednesday, on(2025, 9, 23)), "1.2");
  EXPECT_EQ(meal(wednesday, on(2025, 9, 24)), "2.3");
}

TEST_F(Schools, TheFirstPeriodThatHoldsTheDayWins) {
  const auto d = on(2025, 9, 23);  // a Tuesday
  const std::string early = period("01/09/2025", "23/09/2025", "15/09/2025", "a"),
                    all = period("01/09/2025", "01/07/2026", "15/09/2025", "b"),
                    late = period("01/09/2025", "01/07/2026", "15/09/2025", "c"),
                    future = period("01/09/2025", "01/07/2026", "06/10/2025", "d");
  const struct {
    const char* what;
    std::string menu;
    const char *meal, *note;
  } cases[] = {
      {"overlapping", all + "," + late, "b2.2", "nota b"},
      {"the day after the end", early + "," + late, "c2.2", "nota c"},
      {"an anchor to come", future + "," + late, "c2.2", "nota d"},
      {"bad ones before", R"(null,{"valid_from":"x"},{"valid_from":"01/09/2025"},7,)" + all, "b2.2",
       "nota b"},
      {"a date that is none", R"({"valid_from":"1/9/25","valid_to":"1/9/26"},)" + all, "b2.2",
       "nota b"},
      {"a week that is none",
       R"({"valid_from":"01/09/2025","valid_to":"01/09/2026","date_start":"15/09/2025",
          "week_2":"pane","note":null},)" +
           all,
       "b2.2", ""},
      {"no period", "", "NON CARICATO", ""},
      {"a day of several lines",
       R"({"valid_from":"01/09/2025","valid_to":"01/09/2026","date_start":"15/09/2025",
          "week_2":{"day_2":"Pasta|Pollo|Mela"},"note":"Pane"})",
       "Pasta\nPollo\nMela", "Pane"},
      {"a day that is missing",
       R"({"valid_from":"01/09/2025","valid_to":"01/09/2026","date_start":"15/09/2025",
          "week_2":{"day_1":"Pasta","day_2":null}})",
       "NON CARICATO", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(meal(c.menu, d), c.meal) << c.what;
    EXPECT_EQ(note(c.menu, d), c.note) << c.what;
  }
}

TEST_F(Schools, TheDaysAroundTodayStandSideBySide) {
  const struct {
    const char* what;
    std::int64_t now;
    int size;
    const char *first, *shown, *last;
  } cases[] = {
      {"a Wednesday", on(2017, 11, 15, 9), 11, "mercoledì 8 novembre", "mercoledì 15 novembre",
       "mercoledì 22 novembre"},
      {"a Saturday", on(2017, 11, 18), 10, "lunedì 13 novembre", "lunedì 20 novembre",
       "venerdì 24 novembre"},
      {"a Sunday", on(2017, 11, 19, 23), 10, "lunedì 13 novembre", "lunedì 20 novembre",
       "venerdì 24 novembre"},
      {"New Year's Eve", on(2025, 12, 31, 23), 11, "mercoledì 24 dicembre", "mercoledì 31 dicembre",
       "mercoledì 7 gennaio"},
      {"before the change to summer time", on(2026, 3, 27, 2), 11, "venerdì 20 marzo",
       "venerdì 27 marzo", "venerdì 3 aprile"},
      {"just before midnight, around the change to winter time", on(2026, 10, 23, 23) + kHour - 1,
       11, "venerdì 16 ottobre", "venerdì 23 ottobre", "venerdì 30 ottobre"},
      {"a leap day's week", on(2028, 3, 1, 0), 11, "mercoledì 23 febbraio", "mercoledì 1 marzo",
       "mercoledì 8 marzo"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    phone.test.clock().setNow(c.now);
    openSchool(R"({"name":"Scuola","menu":[]})");
    ASSERT_EQ(days().size(), static_cast<std::size_t>(c.size));
    EXPECT_EQ(days().front(), c.first);
    EXPECT_EQ(shownDay(), c.shown);
    EXPECT_EQ(days().back(), c.last);
    EXPECT_EQ(part(0, "lblvalue"), "NON CARICATO");
  }
  EXPECT_EQ(title(), "Scuola");
}

TEST_F(Schools, AListOfSchoolsLeadsToTheirMenus) {
  publish(std::string(kFolder) + "scuole.json",
          R"([{"Nome":"Scuola Rodari","Link":"rodari"}, {"Nome":"Senza menu"}, null,
              {"Link":"x"}, {"Nome":"Asilo","Link":"asilo"}])");
  visit(kSchools);
  EXPECT_EQ(title(), "Menu Scuole");
  EXPECT_THAT(rowsOf(app()._clv), ElementsAre("Scuola Rodari", "Asilo"));
  ASSERT_TRUE(enter("Scuola Rodari"));
  EXPECT_EQ(title(), "Scuola primaria Gianni Rodari");
  EXPECT_EQ(shownDay(), "mercoledì 15 novembre");
  EXPECT_NE(part(5, "lblvalue"), "NON CARICATO");
  // The young ones' document is not there: an empty page, without a word.
  app()._navcontrol.RemoveCurrentPage2(false);
  ASSERT_TRUE(enter("Asilo"));
  EXPECT_EQ(title(), "");
  EXPECT_EQ(toast(), "");
  EXPECT_EQ(school()._panels.Size(), 0);
  EXPECT_FALSE(shows("NON CARICATO"));
}

TEST_F(Schools, ADocumentOfAnotherFormLeavesAnEmptyPage) {
  for (const char* document :
       {"[]", "<html>", "{}", R"({"name":[],"menu":[]})", R"({"menu":{}})"}) {
    openSchool(document);
    EXPECT_EQ(std::exchange(faults, {}).size(), 1u) << document;
    EXPECT_EQ(school()._panels.Size(), 0) << document;
  }
}

TEST_F(Schools, OneGetsFromDayToDayAndKeepsItWhenThePhoneIsTurned) {
  const std::string longMeal = "a|b|c|d|e|f|g|h|i|j|k";  // fits upright, and not turned
  openSchool("{\"name\":\"Scuola\",\"menu\":[" +
             period("01/09/2017", "01/07/2018", "11/09/2017", longMeal) + "]}");
  EXPECT_EQ(shownDay(), "mercoledì 15 novembre");
  const auto press = [&](const KesButtonWrapper& button) {
    phone.tap(button.view());
    settle();
  };
  press(school()._before);
  EXPECT_EQ(shownDay(), "martedì 14 novembre");
  school()._before.RequestFocus();
  phone.app.key(ui::Key::Enter);
  settle();
  EXPECT_EQ(shownDay(), "lunedì 13 novembre");
  for (const ui::Size size : {ui::Size{568, 320}, {480, 200}, {320, 568}}) {
    turn(size);
    EXPECT_EQ(shownDay(), "lunedì 13 novembre") << size.width;
    EXPECT_EQ(school()._iwidth, size.width);
    EXPECT_EQ(school()._iheight, size.height - 64);
    EXPECT_EQ(school()._scview.ContentWidth(), size.width * 11);
    for (int i = 0; i < 11; ++i) {
      const auto panel = KesPanelWrapper::fromBoxed(school()._panels.Get(i));
      EXPECT_EQ(panel.view().frame(), (ui::Rect{size.width * i, 0, size.width, size.height - 64}));
      const auto meal = viewOf(panel.view(), "lblvalue")->frame(),
                 note = viewOf(panel.view(), "lblnote")->frame();
      const auto& page = static_cast<const ui::ScrollView&>(*viewOf(panel.view(), "scday"));
      EXPECT_LE(meal.y + meal.height, note.y) << "one text over the other, day " << i;
      EXPECT_LE(note.y + note.height, page.contentSize().height) << "out of reach, day " << i;
      EXPECT_EQ(page.contentSize().height > page.bounds().height, size.height < size.width);
    }
  }
  for (int i = 0; i < 8; ++i) press(school()._after);
  EXPECT_EQ(shownDay(), "mercoledì 22 novembre");
  EXPECT_FALSE(school()._after.Visible()) << "nothing comes after the last";
  EXPECT_TRUE(school()._before.Visible());
}

// The first school's menu comes when the second is on the screen.
TEST_F(Schools, AMenuThatComesLateStaysOffAnothersPage) {
  publish(std::string(kFolder) + "prova.json", R"({"name":"Prova","menu":[]})");
  publish(std::string(kFolder) + "altra.json", R"({"name":"Altra","menu":[]})");
  host.faults().add(std::string(kFolder) + "prova", Fault::delay(200));
  school()._start("prova");
  app()._navcontrol.RemoveCurrentPage2(false);
  school()._start("altra");
  settle();
  EXPECT_EQ(title(), "Altra");
  EXPECT_EQ(school()._panels.Size(), 11);
  EXPECT_EQ(school()._scview.Panel().NumberOfViews(), 11);
}

}  // namespace
}  // namespace varlo
