// The platform log: plain lines, no levels. log() may be called from any thread;
// the sink (default: standard error) is called under a lock, one line at a time.
#pragma once

#include <functional>
#include <string_view>

namespace platform {

void log(std::string_view line);
// Replaces the sink and gives the former one back; an empty one restores the default.
std::function<void(std::string_view)> setLogSink(std::function<void(std::string_view)> sink);

}  // namespace platform
