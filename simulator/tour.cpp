#include "simulator/tour.h"

#include <filesystem>
#include <fstream>
#include <ostream>

#include "platform/ui/reading/dump.h"
#include "simulator/player.h"

namespace sim {

namespace {

namespace fs = std::filesystem;

// A stop: what to play to get there, and the name of its files. Rows of the menu that
// have no feature yet are no stops.
struct Stop {
  const char* name;
  const char* script;
};

constexpr Stop kStops[] = {
    {"01-home", "wait idle"},
    {"02-menu", "menu\nwait idle"},
    {"03-infocitta", "tap \"InfoCittà\"\nwait idle\nexpect \"Uffici comunali\""},
    {"04-categoria", "tap \"Uffici comunali\"\nwait idle\nexpect \"Anagrafe\""},
    {"05-scheda", "tap \"Anagrafe\"\nwait idle\nexpect \"Telefono\""},
    {"06-orari", "tap \"Orari di apertura\"\nwait idle\nexpect \"Chiudi\""},
    {"07-farmacie",
     "tap \"Chiudi\"\nwait idle\nback\nwait idle\nback\nwait idle\nmenu\nwait idle\n"
     "tap \"Farmacia di turno\"\nwait idle\nexpect \"Farmacia di turno fino\""},
    {"08-farmacia", "tap \"del giorno successivo\"\nwait idle\nexpect \"Indirizzo\""},
    {"30-mappe",
     "back\nwait idle\nmenu\nwait idle\ntap \"Mappe\"\nwait idle\nexpect \"Parcheggi\""},
    {"31-mappa",
     "tap \"Defibrillatori\"\nwait idle\ntap \"Croce Verde Varlo\"\nwait idle\n"
     "expect \"Click per dettagli\""},
    {"32-mappa-scheda",
     "tap \"Click per dettagli\"\nwait idle\nexpect \"Naviga Verso\"\nexpect \"Via delle "
     "Industrie\""},
    {"33-mappa-alberi",
     "tap \"Chiudi\"\nwait idle\nback\nwait idle\ntap \"Alberi pubblici\"\nwait idle"},
    {"09-disclaimer", "back\nwait idle\nmenu\nwait idle\ntap \"Disclaimer\"\nwait idle"},
    {"10-valuta", "menu\nwait idle\ntap \"Valuta sull'App Store\"\nwait idle\nopened \"http\""},
    {"20-eventi",
     "menu\nwait idle\ntap \"Comune di Varlo\" 2\nwait idle\nexpect \"Letture ad alta voce\""},
    {"21-live", "menu\nwait idle\ntap \"Live in Varlo\"\nwait idle\nexpect \"Aperitivo in jazz\""},
    {"22-sport", "menu\nwait idle\ntap \"Sport\"\nwait idle\nexpect \"Calcio Varlo\""},
    {"23-menu-del-giorno",
     "menu\nwait idle\ntap \"Menu del Giorno\"\nwait idle\nexpect \"Osteria del Ponte\""},
    {"24-menu-trattoria", "tap \"Trattoria da Nando\"\nwait idle\nexpect \"#menudelgiorno\""},
    {"25-pizzaprezzi",
     "back\nwait idle\nmenu\nwait idle\ntap \"PizzaPrezzi\"\nwait idle\nexpect \"Da Gino\""},
    {"26-listino", "tap \"Pizzeria Da Gino\"\nwait idle\nnamed \"image\" \"Listino prezzi\""},
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
