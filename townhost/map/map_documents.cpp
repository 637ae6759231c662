#include "townhost/map/map_documents.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <utility>

#include "townhost/json_text.h"
#include "townhost/map/varlo_map.h"

namespace town {
namespace {

using Texts = std::initializer_list<std::pair<const char*, std::string>>;

constexpr const char* kFolder = "/InfoVarlo/mappe/master/";

void row(JsonText& json, const Texts& fields) {
  json.open();
  for (const auto& [key, value] : fields) json.text(key, value);
  json.close();
}

// As the region's tables give numbers: texts of six decimals.
std::string decimals(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6f", number);
  return text;
}

struct Row {
  Place at;
  const char *title, *details;
};

// The town's own tables name their fields so. Texts are as the town's old register
// exports them, with a few entities.
std::string ownTable(std::initializer_list<Row> rows, bool withDetails = true) {
  JsonText json;
  json.openList();
  for (const auto& each : rows) {
    json.open().text("Nome", each.title);
    if (withDetails) json.text("Descrizione", each.details);
    json.degrees("Latitudine", each.at.latitude).degrees("Longitudine", each.at.longitude).close();
  }
  return json.closeList().take();
}

std::string defibrillators() {
  return ownTable({
      {{45.2379, 10.0408},
       "Municipio",
       "Piazza Garibaldi 1, sotto il portico.\nDisponibile 24 ore su 24."},
      {{45.2389, 10.0423},
       "Farmacia del Duomo",
       "Via Mazzini 2, accanto all&apos;ingresso.\nDisponibile 24 ore su 24."},
      {{45.2337, 10.0385},
       "Stazione ferroviaria",
       "Atrio, accanto alla biglietteria.\nDalle 5:30 alle 23:30."},
      {{45.2324, 10.0441},
       "Palazzetto dello sport",
       "Via dello Sport 1, 1&deg; piano.\nDurante le attivit&agrave; sportive."},
      {{45.2319, 10.0447},
       "Piscina comunale",
       "Via dello Sport 5, bordo vasca.\nNegli orari di apertura."},
      {{45.2312, 10.0455}, "Campo di calcio Renato Moroni", "Via dello Sport 9, spogliatoi."},
      {{45.2365, 10.0452},
       "Scuola primaria Gianni Rodari",
       "Via Manzoni 20, atrio.\nIn orario scolastico."},
      {{45.2363, 10.0458},
       "Scuola secondaria Ada Negri",
       "Via Manzoni 24, palestra.\nIn orario scolastico."},
      {{45.2410, 10.0450}, "Poliambulatorio di Varlo", "Via dell&apos;Ospedale 2, portineria."},
      {{45.2307, 10.0466},
       "Croce Verde Varlo",
       "Via delle Industrie 18.\nDisponibile 24 ore su 24."},
      {{45.2289, 10.0489},
       "Piattaforma ecologica",
       "Via delle Industrie 40, ufficio.\nNegli orari di apertura."},
      {{45.2359, 10.0397}, "Centro anziani La Quercia", "Via dei Tigli 7, sala grande."},
      {{45.2466, 10.0504}, "Santuario della Madonna dei Prati", "Strada dei Prati 4, sacrestia."},
      {{45.2393, 10.0434}, "Oratorio San Filippo Neri", "Via Mazzini 30, cortile."},
  });
}

std::string parkings() {
  return ownTable({
      {{45.23795, 10.04095},
       "Piazza Garibaldi",
       "24 posti, 2 per disabili.\nDisco orario 60 minuti, dalle 8 alle 19 nei giorni feriali."},
      {{45.2338, 10.0387}, "Stazione", "120 posti, 6 per disabili, 40 per biciclette.\nGratuito."},
      {{45.2348, 10.0399},
       "Viale della Stazione",
       "38 posti.\nGratuito, vietato il lunedì dalle 0 alle 6 per la pulizia."},
      {{45.2372, 10.0447},
       "Via Manzoni, scuole",
       "52 posti, 3 per disabili.\nSosta breve negli orari di ingresso e di uscita."},
      {{45.2412, 10.0447}, "Ospedale", "90 posti, 8 per disabili.\nDisco orario 120 minuti."},
      {{45.2321, 10.0438}, "Centro sportivo", "160 posti, 6 per disabili.\nGratuito."},
      {{45.2432, 10.0484}, "Cimitero", "45 posti.\nGratuito."},
      {{45.2390, 10.0392}, "Via Cavour", "18 posti, 1 per disabili.\nDisco orario 30 minuti."},
      {{45.2377, 10.0473},
       "Viale dei Platani",
       "60 posti.\nGratuito. Mercato il sabato: divieto dalle 6 alle 15."},
      {{45.2439, 10.0370}, "Mulini, Parco del Fiume", "30 posti.\nGratuito."},
  });
}

std::string playgrounds() {
  return ownTable({
      {{45.2394, 10.0376},
       "Giardino Pascoli",
       "Altalene, scivolo, gioco a molla.\nFontanella. Recintato."},
      {{45.2368, 10.0492},
       "Parco della Rimembranza",
       "Castello, altalena a cesta accessibile, teleferica.\nTavoli da picnic."},
      {{45.2432, 10.0432}, "Parco del Fiume", "Percorso nel bosco, parete di arrampicata bassa."},
      {{45.2342, 10.0380}, "Giardini della Stazione", "Due altalene e una casetta."},
      {{45.2320, 10.0432}, "Centro sportivo", "Pista per pattini, canestri, tavoli da ping pong."},
      {{45.2403, 10.0470}, "Via Verdi", "Scivolo e sabbiera, per i più piccoli."},
      {{45.2367, 10.0372}, "Via Trieste", "Altalene, campo da bocce."},
      {{45.2352, 10.0437}, "Via XXV Aprile", "Gioco d&apos;acqua, da giugno a settembre."},
      {{45.2387, 10.0503}, "Via dei Gelsi", "Struttura con rete e scivolo, area cani accanto."},
  });
}

std::string waterPoints() {
  return ownTable(
      {
          {{45.2386, 10.0421}, "Fontanella di Piazza del Duomo", ""},
          {{45.2378, 10.0409}, "Fontanella di Piazza Garibaldi", ""},
          {{45.2339, 10.0383}, "Fontanella della stazione", ""},
          {{45.2394, 10.0377}, "Fontanella del Giardino Pascoli", ""},
          {{45.2366, 10.0494}, "Fontanella del Parco della Rimembranza", ""},
          {{45.2431, 10.0440}, "Fontanella del Parco del Fiume", ""},
          {{45.2322, 10.0435}, "Casa dell'acqua, Via dello Sport", ""},
          {{45.2415, 10.0454}, "Casa dell'acqua, Via dell'Ospedale", ""},
          {{45.2433, 10.0487}, "Fontanella del cimitero", ""},
          {{45.2367, 10.0370}, "Fontanella di Via Trieste", ""},
      },
      false);
}

std::string cyclePaths() {
  return ownTable({
      {{45.2436, 10.0368},
       "Ciclabile dei Mulini",
       "Varlo - Molino Vecchio, 6 km, sterrata.\nLungo il fiume, ombreggiata. Adatta ai bambini."},
      {{45.2431, 10.0489}, "Via dei Prati", "Varlo - Santuario - Ponte Nuovo, 4,5 km, asfalto."},
      {{45.2340, 10.0482},
       "Ciclabile di Pieve Lunga",
       "Varlo - Pieve Lunga, 5,2 km, in sede propria."},
      {{45.2338, 10.0384},
       "Anello della stazione",
       "Giro del centro, 3,1 km.\nStazione - Platani - Ospedale - Mulini."},
      {{45.2291, 10.0522},
       "Strada delle Risaie",
       "Cascina Grande - Cascine Alte, 7,8 km, ghiaia.\nDa marzo a ottobre."},
      {{45.2390, 10.0362},
       "Ciclabile del Borgo",
       "Varlo - Borgo San Giorgio, 4 km, asfalto e tratti promiscui."},
  });
}

std::string sackPoints() {
  return ownTable({
      {{45.2379, 10.0409},
       "Municipio",
       "Piazza Garibaldi 1, sportello URP.\nLunedì e giovedì, 9 - 12."},
      {{45.2289, 10.0489},
       "Piattaforma ecologica",
       "Via delle Industrie 40.\nMercoledì e sabato, 9 - 12 e 14 - 17."},
      {{45.2359, 10.0397}, "Centro anziani La Quercia", "Via dei Tigli 7.\nMartedì, 15 - 17."},
      {{45.2393, 10.0434}, "Oratorio San Filippo Neri", "Via Mazzini 30.\nSabato, 10 - 12."},
  });
}

// The schools of the province: the catalogue's filter keeps those of two towns.
std::string schools() {
  JsonText json;
  json.openList();
  const auto school = [&](const char* town, const char* name, const char* kind, const char* address,
                          Place at) {
    row(json, {{"comune", town},
               {"denominazione", name},
               {"ordine", kind},
               {"scheda", std::string(kind) + "\n" + address + "\nAnno scolastico 2026/27"},
               {"lat", decimals(at.latitude)},
               {"lng", decimals(at.longitude)}});
  };
  school("VARLO", "Asilo nido Il Girotondo", "Asilo nido", "Via Pascoli 6", {45.2397, 10.0385});
  school("VARLO", "Arcobaleno", "Scuola dell'infanzia", "Via Pascoli 10", {45.2399, 10.0381});
  school("VARLO", "Gianni Rodari", "Scuola primaria", "Via Manzoni 20", {45.2365, 10.0452});
  school("VARLO", "Ada Negri", "Scuola secondaria di primo grado", "Via Manzoni 24",
         {45.2363, 10.0458});
  school("VARLO", "Scuola di musica Corelli", "Scuola civica", "Vicolo del Teatro 3",
         {45.2382, 10.0416});
  school("PIEVE LUNGA", "Maria Montessori", "Scuola primaria", "Via Marconi 8", {45.1992, 10.0644});
  school("PIEVE LUNGA", "Bruno Munari", "Scuola dell'infanzia", "Via Marconi 10",
         {45.1994, 10.0640});
  static constexpr const char* others[] = {"BORGO SAN GIORGIO", "CASCINE ALTE", "PONTE NUOVO"};
  static constexpr const char* names[] = {"Alessandro Volta",     "Grazia Deledda",
                                          "Maria Gaetana Agnesi", "Carlo Collodi",
                                          "Elsa Morante",         "Dante Alighieri"};
  int n = 0;  // schools so far
  for (const char* town : others)
    for (const char* name : names) {
      ++n;
      school(town, name, n % 2 ? "Scuola dell'infanzia" : "Scuola primaria", "Via della Scuola 1",
             offset({45.2104, 10.0127}, 120.0 * n, 310.0 * (n % 5)));
    }
  return json.closeList().take();
}

// --- The region's register of public trees.

constexpr int kTrees = 5000;

struct Species {
  const char *name, *common;
};
constexpr std::array<Species, 10> kSpecies{{{"Tilia cordata", "Tiglio selvatico"},
                                            {"Platanus x hispanica", "Platano comune"},
                                            {"Acer campestre", "Acero campestre"},
                                            {"Quercus robur", "Farnia"},
                                            {"Populus nigra", "Pioppo nero"},
                                            {"Celtis australis", "Bagolaro"},
                                            {"Carpinus betulus", "Carpino bianco"},
                                            {"Morus alba", "Gelso bianco"},
                                            {"Fraxinus excelsior", "Frassino maggiore"},
                                            {"Prunus avium", "Ciliegio selvatico"}}};

// Along the streets, on both sides, in an order that goes round the town.
std::string trees() {
  const auto& map = varloMap();
  JsonText json;
  json.openList();
  std::uint32_t dice = 20261121;
  const auto roll = [&](std::uint32_t sides) {
    dice = dice * 1664525 + 1013904223;
    return static_cast<int>((dice >> 8) % sides);
  };
  for (int i = 0; i < kTrees; ++i) {
    const auto& street = map.streets[static_cast<std::size_t>(i) % map.streets.size()];
    const auto& species = kSpecies[static_cast<std::size_t>(roll(kSpecies.size()))];
    const double share = roll(10000) / 10000.0;
    const double aside = (roll(2) ? 1 : -1) * (4 + roll(40) / 10.0);
    const Place at = offset(along(street.course, share), aside, aside * (roll(3) - 1));
    const std::string height = std::to_string(4 + roll(22)), girth = std::to_string(40 + roll(280));
    const std::string code = "VAR-" + std::to_string(100000 + i);
    row(json,
        {{"codice", code},
         {"comune", "VARLO"},
         {"specie", species.name},
         {"nome_comune", species.common},
         {"via", street.name},
         {"altezza_m", height},
         {"circonferenza_cm", girth},
         {"stato", roll(12) ? "Buono" : "Da controllare"},
         {"ultimo_controllo", "202" + std::to_string(3 + roll(4)) + "-0" +
                                  std::to_string(1 + roll(9)) + "-1" + std::to_string(roll(10))},
         {"scheda", std::string(species.common) + " (" + species.name + "), " + street.name +
                        ".\nAltezza " + height + " m, circonferenza " + girth + " cm.\nCodice " +
                        code + " del registro regionale del verde."},
         {"latitudine", decimals(at.latitude)},
         {"longitudine", decimals(at.longitude)}});
  }
  return json.closeList().take();
}

// --- The catalogue.

// Which fields of a table's rows are the places, and what is written at them.
struct Fields {
  const char *latitude, *longitude, *title;
  const char* snippet;  // null: nothing but the title
};
constexpr Fields kOwn{"Latitudine", "Longitudine", "Nome", "Descrizione"};
constexpr Fields kOwnTitles{"Latitudine", "Longitudine", "Nome", nullptr};

using Filter = std::initializer_list<std::pair<const char*, const char*>>;

void map(JsonText& json, const char* name, const std::string& address, const Fields& fields,
         const Filter& filter = {}) {
  json.open().text("Nome", name).text("URL", address);
  json.text("LAT", fields.latitude).text("LON", fields.longitude).text("TITLE", fields.title);
  if (fields.snippet) json.text("SNIPPET", fields.snippet);
  if (filter.size()) {
    json.openList("FILTER");
    for (const auto& [field, value] : filter) row(json, {{"FIELD", field}, {"VALUE", value}});
    json.closeList();
  }
  json.close();
}

constexpr const char* kSchoolsPath = "/resource/scuole-provincia.json";

std::string catalogue(const std::string& url) {
  const auto at = [&](const char* name) { return url + kFolder + name; };
  JsonText json;
  json.openList();
  map(json, "Defibrillatori", at("defibrillatori.json"), kOwn);
  map(json, "Parcheggi", at("parcheggi.json"), kOwn);
  map(json, "Parchi gioco", at("parchigioco.json"), kOwn);
  map(json, "Fontanelle e case dell'acqua", at("fontanelle.json"), kOwnTitles);
  map(json, "Scuole", url + kSchoolsPath, {"lat", "lng", "denominazione", "scheda"},
      {{"comune", "VARLO"}, {"comune", "PIEVE LUNGA"}});
  map(json, "Partenze delle piste ciclabili", at("ciclabili.json"), kOwn);
  map(json, "Alberi pubblici", url + kTreesPath,
      {"latitudine", "longitudine", "nome_comune", "scheda"});
  return json.closeList().take();
}

}  // namespace

void publishMaps(Documents& documents, const std::string& url) {
  const std::string folder = kFolder;
  const std::pair<const char*, std::string> own[] = {
      {"mappe.json", catalogue(url)},       {"defibrillatori.json", defibrillators()},
      {"parcheggi.json", parkings()},       {"parchigioco.json", playgrounds()},
      {"fontanelle.json", waterPoints()},   {"ciclabili.json", cyclePaths()},
      {"ritiro_sacchi.json", sackPoints()},
  };
  for (const auto& [name, text] : own) documents.addFixed(folder + name, kJsonType, text);
  documents.addFixed(kSchoolsPath, kJsonType, schools());
  // Made when it is asked for: most runs never are.
  documents.add(kTreesPath, kJsonType, [](const Occasion&) {
    static const std::string made = trees();
    return made;
  });
}

}  // namespace town
