#include "townhost/hall/newsletters.h"

#include <array>
#include <random>
#include <vector>

#include "townhost/hall/italian_dates.h"
#include "townhost/hall/news_items.h"
#include "townhost/json_text.h"

namespace town {

namespace {

constexpr int kIssues = 24;
constexpr std::chrono::days kApart(14);
constexpr const char* kListing = "/repos/comune-varlo/newsletter/contents/archivio";
constexpr const char* kFolder = "/comune-varlo/newsletter/master/archivio/";

// A Friday on which an issue came out; the others are whole fortnights away.
constexpr CivilDay kFirst{std::chrono::local_days{std::chrono::year(2013) / 1 / 4}};

CivilDay latestIssue(CivilDay today) {
  const auto since = today - kFirst;
  const auto rest = ((since % kApart) + kApart) % kApart;
  return today - rest;
}

std::string nameOf(CivilDay issue) { return isoDate(issue) + "-newsletter.html"; }

// The oldest first, as a repository lists its files.
std::vector<std::string> issues(Instant now) {
  std::vector<std::string> names;
  for (int back = kIssues - 1; back >= 0; --back)
    names.push_back(nameOf(latestIssue(dayAt(now)) - back * kApart));
  return names;
}

std::string listing(Instant now, const std::string& url) {
  JsonText json;
  json.openList();
  for (const auto& name : issues(now)) {
    json.open().text("name", name).text("path", "archivio/" + name).text("type", "file");
    json.text("download_url", url + kFolder + name).close();
  }
  json.closeList();
  return json.take();
}

constexpr std::array kProverbs = {
    "Chi va piano va sano e va lontano.",   "A San Martino ogni mosto diventa vino.",
    "Rosso di sera, bel tempo si spera.",   "Aprile, dolce dormire.",
    "Chi semina vento raccoglie tempesta.", "Il mattino ha l'oro in bocca."};

constexpr std::array kGreetings = {
    "in questo numero parliamo di lavori, di scuola e di ciò che si può fare in città nelle "
    "prossime due settimane.",
    "ecco le notizie del municipio, raccolte per chi non ha tempo di cercarle.",
    "due settimane ricche di appuntamenti: li trovate qui sotto, con le novità degli uffici.",
    "grazie a chi ci ha scritto: in fondo trovate le risposte alle domande più frequenti."};

constexpr const char* kStyle =
    "<style>body{margin:0;font:16px/1.5 sans-serif;color:#1E2B31;background:#F6F8F9}"
    "header{background:#1F5F7A;color:#fff;padding:20px 18px}header h1{margin:0;font-size:22px}"
    "header p{margin:4px 0 0}main{padding:4px 18px 24px;max-width:640px;margin:0 auto}"
    "h2{font-size:18px;color:#163F52;margin:22px 0 6px}p{margin:0 0 10px}"
    "footer{padding:14px 18px;color:#5B6B73;font-size:14px;border-top:1px solid #DFE7EA}"
    "a{color:#1F5F7A}</style>";

std::string issuePage(CivilDay issue) {
  std::minstd_rand random(static_cast<unsigned>(issue.time_since_epoch().count()));
  const auto number = (issue - kFirst) / kApart + 1;
  std::string page =
      "<!doctype html><html lang=\"it\"><head><meta charset=\"utf-8\"><meta name=\"viewport\" "
      "content=\"width=device-width, initial-scale=1\"><title>Newsletter</title>";
  page += kStyle;
  page += "</head><body><header><h1>Varlo informa</h1><p>Numero " + std::to_string(number) + " · " +
          shortWordsFor(issue) + "</p></header><main><p>Care cittadine e cari cittadini, ";
  page += kGreetings[random() % kGreetings.size()];
  page += "</p>";
  const auto items = newsItems();
  const auto start = random() % items.size();
  for (std::size_t i = 0; i < 5; ++i) {
    const auto& item = items[(start + i * 3) % items.size()];
    page += "<h2>" + dated(item.title, issue) + "</h2>" + dated(item.html, issue);
  }
  page += "<h2>Il proverbio</h2><p><i>";
  page += kProverbs[random() % kProverbs.size()];
  page +=
      "</i></p></main><footer>Comune di Varlo, Ufficio relazioni con il pubblico · "
      "<a "
      "href=\"mailto:urp@comune.varlo.example\">urp@comune.varlo.example</a></footer></body></"
      "html>";
  return page;
}

}  // namespace

void publishNewsletters(Documents& documents, const std::string& url) {
  documents.add(kListing, kJsonType,
                [url](const Occasion& occasion) { return listing(occasion.now, url); });
  // An older issue than those of the listing is there too: a phone may have listed it yesterday.
  documents.addFolder(
      kFolder, typeOfPath(".html"), issues,
      [](const Occasion& occasion) -> std::optional<std::string> {
        const std::string name = occasion.path.substr(std::string_view(kFolder).size());
        const auto noon = parseInstant(name.substr(0, 10) + "T12:00");
        if (!noon || name != nameOf(dayAt(*noon))) return std::nullopt;
        const CivilDay issue = dayAt(*noon);
        if (issue != latestIssue(issue) || issue < kFirst || issue > dayAt(occasion.now))
          return std::nullopt;
        return issuePage(issue);
      });
}

}  // namespace town
