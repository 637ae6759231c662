// Paths for trying out an HTTP client, beside the town's own documents:
//
//   /_echo…         the request again as JSON: method, target, headers, body
//                   (bodyHex too, as the body may be no text)
//   /_status/NNN    that status, 200 to 599
//   /_bytes/N       N bytes, up to 64 MiB; byte i is i mod 251
//   /_redirect/N    N redirects in a row, then /_echo, or ?to=/path on this host
//   /_gzip          a JSON text, sent with Content-Encoding: gzip
//   /_auth/basic…   answers to user "varlo" with password "segreta"
//   /_auth/digest…  the same, by digest
//
// Owned by the TownHost. Any thread.
#pragma once

#include <optional>

#include "townhost/engine.h"
#include "townhost/gatekeeper.h"

namespace town {

class TrialPaths {
 public:
  // Nothing if the path isn't one of these.
  std::optional<Answer> answer(const Call& call);

 private:
  Gatekeeper gatekeeper_;
};

// An error page with the town's words for that status.
Answer errorPage(int status, std::string body = "");

Answer redirectTo(std::string location);

}  // namespace town
