#include "app/shell/menu.h"

#include <algorithm>

#include "app/infocitta/infocitta.h"
#include "app/infocitta/infocitta_entity.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/mappe/modmaps.h"
#include "app/menu/menudelgiorno.h"
#include "app/pizza/modpizzaprezzi.h"
#include "app/rifiuti/rifiuti.h"
#include "app/scuola/modscuola.h"
#include "app/shell/main.h"

namespace varlo {

namespace {

using App = kes_main;

KesFont (*const awesome)(float) = &KesFont::CreateFontAwesome;
KesFont (*const material)(float) = &KesFont::CreateMaterialIcons;

KesMap map(const Value& value) { return KesMap::fromBoxed(value); }
Text text(const Value& value) { return Kes::ObjectToString(value); }

void openEvent(App& app, const Value& id) { app._fbeventi_apri(text(id)); }

void openCategory(App& app, const Value& category) {
  app._infocitta->_infocitta_caricaelementi(textOf(map(category), "Nome"),
                                            textOf(map(category), "Link"));
}

void openMap(App& app, const Value& description) {
  app._modmaps->set_datimappa(map(description));
  app._modmaps->_avvia();
}

// The news and the events of the town hall bear the same name on purpose.
const MenuRow kMenu[] = {
    {awesome, 0xF015, " Home", 1,  //
     [](App& app) { app._caricahome(); }, nullptr},
    {awesome, 0xF1EA, " Comune di Varlo", 50,  //
     [](App& app) { app._newsvarlo_caricalista(); },
     [](App& app, const Value& item) { app._newsvarlo_feed(map(item)); }},
    {awesome, 0xF0E0, " Newsletter Varlo", 51, [](App& app) { app._newsletter_scaricalista(); },
     [](App& app, const Value& address) { app._newsletter_feed(text(address)); }},
    {awesome, 0xF0CA, " Storico Atti Varlo", 55, [](App& app) { app._storicoatti_lista(); },
     [](App& app, const Value& value) { app._storicoatti_apri(value); }},
    {material, 0xE878, " Comune di Varlo", 30,
     [](App& app) { app._fbeventi_scarica("Eventi - Comune di Varlo", "Comune.di.Varlo"); },
     openEvent, "Comune di Varlo, eventi"},
    {material, 0xE878, " Live in Varlo", 31,
     [](App& app) { app._fbeventi_scarica("Eventi - Live in Varlo", "live.in.varlo"); }, openEvent},
    {material, 0xE878, " Sport", 32,  //
     [](App& app) { app._fbeventi_sport(); }, openEvent},
    {awesome, 0xF05A, " InfoCittà", 6, [](App& app) { app._infocitta_caricalistacategorie(); },
     openCategory},
    {awesome, 0xF279, " Mappe", 60,  //
     [](App& app) { app._caricamappe(); }, openMap},
    {awesome, 0xF0FA, " Farmacia di turno", 4, [](App& app) { app._farmacie_farmaciaaperta(); },
     [](App& app, const Value& entity) {
       app._infocitta_entity->_caricaentity(map(entity), "farmacie.json");
     }},
    {awesome, 0xF1F8, " Raccolta rifiuti", 22,  //
     [](App& app) { app._rifiuti->_carica(); }, nullptr},
    {material, 0xE80C, " Menu Scuola", 2, [](App& app) { app._menuscuola_caricalistamenuscuole(); },
     [](App& app, const Value& link) { app._modscuola->_start(text(link)); }},
    {material, 0xE561, " Menu del Giorno", 5, [](App& app) { app._menudelgiorno_caricaelenco(); },
     [](App& app, const Value& place) { app._menudelgiorno->_caricadati(map(place)); }},
    {material, 0xE552, " PizzaPrezzi", 3, [](App& app) { app._pizzaprezzi_caricapizzerielista(); },
     [](App& app, const Value& shop) {
       app._modpizzaprezzi->_pizzaprezzi_caricapizzeria(map(shop));
     }},
    {awesome, 0xF128, " Disclaimer", 20,  //
     [](App& app) { app._caricadisclaimer(); }, nullptr},
    {awesome, 0xF179, " Valuta sull'App Store", 21,
     [](App& app) { app._app.OpenURL(deployment::appStorePage()); }, nullptr},
};

}  // namespace

std::span<const MenuRow> menu() { return kMenu; }

const MenuRow* menuRow(std::int64_t value) {
  const auto row = std::ranges::find(kMenu, value, &MenuRow::value);
  return row == std::end(kMenu) ? nullptr : row;
}

}  // namespace varlo
