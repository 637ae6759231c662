// Where the town lives: hosts, keys and tokens of one deployment.
//
// The values are constants of a build, taken from the file that the CMake variable
// VARLO_DEPLOYMENT names (default: app/kit/deployment_values.h, whose keys and tokens are
// placeholders of the right length). The README tells how a town puts its own in.
// A simulator may point every service at one host before the app starts. Main thread.
#pragma once

#include <string_view>

#include "runtime/core/text.h"

namespace varlo::deployment {

// Base addresses, without a slash at the end.
struct Hosts {
  kes::Text documents;   // static documents under /InfoVarlo/
  kes::Text repository;  // repository contents: newsletter archive, price images
  kes::Text service;     // the town's web service under /varlo/
  kes::Text graph;       // the social network's graph
  kes::Text openData;    // the region's open data
  kes::Text facebook;    // pages that open outside
  kes::Text maps;        // maps that open outside
  kes::Text web;         // the town hall's web site, for the pictures of the news
  kes::Text acts;        // the portal of the acts, whose pages open outside
  kes::Text tiles;       // the ground of the app's own maps, see tiles()
};

const Hosts& hosts();
// Every service at one address; for the simulator, before the app starts.
void pointEveryServiceAt(const kes::Text& url);

// Addresses of a path: of a static document, of the repository, the town's service and the
// graph; of a page of the social network, a picture of the town hall's site and an act.
kes::Text documents(std::string_view path);
kes::Text repository(std::string_view path);
kes::Text service(std::string_view path);
kes::Text graph(std::string_view path);
kes::Text facebook(std::string_view page);
kes::Text townHall(std::string_view path);
kes::Text actsPortal(std::string_view path);
// A place on the map site.
kes::Text mapsLink(std::string_view query);

kes::Text appStorePage();
// The broker of push messages (docs/push.md), or nothing; what its topics begin with.
kes::Text pushBroker();
kes::Text pushPrefix();
bool plainPushAllowed();

kes::Text graphToken();     // 166 characters
kes::Text placesKey();      // 39 characters
kes::Text mapsKey();        // 39 characters
kes::Text openDataToken();  // 25 characters

// The ground of the app's own maps: an address with {z}, {x} and {y} (and {r} for dense
// screens, {s} for several hosts, {key} for the map key), and whom it is owed to.
kes::Text tiles();
kes::Text tilesAttribution();
// What a map shows first: degrees and a zoom level.
struct TownOnTheMap {
  double latitude, longitude, zoom;
};
const TownOnTheMap& townOnTheMap();

}  // namespace varlo::deployment
