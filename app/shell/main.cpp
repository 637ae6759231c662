#include "app/shell/main.h"

#include "app/infocitta/infocitta.h"
#include "app/infocitta/infocitta_entity.h"
#include "app/kit/deployment.h"
#include "app/shell/menu.h"
#include "app/shell/modules.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/data/serialized/serializer.h"
#include "runtime/views/base/font.h"
#include "runtime/views/dialogs/message_box.h"
#include "runtime/views/richtext/cs_builder.h"
#include "runtime/views/wrappers/image_view_wrapper.h"

namespace varlo {

using deployment::documents;

namespace {

// Values of rows of the menu: what is shown at start, and what opens outside.
constexpr std::int32_t kHomeRow = 1, kStoreRow = 21;

constexpr float kIconSize = 20;

}  // namespace

kes_main::kes_main() = default;
kes_main::~kes_main() = default;

void kes_main::describe(ClassBuilder<kes_main>& c) {
  c.name("kes_main");
  c.sub<&kes_main::_application_start>("application_start");
  c.sub<&kes_main::_application_active>("application_active");
  c.sub<&kes_main::_application_background>("application_background");
  c.sub<&kes_main::_application_remotenotification>("application_remotenotification");
  c.sub<&kes_main::_fm_fcmconnected>("fm_fcmconnected");
  c.sub<&kes_main::_lstmenu_itemclick>("lstmenu_itemclick");
  c.sub<&kes_main::_clv_itemclick>("clv_itemclick");
  c.sub<&kes_main::_home_barbuttonclick>("home_barbuttonclick");
  c.sub<&kes_main::_secondpage_barbuttonclick>("secondpage_barbuttonclick");
  c.sub<&kes_main::_web_overrideurl>("web_overrideurl");
  c.sub<&kes_main::_card_resize>("card_resize");
  c.sub<&kes_main::_jobdone>("jobdone");
  c.sub<&kes_main::_msg_click>("msg_click");
  c.sub<&kes_main::_complete>("complete");
  c.sub<&kes_main::_dialog_result>("dialog_result");
  c.field<&kes_main::_web>("web");
  c.field<&kes_main::_clv>("clv");
  c.field<&kes_main::_lstmenu>("lstmenu");
  c.field<&kes_main::_lblversion>("lblversion");
  c.field<&kes_main::_subtitle>("subtitle");
  c.field<&kes_main::_atti_oggetto>("atti_oggetto");
}

void kes_main::initializeStaticModules() { AppModules::initialiseAll(); }

void kes_main::_process_globals() {
  const auto only = [](auto& field) {
    field = Ref(&std::remove_cvref_t<decltype(*field)>::instance());
  };
  only(_modpizzaprezzi);
  only(_menudelgiorno);
  only(_infocitta);
  only(_infocitta_entity);
  only(_rifiuti);
  only(_modmaps);
  only(_modscuola);
  only(_httputils2service);
  only(_dateutils);
  _imenu = 0;
  _tokenfb = deployment::graphToken();
  _tokengoogle = deployment::placesKey();
  _tokenmaps = deployment::mapsKey();
}

// --- Life of the application.

void kes_main::_application_start(Value) {
  initializeStaticModules();
  _analytics.Initialize();
  _navcontrol.Initialize(bi(), "nc");

  _home.Initialize(bi(), "Home");
  _home.RootPanel().setColor(KesColors::White);

  KesPage menu;
  menu.Initialize(bi(), "lp");
  menu.RootPanel().setColor(KesColors::White);
  // Its rows are measured before the drawer has it.
  menu.RootPanel().setWidth(KesSideMenuController::MenuWidth());
  menu.RootPanel().LoadLayout("laymenu", bi());
  for (const MenuRow& row : varlo::menu()) {
    KesCSBuilder text;
    text.Initialize().Alignment("ALIGN_LEFT").Font(row.font(kIconSize)).Append(c().Chr(row.icon));
    text.PopAll().Append(row.label);
    _lstmenu->_addtextitemcs(text, row.value);
    auto& button = _lstmenu->_getitem(_lstmenu->_getsize() - 1)->Panel.view();
    if (row.spoken) button.setAccessibleName(row.spoken);
  }
  markMenu(kHomeRow);

  _smc.Initialize(menu, _navcontrol, KesPage());
  _app.setKeyController(_smc.object());
  _navcontrol.ShowPage(_home);
  _home.setTopLeftButtons(KesList::of({_smc.CreateBarButton("left")}));
  KesNativeObject drawer;
  drawer.setObject(_smc.object());
  drawer.SetField("shouldStretchDrawer", false);
  _lblversion.setText("Ver. " + _getversion());

  _caricahome();
  _controlloversione();

  _app.RegisterUserNotifications(true, true, true);
  _app.RegisterForRemoteNotifications();
  _fm.Initialize(bi(), "fm");
}

void kes_main::_application_active() { _fm.FCMConnect(); }

void kes_main::_application_background() { _fm.FCMDisconnect(); }

void kes_main::_fm_fcmconnected() {
  c().Log("FCMConnected");
  _fm.SubscribeToTopic("ios_general");
}

// The citizen sees the message as it came: its text form is the alert.
void kes_main::_application_remotenotification(KesMap message, Ref<KesCompletionHandler> handler) {
  const Text text = c().SmartStringFormatter("", message);
  c().Log("Message arrived: " + text);
  Msgbox(text, "Push message!");
  KesNotificationWrapper notification;
  notification.Initialize(DateTime().Now() + KesDateTime::TicksPerSecond);
  notification.setAlertBody(Kes::ObjectToString(message.Get("alert")));
  notification.Register();
  handler->Complete();
}

// --- The menu, the page and its bars.

void kes_main::_lstmenu_itemclick(int, Value value) {
  const auto chosen = static_cast<std::int32_t>(Kes::ObjectToLongNumber(value));
  _smc.CloseMenu();
  const MenuRow* row = menuRow(chosen);
  if (!row || !row->open) {
    // The page stays as it is, and so does what a tap on it means.
    c().Log("Menu row " + std::to_string(chosen) + " has no feature yet.");
    return;
  }
  _imenu = chosen;
  if (chosen != kStoreRow) markMenu(chosen);
  row->open(*this);
}

// The row whose feature the page shows.
void kes_main::markMenu(std::int32_t value) {
  const auto rows = varlo::menu();
  for (std::int32_t i = 0; i < _lstmenu->_getsize(); ++i)
    _lstmenu->_getitem(i)->Panel.view().setCurrent(rows[static_cast<std::size_t>(i)].value ==
                                                   value);
}

Resumable<> kes_main::_clv_itemclick(int, Value value) {
  if (const MenuRow* row = menuRow(_imenu); row && row->tap) row->tap(*this, value);
  co_return;
}

Resumable<> kes_main::_home_barbuttonclick(Value tag) {
  if (tag.textView() == "left") _smc.OpenLeftMenu();
  if (tag.textView() == "SEARCH_ATTI") _storicoatti_cerca();
  co_return;
}

void kes_main::_secondpage_barbuttonclick(Value tag) {
  if (tag.textView() == "WEB") _app.OpenURL(Kes::ObjectToString(_secondpage.Tag()));
}

// Links of a page open outside the app.
bool kes_main::_web_overrideurl(Text url) {
  _app.OpenURL(url);
  return true;
}

// --- What the shell itself shows.

Resumable<> kes_main::_caricahome() {
  return showDocument("InfoVarlo", "/InfoVarlo/config/master/home_ios.html");
}

Resumable<> kes_main::_caricadisclaimer() {
  return showDocument("Disclaimer", "/InfoVarlo/config/master/about.html");
}

// The content of the home page anew. A button that the former feature put on the bar goes
// with its content.
void kes_main::showOnHome(const char* layout, const Text& title) {
  _home.RootPanel().RemoveAllViews();
  _home.RootPanel().LoadLayout(layout, bi());
  _home.setTitle(title);
  _home.setTopRightButtons(KesList::of({}));
}

Resumable<> kes_main::showDocument(Text title, Text path) {
  showOnHome("layweb", title);
  auto web = _web;  // a later page may replace it while this one loads
  const auto progress = _hd.progress("Caricamento...");
  const auto job = co_await fetch(documents(path));
  if (!job->_success) co_return noConnection();
  web.LoadHtml(job->_getstring(), documents(path));
}

Resumable<> kes_main::_controlloversione() {
  const auto job = co_await fetch(documents("/InfoVarlo/config/master/version_ios"));
  if (!job->_success) co_return;
  // Two plain numbers: 1.10 counts as below 1.9.
  const double released = Kes::ObjectToNumber(job->_getstring()).asDouble();
  const double installed = Kes::ObjectToNumber(_getversion()).asDouble();
  if (!(released > installed)) co_return;
  Msgbox2(bi(), "Msg", "Nuova versione rilasciata!", "InfoVarlo", KesList::of({"OK"}));
  const Text button = co_await waitFor<Text>("msg_click:");
  if (button == "OK") _app.OpenURL(deployment::appStorePage());
}

// --- What the shell offers to the features.

Ref<kes_customlistview> kes_main::showList(const Text& title) {
  showOnHome("layclv", title);
  return _clv;
}

Resumable<> kes_main::_downloadimage(Text link, KesImageViewWrapper view) {
  const auto job = co_await fetch(link);
  if (job->_success) Record(job.document(), {}).attempt([&] { view.setBitmap(job->_getbitmap()); });
}

Resumable<> kes_main::_movecustomdialog(iCustomDialog dialog, double top) {
  KesNativeObject shown;
  shown.setObject(dialog.alertView);
  KesViewWrapper view;
  while (!view.IsInitialized() || view.Top() == 0) {
    co_await sleep(5);
    view.setObject(shown.GetField("view").objectOrNull());
  }
  view.setTop(top);
}

std::int64_t kes_main::_datetolong(const Text& date) {
  return DateTime().Add(dayOf(date), 0, 0, 1);
}

std::int64_t kes_main::dayOf(const Text& date) {
  const auto part = [&](int begin, int end) {
    return static_cast<std::int32_t>(Kes::ObjectToNumber(date.SubString2(begin, end)).asInt64());
  };
  return _dateutils->_setdate(part(0, 4), part(5, 7), part(8, 10));
}

Text kes_main::_formatodata(const Text& date, bool withNames) {
  try {
    if (!withNames)
      return date.SubString2(8, 10) + "/" + date.SubString2(5, 7) + "/" + date.SubString2(0, 4);
    const auto ticks = dayOf(date);
    return _dateutils->_getdayofweekname(ticks) + " " +
           std::to_string(DateTime().GetDayOfMonth(ticks)) + " " +
           _dateutils->_getmonthname(ticks) + " " + std::to_string(DateTime().GetYear(ticks));
  } catch (const std::exception& e) {
    Kes::SetException(e);
    c().Log("No date: \"" + date + "\": " + c().LastException().Message());
    return {};
  }
}

Text kes_main::_formatoora(const Text& dateAndTime) { return dateAndTime.SubString2(11, 16); }

Text kes_main::_getstringdayfb(int day) {
  static constexpr const char* kDays[] = {"sun", "mon", "tue", "wed", "thu", "fri", "sat"};
  return day >= 1 && day <= 7 ? kDays[day - 1] : "";
}

KesMap kes_main::_copymap(const KesMap& map) {
  KesSerializator serializer;
  return KesMap::fromBoxed(serializer.ConvertBytesToObject(serializer.ConvertObjectToBytes(map)));
}

Text kes_main::_getversion() {
  KesNativeObject bundle;
  const Value version =
      bundle.Initialize("NSBundle")
          .RunMethod("mainBundle", nullptr)
          .RunMethod("objectForInfoDictionaryKey:",
                     KesArray::initObjectsWithData({"CFBundleShortVersionString"}))
          .objectOrNull();
  return Kes::ObjectToString(version);
}

}  // namespace varlo
