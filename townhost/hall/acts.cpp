#include "townhost/hall/acts.h"

#include <algorithm>
#include <array>
#include <random>

#include "townhost/hall/italian_dates.h"
#include "townhost/hall/paper.h"
#include "townhost/json_text.h"

namespace town {

namespace {

constexpr int kActs = 120;
constexpr const char* kListing = "/varlo/storicoattidettjson";
constexpr const char* kAttachments = "/varlo/storicoattidettallegatijson";
constexpr const char* kPapers = "/varlo/allegati";

struct Matter {
  const char *kind, *proposer, *subject;
  std::array<const char*, 3> attachments;  // null where there are fewer
};

constexpr const char* kWorks = "Settore Lavori pubblici e manutenzioni";
constexpr const char* kSocial = "Settore Servizi sociali";
constexpr const char* kSchool = "Settore Istruzione e cultura";
constexpr const char* kPolice = "Polizia locale";
constexpr const char* kAccounts = "Settore Bilancio e tributi";
constexpr const char* kPlanning = "Settore Urbanistica ed edilizia privata";
constexpr const char* kBoard = "Giunta comunale";
constexpr const char* kCouncil = "Consiglio comunale";
constexpr const char* kMayor = "La Sindaca";

constexpr const char* kDetermination = "DETERMINAZIONE DIRIGENZIALE";
constexpr const char* kResolution = "DELIBERAZIONE DI GIUNTA";
constexpr const char* kCouncilAct = "DELIBERAZIONE DI CONSIGLIO";
constexpr const char* kOrder = "ORDINANZA";
constexpr const char* kDecree = "DECRETO DEL SINDACO";
constexpr const char* kNotice = "AVVISO PUBBLICO";

constexpr const char* kText = "Testo dell'atto";
constexpr const char* kPlan = "Allegato A - Planimetria";
constexpr const char* kCosts = "Allegato B - Quadro economico";
constexpr const char* kForm = "Modulo di domanda";
constexpr const char* kView = "Parere di regolarità contabile";
constexpr const char* kRules = "Regolamento";

constexpr Matter kMatters[] = {
    {kDetermination,
     kWorks,
     "Affidamento dei lavori di rifacimento della pavimentazione di Piazza del Duomo, secondo "
     "lotto. Impegno di spesa.",
     {kText, kPlan, kCosts}},
    {kOrder,
     kPolice,
     "Istituzione temporanea del senso unico di marcia in Via Mazzini, nel tratto compreso tra Via "
     "Dante e Via Manzoni, per lavori alla rete idrica.",
     {kText, kPlan, nullptr}},
    {kResolution,
     kBoard,
     "Approvazione del programma delle manifestazioni natalizie e concessione del patrocinio alle "
     "associazioni partecipanti.",
     {kText, kView, nullptr}},
    {kNotice,
     kSchool,
     "Borse di studio per studentesse e studenti meritevoli delle scuole secondarie: apertura dei "
     "termini per le domande.",
     {kText, kForm, nullptr}},
    {kCouncilAct,
     kCouncil,
     "Approvazione del regolamento per la tutela del verde pubblico e privato.",
     {kText, kRules, nullptr}},
    {kDetermination,
     kSocial,
     "Servizio di assistenza domiciliare agli anziani: proroga dell'affidamento alla cooperativa "
     "che gestisce il servizio.",
     {kText, kView, nullptr}},
    {kOrder,
     kMayor,
     "Divieto di accensione di fuochi e di uso di materiale pirotecnico nel centro abitato e nelle "
     "frazioni.",
     {kText, nullptr, nullptr}},
    {kDetermination,
     kAccounts,
     "Liquidazione delle fatture per la fornitura di energia elettrica agli edifici comunali.",
     {kText, kView, nullptr}},
    {kResolution,
     kBoard,
     "Convenzione con le associazioni sportive per l'uso delle palestre scolastiche in orario "
     "serale.",
     {kText, kForm, kView}},
    {kDecree,
     kMayor,
     "Nomina dei componenti della commissione comunale per il paesaggio.",
     {kText, nullptr, nullptr}},
    {kDetermination,
     kPlanning,
     "Permesso di costruire in variante per l'ampliamento di un edificio produttivo in Via delle "
     "Industrie.",
     {kText, kPlan, nullptr}},
    {kNotice,
     kSocial,
     "Contributi per il pagamento dell'affitto alle famiglie in difficoltà: bando e criteri.",
     {kText, kForm, kRules}},
    {kResolution,
     kBoard,
     "Progetto esecutivo della nuova palestra della scuola di Via Matteotti: approvazione.",
     {kText, kPlan, kCosts}},
    {kDetermination,
     kSchool,
     "Acquisto di libri e di abbonamenti a riviste per la biblioteca comunale.",
     {kText, nullptr, nullptr}},
    {kOrder,
     kPolice,
     "Modifica della viabilità in occasione della corsa podistica di quartiere: divieto di sosta e "
     "di transito in Viale dei Platani.",
     {kText, kPlan, nullptr}},
    {kCouncilAct,
     kCouncil,
     "Bilancio di previsione finanziario: approvazione della nota di aggiornamento al documento "
     "unico di programmazione.",
     {kText, kCosts, kView}},
    {kDetermination,
     kWorks,
     "Manutenzione straordinaria dell'impianto di illuminazione pubblica nelle frazioni di Ponte "
     "Nuovo e Cascine Alte.",
     {kText, kCosts, nullptr}},
    {kResolution,
     kBoard,
     "Tariffe della mensa scolastica e dello scuolabus: conferma delle agevolazioni per le "
     "famiglie "
     "numerose.",
     {kText, kView, nullptr}},
    {kDetermination,
     kSocial,
     "Centro estivo per bambine e bambini dai tre agli undici anni: approvazione della "
     "graduatoria.",
     {kText, nullptr, nullptr}},
    {kNotice,
     kPlanning,
     "Variante al piano di governo del territorio: deposito degli atti e termine per le "
     "osservazioni.",
     {kText, kPlan, kForm}},
    {kOrder,
     kMayor,
     "Chiusura delle scuole di ogni ordine e grado per allerta meteo.",
     {kText, nullptr, nullptr}},
    {kDetermination,
     kWorks,
     "Potatura delle alberature di Viale della Stazione e messa a dimora di nuovi tigli.",
     {kText, kPlan, nullptr}},
    {kResolution,
     kBoard,
     "Adesione alla campagna nazionale «M'illumino di meno» e spegnimento simbolico del municipio.",
     {kText, nullptr, nullptr}},
    {kDetermination,
     kAccounts,
     "Rimborso di somme versate e non dovute a titolo di tassa sui rifiuti.",
     {kText, nullptr, nullptr}},
};

std::vector<std::string> titles(const Matter& matter, int which) {
  std::vector<std::string> all;
  if (which % 17 == 5) return all;  // some acts have nothing attached
  for (const char* title : matter.attachments)
    if (title) all.emplace_back(title);
  return all;
}

int yearOf(CivilDay day) { return static_cast<int>(std::chrono::year_month_day(day).year()); }

int dayOfYear(CivilDay day) {
  return static_cast<int>(
      (day - CivilDay(std::chrono::local_days(std::chrono::year(yearOf(day)) / 1 / 1))).count());
}

// Small letters without their accents, of what Italian writes.
std::string folded(std::string_view text) {
  static constexpr std::array<std::pair<std::string_view, char>, 12> accents = {{{"à", 'a'},
                                                                                 {"è", 'e'},
                                                                                 {"é", 'e'},
                                                                                 {"ì", 'i'},
                                                                                 {"ò", 'o'},
                                                                                 {"ù", 'u'},
                                                                                 {"À", 'a'},
                                                                                 {"È", 'e'},
                                                                                 {"É", 'e'},
                                                                                 {"Ì", 'i'},
                                                                                 {"Ò", 'o'},
                                                                                 {"Ù", 'u'}}};
  std::string out;
  while (!text.empty()) {
    const auto accent = std::ranges::find_if(
        accents, [&](const auto& pair) { return text.starts_with(pair.first); });
    if (accent != accents.end()) {
      out += accent->second;
      text.remove_prefix(accent->first.size());
    } else {
      const char c = text[0];
      out += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      text.remove_prefix(1);
    }
  }
  return out;
}

std::string parameter(const Occasion& occasion, const char* name) {
  const auto found = occasion.query.find(name);
  return found == occasion.query.end() ? "" : found->second;
}

std::string listing(CivilDay today, std::string_view words) {
  JsonText json;
  json.openList();
  for (const auto& act : actsOn(today)) {
    if (!subjectHolds(act, words)) continue;
    json.open().number("ID", act.id);
    json.number("REG_ANNO", act.registerYear).number("REG_NUM", act.registerNumber);
    json.number("ATTO_ANNO", act.year).number("ATTO_NUM", act.number);
    json.text("DATA_REG", isoDate(act.registered) + "T00:00:00");
    json.text("DATA_DOC", isoDate(act.written) + "T00:00:00");
    json.text("PROPONENTE", act.proposer).text("SOTTOCATEGORIA", act.kind);
    json.text("OGGETTO", act.subject).close();
  }
  json.closeList();
  return json.take();
}

const Act* find(const std::vector<Act>& acts, std::string_view id) {
  const auto found =
      std::ranges::find_if(acts, [&](const Act& act) { return std::to_string(act.id) == id; });
  return found == acts.end() ? nullptr : &*found;
}

std::string attachments(CivilDay today, const std::string& id, const std::string& url) {
  JsonText json;
  json.openList();
  const auto acts = actsOn(today);
  if (const Act* act = find(acts, id))
    for (std::size_t i = 0; i < act->attachments.size(); ++i)
      json.open()
          .text("TITOLO", act->attachments[i] + " (pdf)")
          .text("LINK", url + kPapers + "?id=" + id + "&numero=" + std::to_string(i + 1))
          .close();
  json.closeList();
  return json.take();
}

std::optional<std::string> paper(CivilDay today, const std::string& id, const std::string& number) {
  const auto acts = actsOn(today);
  const Act* act = find(acts, id);
  const std::size_t which = number.size() == 1 && number[0] > '0' ? number[0] - '1' : 99;
  if (!act || which >= act->attachments.size()) return std::nullopt;
  return pdf(
      {act->attachments[which],
       act->kind + " n. " + std::to_string(act->number) + " del " + shortWordsFor(act->written),
       act->proposer, act->subject});
}

}  // namespace

std::vector<Act> actsOn(CivilDay today) {
  std::vector<Act> acts;
  std::minstd_rand random(11);
  CivilDay day = today;
  for (int i = 0; i < kActs; ++i) {
    // Seven apart, and one further each round: the same matter never comes twice in a row.
    const Matter& matter = kMatters[(i * 7 + i / 24) % std::size(kMatters)];
    Act act;
    act.registered = day;
    act.written = day - std::chrono::days(1 + random() % 6);
    act.registerYear = yearOf(act.registered);
    act.year = yearOf(act.written);
    // Numbers run through the year, so that they fit whatever day it is.
    act.registerNumber = dayOfYear(act.registered) * 6 + 5 - static_cast<int>(i % 3);
    act.number = dayOfYear(act.written) * 3 + 2 - i % 3;
    act.id = 20000 + static_cast<int>(day.time_since_epoch().count() % 10000) * 3 - i % 3;
    act.proposer = matter.proposer;
    act.kind = matter.kind;
    act.subject = matter.subject;
    act.attachments = titles(matter, i);
    acts.push_back(std::move(act));
    if (i % 3 == 2) day -= std::chrono::days(1 + random() % 4);
  }
  return acts;
}

bool subjectHolds(const Act& act, std::string_view words) {
  return folded(act.subject).find(folded(words)) != std::string::npos;
}

void publishActs(Documents& documents, const std::string& url) {
  documents.add(kListing, kJsonType, [](const Occasion& occasion) {
    return listing(dayAt(occasion.now), parameter(occasion, "oggetto"));
  });
  documents.add(kAttachments, kJsonType, [url](const Occasion& occasion) {
    return attachments(dayAt(occasion.now), parameter(occasion, "id"), url);
  });
  documents.add(kPapers, "application/pdf", [](const Occasion& occasion) {
    return paper(dayAt(occasion.now), parameter(occasion, "id"), parameter(occasion, "numero"));
  });
}

}  // namespace town
