// Helpers of the host's tests: a host on a given day, a client that reads what
// really comes over the wire, and parsed documents.
#pragma once

#include <rapidjson/document.h>

#include <string>

#include "townhost/civil_time.h"
#include "townhost/town_host.h"

namespace town::test {

// Throws if the text can't be read: a typing error of the test.
Instant at(const std::string& iso);

// A host whose clock stands still.
TownHost::Options on(const std::string& iso);

// One request on a connection of its own; everything that came until the other
// side closed, or the announced length was there.
struct Wire {
  std::string all;
  bool closed = false;  // by the host, rather than by us
  int status() const;
  std::string header(const std::string& name) const;
  std::string body() const;
};

// Sends the bytes as they are and reads until the host closes.
Wire rawRequest(const TownHost& host, const std::string& bytes);
// A GET that asks for the connection to be closed after it.
Wire get(const TownHost& host, const std::string& path);

rapidjson::Document json(const std::string& text);

}  // namespace town::test
