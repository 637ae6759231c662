#include "runtime/data/store/set_aside.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "runtime/core/exception.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/files/system_error.h"

namespace kes {

namespace {

constexpr const char* kCompanions[] = {"-journal", "-wal", "-shm"};

// Year, month and day in the phone's zone.
std::string today() {
  const auto& dates = DateTime();
  const auto now = dates.Now();
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", dates.GetYear(now), dates.GetMonth(now),
                dates.GetDayOfMonth(now));
  return text;
}

bool isFree(const std::string& path) {
  for (const char* companion : {"", kCompanions[0], kCompanions[1], kCompanions[2]})
    if (std::filesystem::exists(std::filesystem::symlink_status(path + companion))) return false;
  return true;
}

void move(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0 && errno != ENOENT)
    throw KesException(systemError(from, errno));
}

}  // namespace

Text setAside(const std::string& path) {
  const auto dated = path + ".damaged-" + today();
  auto place = dated;
  for (int n = 2; !isFree(place); ++n) place = dated + "-" + std::to_string(n);
  // Its companions first: one that stayed behind would be taken for the fresh file's own.
  for (const char* companion : kCompanions) move(path + companion, place + companion);
  move(path, place);
  return std::filesystem::path(place).filename().string();
}

}  // namespace kes
