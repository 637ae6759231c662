// The town's calendar: which day it is in Varlo at a given instant.
//
// Instants are milliseconds since 1970-01-01 UTC. The town keeps Central
// European Time with the common summer rule (last Sunday of March to last Sunday
// of October, both at 01:00 UTC), in force since 1996; earlier instants follow
// the same rule. Any thread, nothing is thrown.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace town {

using Instant = std::int64_t;
using CivilDay = std::chrono::local_days;

// What the machine's clock says.
Instant machineTime();

// How far the town's clocks are ahead of UTC.
std::chrono::minutes offsetAt(Instant instant);

CivilDay dayAt(Instant instant);

std::string isoDate(CivilDay day);  // "2026-11-21"

// "2026-01-01T12:00", with optional seconds and an optional zone ("Z",
// "+01:00"); a date alone means its midnight. Without a zone the time is the
// town's: of the hour that comes twice the first, and the hour that is skipped
// is read as winter time.
std::optional<Instant> parseInstant(std::string_view text);

}  // namespace town
