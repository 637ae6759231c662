#include "platform/base/log.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace platform {

namespace {
// Recursive, because a sink may itself log.
std::recursive_mutex& mutex() {
  static std::recursive_mutex m;
  return m;
}
std::function<void(std::string_view)>& sink() {
  static std::function<void(std::string_view)> s;
  return s;
}
}  // namespace

void log(std::string_view line) {
  std::lock_guard lock(mutex());
  if (sink()) {
    sink()(line);
    return;
  }
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fputc('\n', stderr);
}

std::function<void(std::string_view)> setLogSink(std::function<void(std::string_view)> s) {
  std::lock_guard lock(mutex());
  return std::exchange(sink(), std::move(s));
}

}  // namespace platform
