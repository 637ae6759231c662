#include "app/shell/branding.h"

#include "platform/ui/values/branding.h"

namespace varlo {

void setBranding() {
  const ui::Words words{.application = "InfoVarlo",
                        .program = "it.varlo.infovarlo",
                        .open = "Apri",
                        .back = "Indietro",
                        .menu = "Menu",
                        .on = "attivo",
                        .off = "non attivo",
                        .loaded = "Caricamento completato",
                        .map = "Mappa",
                        .zoomIn = "Ingrandisci",
                        .zoomOut = "Riduci",
                        .north = "Torna al centro",
                        .here = "La mia posizione",
                        .barButtons = {"Fine",
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
                                       "Ripeti operazione"}};
  ui::setBranding(words, {.accent = ui::Color{0xFF1F5F7A}});
}

}  // namespace varlo
