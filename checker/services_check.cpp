#include "checker/services_check.h"

#include "checker/shape_check.h"

namespace check {

namespace {

// A list of such records; `within` leads to it, from the outermost object on.
void checkService(TownReader& town, const std::string& path, const std::vector<std::string>& within,
                  const Shape& shape, const Words& without) {
  const auto document = town.readService(path, without);
  if (!document) return;
  const Json* list = document.get();
  std::string field;
  for (const auto& name : within) {
    list = list ? member(*list, name) : nullptr;
    field += (field.empty() ? "" : " › ") + name;
  }
  if (within.empty() || (list && list->IsArray()))
    checkShape(path, *list, true, shape, town.findings());
  else
    town.add({path, "", field}, describe(list), kAList, without);
}

// Without the token, which only the app has: a host that wants it serves nothing here.
void checkEvents(TownReader& town, const std::string& page) {
  if (page.empty() || page.find_first_of("/?#%\\ ") != page.npos) return;
  checkService(
      town, "/v2.9/" + page + "/events", {"data"}, event(),
      {"gli eventi di «" + page + "» non compaiono", "the events of \"" + page + "\" do not show"});
}

}  // namespace

void checkServices(TownReader& town) {
  checkService(town, "/varlo/newsvarlo", {"NewDataSet", "Table"}, newsItem(),
               {"le notizie restano vuote", "the news stay empty"});
  checkService(town, "/repos/comune-varlo/newsletter/contents/archivio?ref=master", {},
               newsletterIssue(), {"la newsletter resta vuota", "the newsletter stays empty"});
  checkService(town, "/varlo/storicoattidettjson?oggetto=", {}, act(),
               {"gli atti restano vuoti", "the acts stay empty"});
  for (const char* page : {"Comune.di.Varlo", "live.in.varlo"}) checkEvents(town, page);
  town.eachOf(kClubs, [&](const Json& club, int) { checkEvents(town, textOf(club, "URL")); });
}

}  // namespace check
