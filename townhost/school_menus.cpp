#include "townhost/school_menus.h"

#include <array>
#include <cstdio>

#include "townhost/json_text.h"

namespace town {
namespace {

using std::chrono::year;
using std::chrono::year_month_day;

constexpr int kWeeks = 4, kDays = 5;
using Rotation = std::array<std::array<const char*, kDays>, kWeeks>;

constexpr Rotation kWinter = {{
    {"Passato di verdura con crostini|Petto di pollo alla salvia|Carote al vapore|Mela",
     "Pasta al pomodoro|Frittata di spinaci|Insalata mista|Arancia",
     "Risotto alla zucca|Arrosto di tacchino|Finocchi gratinati|Pera",
     "Polenta|Spezzatino di manzo|Piselli in umido|Mandarini",
     "Pasta al tonno|Platessa gratinata al forno|Broccoli all'olio|Banana"},
    {"Minestra di riso e prezzemolo|Polpette di vitellone al pomodoro|Purè di patate|Mela",
     "Gnocchi di patate al burro e salvia|Bocconcini di mozzarella|Carote filangé|Kiwi",
     "Pasta e fagioli|Prosciutto cotto|Insalata di cappuccio|Pera",
     "Risotto allo zafferano|Coscette di pollo al forno|Spinaci al vapore|Arancia",
     "Pasta all'olio e grana|Merluzzo in umido con patate|Fagiolini|Banana"},
    {"Crema di lenticchie con pastina|Lonza di maiale al latte|Cavolfiore gratinato|Mela",
     "Pasta al ragù di verdure|Uova strapazzate|Insalata verde|Mandarini",
     "Lasagne al forno|Bastoncini di carota e finocchio|Crescenza|Pera",
     "Riso alla parmigiana|Scaloppina di tacchino al limone|Zucca al forno|Kiwi",
     "Minestrone d'orzo|Crocchette di pesce|Patate prezzemolate|Banana"},
    {"Pizza margherita|Insalata mista con mais|Frutta di stagione",
     "Pastina in brodo vegetale|Hamburger di manzo|Carote e piselli|Mela",
     "Pasta al pesto|Legumi misti all'olio|Finocchi crudi|Arancia",
     "Polenta|Brasato di manzo|Verza stufata|Pera",
     "Risotto ai porri|Filetto di salmone al forno|Broccoli al vapore|Banana"},
}};

constexpr Rotation kSummer = {{
    {"Pasta al pomodoro fresco e basilico|Petto di pollo ai ferri|Zucchine trifolate|Albicocche",
     "Insalata di riso|Bocconcini di mozzarella|Pomodori in insalata|Pesca",
     "Pasta al pesto|Prosciutto cotto e melone|Carote filangé|Anguria",
     "Gnocchi alla romana|Frittata di zucchine|Insalata verde|Ciliegie",
     "Pasta fredda al tonno e olive|Merluzzo al limone|Fagiolini all'olio|Banana"},
    {"Riso all'olio e grana|Roast beef freddo|Patate prezzemolate|Pesca",
     "Pasta alle melanzane|Crescenza|Cetrioli e carote|Albicocche",
     "Pizza margherita|Insalata mista con mais|Gelato alla frutta",
     "Crema di zucchine con crostini|Polpette di tacchino|Piselli al prezzemolo|Susine",
     "Pasta al limone|Platessa gratinata al forno|Pomodori in insalata|Melone"},
    {"Pasta al ragù di verdure|Scaloppina di lonza all'arancia|Spinaci al vapore|Pesca",
     "Farro con verdure|Uova sode|Fagiolini e patate|Anguria",
     "Ravioli di magro burro e salvia|Caprese|Insalata verde|Albicocche",
     "Risotto alla parmigiana|Pollo freddo all'insalata|Zucchine all'origano|Melone",
     "Pasta alla marinara|Crocchette di pesce|Carote al vapore|Banana"},
    {"Pasta integrale all'olio|Tacchino tonnato|Insalata di cappuccio|Susine",
     "Passato di verdura tiepido con riso|Formaggio spalmabile|Pomodori in insalata|Pesca",
     "Pasta ai formaggi|Ceci all'olio e rosmarino|Zucchine trifolate|Ciliegie",
     "Cuscus di verdure|Arrosto di vitellone freddo|Peperoni al forno|Anguria",
     "Riso freddo con gamberetti|Filetto di trota al forno|Fagiolini|Gelato alla frutta"},
}};

constexpr const char* kSnacks[kDays] = {"yogurt alla frutta", "pane e marmellata", "frutta fresca",
                                        "latte e biscotti", "pane e cioccolato"};

struct Season {
  const Rotation* rotation;
  CivilDay from, to;
  const char* note;
};

constexpr const char* kWinterNote =
    "Menu invernale. Pane a ridotto contenuto di sale; frutta di stagione secondo il mercato. "
    "Le diete speciali si chiedono in segreteria con il certificato del medico.";
constexpr const char* kSummerNote =
    "Menu estivo. Nei mesi di luglio e agosto vale per i centri estivi. Le diete speciali si "
    "chiedono in segreteria con il certificato del medico.";

CivilDay first(year y, std::chrono::month m) { return CivilDay(y / m / 1); }

CivilDay mondayOf(CivilDay day) { return day - (std::chrono::weekday(day) - std::chrono::Monday); }

// Last year's too: in January the winter menu that is valid began in November.
std::vector<Season> seasonsAround(CivilDay day) {
  const year now = year_month_day(day).year();
  std::vector<Season> seasons;
  for (year y = now - std::chrono::years(1); y <= now; ++y) {
    const CivilDay april = first(y, std::chrono::April), november = first(y, std::chrono::November);
    const CivilDay nextApril = first(y + std::chrono::years(1), std::chrono::April);
    seasons.push_back({&kSummer, april, november, kSummerNote});
    seasons.push_back({&kWinter, november, nextApril, kWinterNote});
  }
  return seasons;
}

// "21/11/2026"
std::string written(CivilDay day) {
  const year_month_day d(day);
  char text[16];
  std::snprintf(text, sizeof text, "%02u/%02u/%04d", static_cast<unsigned>(d.day()),
                static_cast<unsigned>(d.month()), static_cast<int>(d.year()));
  return text;
}

void write(JsonPage& json, const Season& season, const School& school) {
  json.open().text("valid_from", written(season.from)).text("valid_to", written(season.to));
  json.text("date_start", written(mondayOf(season.from))).text("note", season.note);
  for (int week = 0; week < kWeeks; ++week) {
    json.open("week_" + std::to_string(week + 1));
    const auto& days = (*season.rotation)[static_cast<std::size_t>((week + school.lead) % kWeeks)];
    for (std::size_t day = 0; day < kDays; ++day)
      json.text("day_" + std::to_string(day + 1),
                std::string(days[day]) +
                    (school.snack ? std::string("||Merenda: ") + kSnacks[day] : std::string()));
    json.close();
  }
  json.close();
}

}  // namespace

const std::vector<School>& schools() {
  static const std::vector<School> all = {
      {"Asilo nido Il Girotondo", "girotondo", 0, true},
      {"Scuola dell'infanzia Arcobaleno", "arcobaleno", 0, true},
      {"Scuola primaria Gianni Rodari", "rodari", 1, false},
      {"Scuola primaria Maria Montessori", "montessori", 2, false},
      {"Scuola secondaria Ada Negri", "ada-negri", 3, false},
  };
  return all;
}

std::string schoolsDocument() {
  JsonPage json;
  json.openList();
  for (const School& school : schools())
    json.open().text("Nome", school.name).text("Link", school.link).close();
  return json.closeList().take();
}

std::string schoolMenuDocument(const School& school, CivilDay day) {
  JsonPage json;
  json.open().text("name", school.name).openList("menu");
  for (const Season& season : seasonsAround(day)) write(json, season, school);
  return json.closeList().close().take();
}

}  // namespace town
