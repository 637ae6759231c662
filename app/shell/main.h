// kes_main: the shell of the app. It builds the one home page, the navigation and the
// drawer with the left menu, and decides where a tap leads. Each feature replaces what
// the home page shows; a detail goes to a page pushed on the navigation.
//
// The main module, one instance, made by the application delegate at launch. Main thread.
#pragma once

#include "app/kit/feature.h"
#include "app/messaging/messaging.h"
#include "runtime/views/app/application_wrapper.h"
#include "runtime/views/app/notification.h"
#include "runtime/views/dialogs/custom_dialog.h"
#include "runtime/views/pages/navigation_controller.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/pages/side_menu.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "runtime/views/wrappers/web_view_wrapper.h"

namespace kes {
class KesImageViewWrapper;
class kes_dateutils;
}  // namespace kes

namespace varlo {

using namespace kes;

class kes_infocitta;
class kes_infocitta_entity;
class kes_menudelgiorno;
class kes_modmaps;
class kes_modpizzaprezzi;
class kes_modscuola;
class kes_rifiuti;

class kes_main final : public Feature<kes_main> {
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
  void _msg_click(Value) {}
  void _complete(Value) {}
  void _dialog_result(Value) {}

  // --- What the shell itself shows.
  Resumable<> _caricahome();
  Resumable<> _caricadisclaimer();
  Resumable<> _controlloversione();

  // --- What the shell offers to the features.
  // An empty list on the home page, under its title. A sub fills the list that it made,
  // whatever the page shows by then.
  Ref<kes_customlistview> showList(const Text& title);
  Resumable<> _downloadimage(Text link, KesImageViewWrapper view);
  Resumable<> _movecustomdialog(iCustomDialog dialog, double top);
  // Dates are texts of the form year-month-day, with anything behind.
  std::int64_t _datetolong(const Text& date);
  std::int64_t _datetolongfb(const Text& date) { return _datetolong(date); }
  Text _formatodata(const Text& date, bool withNames);  // nothing for what is no date
  Text _formatoora(const Text& dateAndTime);
  Text _getstringdayfb(int day);
  std::int32_t _cint(double number) { return static_cast<std::int32_t>(Value(number).asInt64()); }
  KesMap _copymap(const KesMap& map);
  Text _getversion();

  // --- Pharmacy on duty (farmacie).
  Resumable<> _farmacie_farmaciaaperta();
  Resumable<Value> _farmacie_recuperafarmacia(std::int64_t ticks, KesList days);
  Value _farmacie_recuperadatifarmacia(const KesList& pharmacies, const Text& key);
  Text _farmacie_inseriscidati(const KesMap& pharmacy, const Text& label);

  // --- City directory: the categories (infocitta).
  Resumable<> _infocitta_caricalistacategorie();

  // --- Events and sport (eventi).
  Resumable<> _fbeventi_scarica(Text title, Text page);
  void _fbeventi_leggidati(Text title, Text document);
  Resumable<> _fbeventi_sport();
  Resumable<> _fbeventi_apri(Text id);             // a moment after the tap
  void _card_resize(double width, double height);  // of the event's card that sends it

  // --- News and newsletter (notizie).
  Resumable<> _newsvarlo_caricalista();
  void _newsvarlo_feed(const KesMap& item);
  Resumable<> _newsletter_scaricalista();
  Resumable<> _newsletter_feed(Text address);

  // --- Archive of official acts (atti).
  void _storicoatti_lista();
  Resumable<> _storicoatti_caricalista(Text search);
  Resumable<> _storicoatti_atto(KesMap act);
  Resumable<> _storicoatti_cerca();
  void _storicoatti_apri(const Value& value);  // an act, or an attachment of the open one

  // --- The lists of the features whose details have a module of their own (pizza, menu,
  // scuola, mappe).
  Resumable<> _pizzaprezzi_caricapizzerielista();
  Resumable<> _menudelgiorno_caricaelenco();
  Resumable<> _menuscuola_caricalistamenuscuole();
  Resumable<> _caricamappe();

  KesApplicationWrapper _app;
  KesNavigationControllerWrapper _navcontrol;
  KesSideMenuController _smc;
  KesPage _home;
  KesWebViewWrapper _web;
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

  Ref<kes_modpizzaprezzi> _modpizzaprezzi;
  Ref<kes_menudelgiorno> _menudelgiorno;
  Ref<kes_infocitta> _infocitta;
  Ref<kes_infocitta_entity> _infocitta_entity;
  Ref<kes_rifiuti> _rifiuti;
  Ref<kes_modmaps> _modmaps;
  Ref<kes_modscuola> _modscuola;
  Ref<kes_httputils2service> _httputils2service;
  Ref<kes_dateutils> _dateutils;

 private:
  void markMenu(std::int32_t value);
  Ref<kes_customlistview> acts_;  // the list of acts that was shown last

  void showOnHome(const char* layout, const Text& title);
  Resumable<> showDocument(Text title, Text path);
  std::int64_t dayOf(const Text& date);
};

}  // namespace varlo
