#include "app/shell/branding.h"

#include "platform/ui/values/branding.h"

namespace varlo {

void setBranding() {
  ui::Words words;
  words.application = "InfoVarlo";
  words.program = "it.varlo.infovarlo";
  words.open = "Apri";
  words.back = "Indietro";
  words.menu = "Menu";
  words.on = "attivo";
  words.off = "non attivo";
  words.loaded = "Caricamento completato";
  words.map = "Mappa";
  words.zoomIn = "Ingrandisci";
  words.zoomOut = "Riduci";
  words.north = "Torna al centro";
  words.here = "La mia posizione";
  words.barButtons = {"Fine",
                      "Annulla",
                      "Modifica",
                      "Salva",
                      "Aggiungi",
                      "",
                      "",
                      "Scrivi",
                      "Rispondi",
                      "Condividi",
                      "Organizza",
                      "Segnalibri",
                      "Cerca",
                      "Aggiorna",
                      "Interrompi",
                      "Fotocamera",
                      "Elimina",
                      "Riproduci",
                      "Pausa",
                      "Riavvolgi",
                      "Avanti veloce",
                      "Annulla operazione",
                      "Ripeti operazione"};
  ui::Looks looks;
  looks.accent = ui::Color{0xFF1F5F7A};
  ui::setBranding(std::move(words), looks);
}

}  // namespace varlo
