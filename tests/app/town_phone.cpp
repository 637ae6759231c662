#include "town_phone.h"
#include "platform/ui/overlays/dialog.h"
#include "runtime/views/app/services.h"
#include "tests/support/failures.h"

namespace varlo {

namespace {

town::TownHost::Options onTheClockOf(testing_support::HeadlessPhone& phone) {
  town::TownHost::Options options;
  options.now = [&clock = phone.test.platform().clock()] { return clock.now(); };
  return options;
}

}  // namespace

TownTest::TownTest() : host(onTheClockOf(phone)) {
  setBranding();
  registerApp();
  lendServices();
  KesDateTime::restart();
  File().virtualAssetsFolder = ASSETS_FOLDER;
  deployment::pointEveryServiceAt(Text(host.url()));
  phone.test.platform().mainQueue().setFaultHandler(
      [this](std::exception_ptr fault) { faults.push_back(testing_support::textOf(fault)); });
}

TownTest::~TownTest() {
  delegate.reset();
  // Ends the HTTP engine while there still is a queue for it to post to.
  kes_httputils2service::instance()._process_globals();
  phone.test.platform().mainQueue().close();
}

void TownTest::launch() {
  delegate = std::make_unique<KesAppDelegate>();
  delegate->didFinishLaunching();
  phone.app.activate();
  settle();
}

void TownTest::settle() {
  const auto busy = [this] {
    return kes_httputils2service::instance().jobsInFlight() > 0 || phone.app.hud().progressShown();
  };
  if (!phone.pump.settle(busy)) {
    ADD_FAILURE() << "still busy: " << kes_httputils2service::instance().jobsInFlight()
                  << " jobs in flight, overlay \"" << phone.app.hud().progressText() << '"';
  }
  phone.app.layoutIfNeeded();
}

bool TownTest::tap(std::string_view text) {
  const auto view = ui::find(*delegate->window(), text);
  if (!view) return false;
  ui::scrollIntoView(*view);
  phone.app.layoutIfNeeded();
  phone.tap(ui::tapPoint(*view));
  return true;
}

void TownTest::visit(int menuValue) {
  choose(menuValue);
  settle();
}

bool TownTest::enter(std::string_view text) {
  const bool found = tap(text);
  settle();
  return found;
}

void TownTest::goBack() {
  phone.app.key(ui::Key::Back);
  settle();
}

void TownTest::turn(ui::Size size) {
  phone.screen.setSize(size);
  phone.app.screenChanged();
  settle();
}

void TownTest::lieDown() {
  turn({568, 320});
  phone.test.advance(500);
  settle();
}

bool TownTest::shows(std::string_view text) {
  phone.app.layoutIfNeeded();
  return ui::find(*delegate->window(), text) != nullptr;
}

std::string TownTest::title() const {
  const auto navigation = kes_main::instance()._navcontrol.native();
  return navigation->topViewController()->title();
}

std::string TownTest::dialogText() const {
  const auto& dialogs = phone.app.dialogs();
  return dialogs.empty() ? "" : dialogs.back()->title + ": " + dialogs.back()->message;
}

Trace TownTest::asked(std::string_view path) {
  Trace all;
  for (const auto& request : host.requests().all())
    if (request.path.starts_with(path)) all.push_back(request.path);
  return all;
}

void TownTest::expectLogged(std::initializer_list<const char*> lines) const {
  for (const char* line : lines) EXPECT_TRUE(phone.test.logged(line)) << line;
}

bool TownTest::temporaryFilesGo() {
  return phone.test.runUntil([this] {
    std::error_code gone;  // a file may go while it is looked at
    const std::filesystem::recursive_directory_iterator files(phone.test.folders().temporary, gone);
    return std::none_of(begin(files), end(files), [](const auto& entry) {
      std::error_code ignored;
      return entry.is_regular_file(ignored);
    });
  });
}

KesMap TownTest::mapOf(std::string_view json) {
  KesJSONParser parser;
  parser.Initialize(Text(json));
  return parser.NextObject();
}

Trace TownTest::rowsOf(const Ref<kes_customlistview>& list) {
  Trace rows;
  for (std::int32_t i = 0; i < list->_getsize(); ++i)
    rows.push_back(labelOf(list, i).displayText());
  return rows;
}

const ui::Label& TownTest::labelOf(const Ref<kes_customlistview>& list, int row) {
  return static_cast<const ui::Label&>(list->_getpanel(row).GetView(0).view());
}

double TownTest::sizeOf(const ui::Label& label, std::string_view part) {
  const auto at = static_cast<std::uint32_t>(label.text().find(part));
  return label.attributedText()->at(at).font->size();
}

}  // namespace varlo
