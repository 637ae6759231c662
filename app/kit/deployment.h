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
};

const Hosts& hosts();
// Every service at one address; for the simulator, before the app starts.
void pointEveryServiceAt(const kes::Text& url);

// The address of a static document, of a path of the map site.
kes::Text documents(std::string_view path);
kes::Text mapsLink(std::string_view query);

kes::Text appStorePage();
kes::Text graphToken();  // 166 characters
kes::Text placesKey();   // 39 characters
kes::Text mapsKey();     // 39 characters

}  // namespace varlo::deployment
