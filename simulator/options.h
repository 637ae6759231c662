// What varlo-sim was asked on its command line. Plain data; parse() throws
// std::invalid_argument with one line that says what is wrong.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/values/geo.h"

namespace sim {

struct Options {
  enum class Screen { Qt, Headless };

  std::string tour;    // folder for the tour's pictures; empty: no tour
  std::string script;  // script file to play; empty: none
  std::string town;    // base address of another host; empty: the embedded one
  std::string push;    // broker of push messages; empty: the desk's own line
  std::string data;    // folder of documents, library and temporary files; empty: fresh
  std::optional<std::int64_t> now;  // ticks at which the clock starts
  Screen screen = Screen::Qt;
  double width = 375, height = 667;  // points
  double scale = 2;                  // pixels a point
  double textSize = 0;               // percent, 80 to 200; 0: as the desktop has it
  std::optional<ui::GeoPoint> at;    // where the phone says it is
  bool keyboard = false;             // one comes up over the screen while a text is edited
  bool help = false;

  double keyboardHeight() const { return keyboard ? 216 : 0; }  // points

  static Options parse(const std::vector<std::string>& arguments);
  static std::string usage();
};

// Ticks of an ISO date and time ("2026-11-21", "2026-11-21T20:00", with seconds, with "Z"
// or an offset). Without a zone it is the given zone's time, an IANA name.
std::int64_t parseIsoTime(const std::string& text, const std::string& zone);

}  // namespace sim
