#include "simulator/tour.h"

#include <filesystem>
#include <fstream>
#include <ostream>

#include "platform/ui/reading/dump.h"
#include "platform/ui/reading/finder.h"
#include "simulator/player.h"

namespace sim {

namespace {

namespace fs = std::filesystem;

// A stop: the name of its files, what to play to get there, and what can be read there, in
// sight or a swipe away: how much of a list is in sight depends on the phone.
struct Stop {
  const char* name;
  const char* script;
  const char* holds = "";
};

// Every row of the menu, in its order, and what lies behind its rows.
constexpr Stop kStops[] = {
    {"01-home", "wait idle"},
    {"02-menu", "menu\nwait idle"},
    {"03-notizie", "tap \"Comune di Varlo\"\nwait idle", "Piano neve"},
    {"04-notizia", "tap \"Piano neve\"\nwait idle", "Piano neve: mezzi e sale"},
    {"05-newsletter", "back\nwait idle\nmenu\nwait idle\ntap \"Newsletter Varlo\"\nwait idle",
     "Newsletter del "},
    {"06-numero", "tap \"Newsletter del \" 1\nwait idle", "Varlo informa"},
    {"07-atti", "back\nwait idle\nmenu\nwait idle\ntap \"Storico Atti Varlo\"\nwait idle",
     "Data Registro: "},
    {"08-cerca-atti", "tap \"Cerca\"\nwait idle", "Ricerca per oggetto"},
    {"09-atto", "tap \"Annulla\"\nwait idle\ntap \"Data Registro: \" 1\nwait idle",
     "Elenco documenti:"},
    {"10-eventi", "back\nwait idle\nmenu\nwait idle\ntap \"Comune di Varlo\" 2\nwait idle",
     "Letture ad alta voce"},
    {"11-live", "menu\nwait idle\ntap \"Live in Varlo\"\nwait idle", "Aperitivo in jazz"},
    {"12-sport", "menu\nwait idle\ntap \"Sport\"\nwait idle", "Calcio Varlo"},
    {"13-infocitta", "menu\nwait idle\ntap \"InfoCittà\"\nwait idle", "Uffici comunali"},
    {"14-categoria", "tap \"Uffici comunali\"\nwait idle", "Anagrafe"},
    {"15-scheda", "tap \"Anagrafe\"\nwait idle", "Telefono"},
    {"16-orari", "tap \"Orari di apertura\"\nwait idle", "Chiudi"},
    {"17-mappe",
     "tap \"Chiudi\"\nwait idle\nback\nwait idle\nback\nwait idle\nmenu\nwait idle\ntap "
     "\"Mappe\"\nwait idle",
     "Defibrillatori"},
    {"18-mappa", "tap \"Defibrillatori\"\nwait idle\nnamed \"map\" \"Mappa\""},
    {"19-segnaposto", "tap \"Croce Verde Varlo\"\nwait idle", "Click per dettagli"},
    {"20-segnaposto-scheda", "tap \"Click per dettagli\"\nwait idle", "Naviga Verso"},
    {"21-mappa-alberi",
     "tap \"Chiudi\"\nwait idle\nback\nwait idle\ntap \"Alberi pubblici\"\nwait idle"},
    {"22-farmacie", "back\nwait idle\nmenu\nwait idle\ntap \"Farmacia di turno\"\nwait idle",
     "Farmacia di turno fino"},
    {"23-farmacia", "tap \"del giorno successivo\"\nwait idle", "Indirizzo"},
    {"24-via",
     "back\nwait idle\nmenu\nwait idle\ntap \"Raccolta rifiuti\"\nwait idle\ntap \"Seleziona "
     "via\"\ntype \"dante\"\nwait idle",
     "Via Dante"},
    {"25-rifiuti", "tap \"Via Dante\"\nwait idle", "ORARIO DI ESPOSIZIONE"},
    {"26-materiale", "tap \"CARTA\"\nwait idle", "SI\n"},
    {"27-scuole",
     "tap \"OK\"\nwait idle\nback\nwait idle\nmenu\nwait idle\ntap \"Menu Scuola\"\nwait idle",
     "Menu Scuole"},
    {"28-menu-scuola", "tap @180,100\nwait idle\nabsent \"Menu Scuole\""},
    {"29-menu-del-giorno", "back\nwait idle\nmenu\nwait idle\ntap \"Menu del Giorno\"\nwait idle",
     "Osteria del Ponte"},
    {"30-menu-trattoria", "tap \"Trattoria da Nando\"\nwait idle", "menudelgiorno"},
    {"31-pizzaprezzi", "back\nwait idle\nmenu\nwait idle\ntap \"PizzaPrezzi\"\nwait idle",
     "Da Gino"},
    {"32-listino", "tap \"Pizzeria Da Gino\"\nwait idle\nnamed \"image\" \"Listino prezzi\""},
    {"33-disclaimer", "back\nwait idle\nmenu\nwait idle\ntap \"Disclaimer\"\nwait idle"},
    {"34-valuta", "menu\nwait idle\ntap \"Valuta sull'App Store\"\nwait idle\nopened \"http\""},
    {"35-messaggio", "push {\"alert\": \"Domani le scuole restano chiuse per neve.\"}\nwait idle",
     "Push message!"},
};

}  // namespace

bool makeTour(Phone& phone, const std::string& folder, std::ostream& out) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    out << "cannot make " << folder << ": " << error.message() << "\n";
    return false;
  }
  Player player(phone, out);
  bool all = true;
  for (const Stop& stop : kStops) {
    try {
      player.play(Script::parse(stop.script));
      if (*stop.holds && !ui::find(phone.window(), stop.holds))
        throw std::runtime_error(std::string("nothing reads \"") + stop.holds + "\"");
      const fs::path base = fs::path(folder) / stop.name;
      phone.application().layoutIfNeeded();
      std::ofstream(base.string() + ".txt") << ui::dump(phone.window());
      const bool drawn = phone.side().shot(base.string() + ".png");
      out << stop.name << (drawn ? ": picture and text" : ": text") << "\n";
    } catch (const std::exception& e) {
      out << stop.name << ": not reached: " << e.what() << "\n";
      all = false;
    }
    out.flush();
  }
  return all;
}

}  // namespace sim
