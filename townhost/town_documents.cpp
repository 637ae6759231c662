#include "townhost/town_documents.h"

#include <stdexcept>

#include "townhost/embedded.h"
#include "townhost/hall/acts.h"
#include "townhost/hall/news.h"
#include "townhost/hall/newsletters.h"
#include "townhost/map/map_documents.h"
#include "townhost/pharmacy_turns.h"
#include "townhost/pizza/pizzerias.h"
#include "townhost/school_menus.h"
#include "townhost/social/events.h"
#include "townhost/social/restaurants.h"

namespace town {
namespace {

constexpr int turnDays = 60;  // published before and after today

void publishSchools(Documents& documents) {
  const std::string folder = "/InfoVarlo/menuscuola/master/";
  documents.addFixed(folder + "scuole.json", kJsonType, schoolsDocument());
  for (const School& school : schools())
    documents.add(folder + school.link + ".json", kJsonType, [&school](const Occasion& occasion) {
      return schoolMenuDocument(school, dayAt(occasion.now));
    });
}

std::string embedded(std::string_view path) {
  for (const auto& file : embeddedFiles())
    if (file.path == path) return std::string(file.contents);
  throw std::invalid_argument("no document " + std::string(path));
}

}  // namespace

void publishAll(Documents& documents, Gallery& gallery, const std::string& version,
                const std::string& url) {
  for (const auto& file : embeddedFiles())
    documents.addFixed(std::string(file.path), typeOfPath(file.path), std::string(file.contents));

  documents.addFixed("/InfoVarlo/config/master/version_ios", typeOfPath(""), version);

  const auto keys = pharmacyKeys(embedded("/InfoVarlo/farmacie/master/farmacie.json"));
  documents.add("/InfoVarlo/farmacie/master/turni.json", kJsonType,
                [keys](const Occasion& occasion) {
                  return turnsDocument(turnsAround(dayAt(occasion.now), turnDays, keys));
                });
  publishSchools(documents);
  publishNews(documents, gallery);
  publishMaps(documents, url);
  publishNewsletters(documents, url);
  publishActs(documents, url);
  publishEvents(documents, gallery, url);
  publishRestaurants(documents, gallery, url);
  publishPizzerias(documents, gallery, url);
}

}  // namespace town
