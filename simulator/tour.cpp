#include "simulator/tour.h"

#include <filesystem>
#include <fstream>
#include <ostream>

#include "platform/ui/reading/dump.h"
#include "simulator/player.h"

namespace sim {

namespace {

namespace fs = std::filesystem;

// A stop: what to play to get there, and the name of its files.
struct Stop {
  const char* name;
  const char* script;
};

// Every row of the menu, in its order, and what lies behind its rows.
constexpr Stop kStops[] = {
    {"01-home", "wait idle"},
    {"02-menu", "menu\nwait idle"},
    {"03-notizie",
     "tap \"Comune di Varlo\"\nwait idle\nexpect \"News Comune di Varlo\"\nexpect \"Piano neve\""},
    {"04-notizia", "tap \"Piano neve\"\nwait idle\nexpect \"Piano neve: mezzi e sale\""},
    {"05-newsletter",
     "back\nwait idle\nmenu\nwait idle\ntap \"Newsletter Varlo\"\nwait idle\n"
     "expect \"Newsletter del \" 5"},
    {"06-numero", "tap \"Newsletter del \" 1\nwait idle\nexpect \"Varlo informa\""},
    {"07-atti",
     "back\nwait idle\nmenu\nwait idle\ntap \"Storico Atti Varlo\"\nwait idle\n"
     "expect \"Data Registro: \""},
    {"08-cerca-atti", "tap \"Cerca\"\nwait idle\nexpect \"Ricerca per oggetto\""},
    {"09-atto",
     "tap \"Annulla\"\nwait idle\ntap \"Data Registro: \" 1\nwait idle\n"
     "expect \"Elenco documenti:\""},
    {"10-eventi",
     "back\nwait idle\nmenu\nwait idle\ntap \"Comune di Varlo\" 2\nwait idle\n"
     "expect \"Letture ad alta voce\""},
    {"11-live", "menu\nwait idle\ntap \"Live in Varlo\"\nwait idle\nexpect \"Aperitivo in jazz\""},
    {"12-sport", "menu\nwait idle\ntap \"Sport\"\nwait idle\nexpect \"Calcio Varlo\""},
    {"13-infocitta", "menu\nwait idle\ntap \"InfoCittà\"\nwait idle\nexpect \"Uffici comunali\""},
    {"14-categoria", "tap \"Uffici comunali\"\nwait idle\nexpect \"Anagrafe\""},
    {"15-scheda", "tap \"Anagrafe\"\nwait idle\nexpect \"Telefono\""},
    {"16-orari", "tap \"Orari di apertura\"\nwait idle\nexpect \"Chiudi\""},
    {"17-mappe",
     "tap \"Chiudi\"\nwait idle\nback\nwait idle\nback\nwait idle\nmenu\nwait idle\n"
     "tap \"Mappe\"\nwait idle\nexpect \"Defibrillatori\""},
    {"18-mappa", "tap \"Defibrillatori\"\nwait idle\nnamed \"map\" \"Mappa\""},
    {"19-segnaposto", "tap \"Croce Verde Varlo\"\nwait idle\nexpect \"Click per dettagli\""},
    {"20-segnaposto-scheda",
     "tap \"Click per dettagli\"\nwait idle\nexpect \"Naviga Verso\"\nexpect \"Via delle "
     "Industrie\""},
    {"21-mappa-alberi",
     "tap \"Chiudi\"\nwait idle\nback\nwait idle\ntap \"Alberi pubblici\"\nwait idle"},
    {"22-farmacie",
     "back\nwait idle\nmenu\nwait idle\n"
     "tap \"Farmacia di turno\"\nwait idle\nexpect \"Farmacia di turno fino\""},
    {"23-farmacia", "tap \"del giorno successivo\"\nwait idle\nexpect \"Indirizzo\""},
    {"24-via",
     "back\nwait idle\nmenu\nwait idle\ntap \"Raccolta rifiuti\"\nwait idle\n"
     "tap \"Seleziona via\"\ntype \"dante\"\nwait idle\nexpect \"Via Dante\""},
    {"25-rifiuti", "tap \"Via Dante\"\nwait idle\nexpect \"ORARIO DI ESPOSIZIONE\""},
    {"26-materiale", "tap \"CARTA\"\nwait idle\nexpect \"SI\\n\""},
    {"27-scuole",
     "tap \"OK\"\nwait idle\nback\nwait idle\nmenu\nwait idle\ntap \"Menu Scuola\"\n"
     "wait idle\nexpect \"Menu Scuole\""},
    {"28-menu-scuola", "tap @180,100\nwait idle\nabsent \"Menu Scuole\""},
    {"29-menu-del-giorno",
     "back\nwait idle\nmenu\nwait idle\ntap \"Menu del Giorno\"\nwait idle\n"
     "expect \"Osteria del Ponte\""},
    {"30-menu-trattoria", "tap \"Trattoria da Nando\"\nwait idle\nexpect \"#menudelgiorno\""},
    {"31-pizzaprezzi",
     "back\nwait idle\nmenu\nwait idle\ntap \"PizzaPrezzi\"\nwait idle\nexpect \"Da Gino\""},
    {"32-listino", "tap \"Pizzeria Da Gino\"\nwait idle\nnamed \"image\" \"Listino prezzi\""},
    {"33-disclaimer", "back\nwait idle\nmenu\nwait idle\ntap \"Disclaimer\"\nwait idle"},
    {"34-valuta", "menu\nwait idle\ntap \"Valuta sull'App Store\"\nwait idle\nopened \"http\""},
    {"35-messaggio",
     "push {\"alert\": \"Domani le scuole restano chiuse per neve.\"}\nwait idle\n"
     "expect \"Push message!\""},
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
