#include "app/kit/deployment.h"

#include "runtime/net/string_utils.h"

#include VARLO_DEPLOYMENT_FILE

namespace varlo::deployment {

using kes::Text;

namespace {
Hosts& current() {
  static Hosts h{values::kDocuments,  values::kRepository, values::kService, values::kGraph,
                 values::kOpenData,   values::kFacebook,   values::kMaps,    values::kTownHall,
                 values::kActsPortal, values::kTiles};
  return h;
}
}  // namespace

const Hosts& hosts() { return current(); }

// What opens outside stays where it is: the network's pages, the maps, the portal of the acts.
void pointEveryServiceAt(const Text& url) {
  auto& h = current();
  h.documents = h.repository = h.service = h.graph = h.openData = h.web = url;
  h.tiles = url + "/tiles/{z}/{x}/{y}{r}.png";
}

Text documents(std::string_view path) { return hosts().documents + Text(path); }
Text repository(std::string_view path) { return hosts().repository + Text(path); }
Text service(std::string_view path) { return hosts().service + Text(path); }
Text graph(std::string_view path) { return hosts().graph + Text(path); }
Text facebook(std::string_view page) { return hosts().facebook + "/" + Text(page); }
Text townHall(std::string_view path) { return hosts().web + Text(path); }
Text actsPortal(std::string_view path) { return hosts().acts + Text(path); }
// The query comes from a document: what is no coordinate or name is escaped.
Text mapsLink(std::string_view query) {
  const Text escaped = kes::iStringUtils::EncodeUrl(query, "UTF8");
  return hosts().maps + "/?q=" + escaped.Replace("%2C", ",");
}

Text appStorePage() { return values::kAppStorePage; }
Text pushBroker() { return values::kPushBroker; }
Text pushPrefix() { return values::kPushPrefix; }
bool plainPushAllowed() { return values::kPlainPush; }
Text graphToken() { return values::kGraphToken; }
Text placesKey() { return values::kPlacesKey; }
Text mapsKey() { return values::kMapsKey; }
Text openDataToken() { return values::kOpenDataToken; }

Text tiles() { return hosts().tiles; }
Text tilesAttribution() { return values::kTilesAttribution; }
const TownOnTheMap& townOnTheMap() {
  static constexpr TownOnTheMap town{values::kTownLatitude, values::kTownLongitude,
                                     values::kTownZoom};
  return town;
}

}  // namespace varlo::deployment
