#include "platform/base/log.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace platform {

namespace {
// Recursive, because a sink may itself log; never destroyed, because a thread may log while
// the process ends.
std::recursive_mutex& mutex() {
  static auto& m = *new std::recursive_mutex;
  return m;
}
std::function<void(std::string_view)>& sink() {
  static auto& s = *new std::function<void(std::string_view)>;
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
