// kes_main: the shell of the app. It builds the one home page, the navigation and the
// drawer with the left menu, and decides where a tap leads. Each feature replaces what
// the home page shows; a detail goes to a page pushed on the navigation.
//
// The main module, one instance, made by the application delegate at launch. Main thread.
#pragma once

#include "app/messaging/messaging.h"
#include "components/customlistview.h"
#include "runtime/core/module.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/net/httpjob.h"
#include "runtime/views/app/application_wrapper.h"
#include "runtime/views/app/notification.h"
#include "runtime/views/dialogs/custom_dialog.h"
#include "runtime/views/dialogs/hud.h"
#include "runtime/views/pages/navigation_controller.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/pages/side_menu.h"
#include "runtime/views/wrappers/image_view_wrapper.h"
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "runtime/views/wrappers/web_view_wrapper.h"

namespace varlo {

using namespace kes;

class kes_infocitta;
class kes_infocitta_entity;

class kes_main final : public Module<kes_main> {
 public:
  kes_main();
  ~kes_main() override;
  static void describe(ClassBuilder<kes_main>& c);
  void initializeStaticModules() override;
  void _process_globals() override;

  // --- Life of the application.
  void _application_start(Value startNavigation);
  void _application_active();
  void _application_background();
  void _application_remotenotification(KesMap message, Ref<KesCompletionHandler> handler);
  void _fm_fcmconnected();

  // --- The menu, the page and its bars.
  void _lstmenu_itemclick(int index, Value value);
  Resumable<> _clv_itemclick(int index, Value value);
  Resumable<> _home_barbuttonclick(Value tag);
  void _secondpage_barbuttonclick(Value tag);
  bool _web_overrideurl(Text url);
  // What an event of a wait finds when nobody waits.
  void _jobdone(Value) {}
  void _msg_click(Value) {}
  void _complete(Value) {}
  void _dialog_result(Value) {}

  // --- What the shell itself shows.
  Resumable<> _caricahome();
  Resumable<> _caricadisclaimer();
  Resumable<> _controlloversione();

  // --- What the shell offers to the features.
  Resumable<> _downloadimage(Text link, KesImageViewWrapper view);
  Resumable<> _movecustomdialog(iCustomDialog dialog, double top);
  std::int64_t _datetolong(const Text& date);
  std::int64_t _datetolongfb(const Text& date) { return _datetolong(date); }
  Text _formatodata(const Text& date, bool withNames);
  Text _formatoora(const Text& dateAndTime);
  Text _getstringdayfb(int day);
  std::int32_t _cint(double number) { return static_cast<std::int32_t>(Value(number).asInt64()); }
  KesMap _copymap(const KesMap& map);
  Text _getversion();

  // --- Pharmacy on duty (farmacie.cpp).
  Resumable<> _farmacie_farmaciaaperta();
  Resumable<Value> _farmacie_recuperafarmacia(std::int64_t ticks, KesList days);
  Value _farmacie_recuperadatifarmacia(const KesList& pharmacies, const Text& key);
  Text _farmacie_inseriscidati(const KesMap& pharmacy, const Text& label);

  // --- City directory: the categories (infocitta.cpp).
  Resumable<> _infocitta_caricalistacategorie();

  KesApplicationWrapper _app;
  KesNavigationControllerWrapper _navcontrol;
  KesSideMenuController _smc;
  KesPage _home;
  KesWebViewWrapper _web;
  iHUD _hd;
  Ref<kes_customlistview> _clv;
  std::int32_t _imenu = 0;
  Ref<kes_customlistview> _lstmenu;
  Text _tokenfb, _tokengoogle, _tokenmaps;
  KesLabelWrapper _lblversion;
  iFirebaseAnalytics _analytics;
  iFirebaseNotifications _fm;
  KesXUI _xui;
  KesPage _secondpage;
  KesLabelWrapper _subtitle;
  iCustomDialog _detailsdialog;
  KesTextFieldWrapper _atti_oggetto;

  Ref<kes_infocitta> _infocitta;
  Ref<kes_infocitta_entity> _infocitta_entity;
  Ref<kes_httputils2service> _httputils2service;
  Ref<kes_dateutils> _dateutils;

 private:
  Resumable<> showDocument(Text title, Text path);
  std::int64_t dayOf(const Text& date);
};

}  // namespace varlo
