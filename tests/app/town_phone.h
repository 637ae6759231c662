// The app on a headless phone, with the town's real host in the same process.
//
// The town's day is that of the phone's clock. A test may publish documents of its own
// and add faults before launch() or at any time after.
#pragma once

#include <gmock/gmock.h>

#include "app/infocitta/infocitta.h"
#include "app/infocitta/infocitta_entity.h"
#include "app/kit/deployment.h"
#include "app/shell/branding.h"
#include "app/shell/main.h"
#include "app/shell/register_app.h"
#include "platform/ui/reading/finder.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/files/file.h"
#include "runtime/data/json/json_parser.h"
#include "runtime/views/app/app_delegate.h"
#include "tests/support/headless_phone.h"
#include "townhost/town_host.h"

namespace varlo {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using town::Fault;
using Trace = std::vector<std::string>;

// What the left menu's rows are worth.
enum MenuValue { kHome = 1, kPharmacies = 4, kDirectory = 6, kDisclaimer = 20, kStore = 21 };

constexpr const char* kPharmaciesPath = "/InfoVarlo/farmacie/master/farmacie.json";
constexpr const char* kTurnsPath = "/InfoVarlo/farmacie/master/turni.json";
constexpr const char* kDirectoryPath = "/InfoVarlo/infocitta/master/";
constexpr const char* kVersionPath = "/InfoVarlo/config/master/version_ios";
constexpr const char* kNoConnection = "Connessione non presente";

class TownTest : public testing::Test {
 protected:
  // The middle of November 2017, a Wednesday, 09:30 in the town.
  TownTest();
  ~TownTest() override;
  // No sub may have thrown, unless the test took the faults out.
  void TearDown() override { EXPECT_THAT(faults, IsEmpty()); }

  // Starts the app as the platform does, and waits until it has come to rest.
  void launch();
  // Until no job is in flight, no overlay is up and nothing moves.
  void settle();
  void publish(const std::string& path, const std::string& text) {
    host.documents().addFixed(path, "application/json", text);
  }

  kes_main& app() { return kes_main::instance(); }
  void choose(int menuValue) { app()._lstmenu_itemclick(0, menuValue); }
  // Taps what reads so; false when nothing does.
  bool tap(std::string_view text);
  // The same, until all that it sets off has come to rest.
  void visit(int menuValue);
  bool enter(std::string_view text);
  // By the key, from the page of a detail to its list.
  void goBack();
  void turn(ui::Size size);
  void lieDown();  // in landscape, when the pages have followed
  bool shows(std::string_view text);
  std::string title() const;       // of the page on top
  std::string dialogText() const;  // title and message of the dialog shown, or nothing
  const std::string& opened() const { return phone.app.lastOpenedUrl(); }
  std::string toast() { return phone.app.hud().toastText(); }
  // The requests that went to a path, with their queries, in the order in which they came.
  Trace asked(std::string_view path);
  void expectLogged(std::initializer_list<const char*> lines) const;
  // True when no temporary file is left, at once or as soon as the session has tidied up.
  bool temporaryFilesGo();

  static KesMap mapOf(std::string_view json);
  // The texts of a list's rows, top to bottom.
  static Trace rowsOf(const Ref<kes_customlistview>& list);
  // The label of a row that is one text, and the size in which a part of it is written.
  static const ui::Label& labelOf(const Ref<kes_customlistview>& list, int row);
  static double sizeOf(const ui::Label& label, std::string_view part);

  testing_support::HeadlessPhone phone;
  town::TownHost host;
  std::unique_ptr<KesAppDelegate> delegate;
  Trace faults;  // what subs threw with nobody to catch it
};

// The app is up before the test begins.
class LaunchedTest : public TownTest {
 protected:
  void SetUp() override { launch(); }
};

}  // namespace varlo
