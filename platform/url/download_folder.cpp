#include "platform/url/download_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/url/temporary_file.h"

namespace platform {

namespace {

constexpr std::string_view kPrefix = "downloads-";
constexpr std::size_t kRandomDigits = 32;

bool isOurs(std::string_view name) {
  return name.size() == kPrefix.size() + kRandomDigits && name.starts_with(kPrefix) &&
         name.find_first_not_of("0123456789abcdef", kPrefix.size()) == std::string_view::npos;
}

int openFolder(const std::string& path) {
  return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

bool lock(int folder) { return ::flock(folder, LOCK_EX | LOCK_NB) == 0; }

// Whether the folder is still where it was made.
bool isThere(int folder) {
  struct stat about {};
  return ::fstat(folder, &about) == 0 && about.st_nlink > 0;
}

}  // namespace

std::string DownloadFolder::path(std::string& error) {
  std::lock_guard guard(mutex_);
  if (path_.empty() && !make(error)) return {};
  return path_;
}

bool DownloadFolder::make(std::string& error) {
  // Between its making and its locking a sweep may take the folder for a forgotten one.
  for (int attempt = 0; attempt < 8; ++attempt) {
    auto path = (std::filesystem::path(parent_) / kPrefix).string() + randomName();
    if (::mkdir(path.c_str(), 0700) != 0) break;
    const int folder = openFolder(path);
    if (folder >= 0 && (lock(folder) || errno != EWOULDBLOCK) && isThere(folder)) {
      path_ = std::move(path);
      lock_ = folder;
      return true;
    }
    if (folder >= 0) ::close(folder);
  }
  error = std::generic_category().message(errno);
  return false;
}

DownloadFolder::~DownloadFolder() {
  if (path_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
  ::close(lock_);
}

void DownloadFolder::sweep(const std::string& parent) {
  std::error_code failed;
  std::filesystem::directory_iterator entry(parent, failed);
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    if (!isOurs(entry->path().filename().string())) continue;
    const int folder = openFolder(entry->path().string());
    if (folder < 0) continue;
    std::error_code ignored;
    if (lock(folder)) std::filesystem::remove_all(entry->path(), ignored);
    ::close(folder);
  }
}

}  // namespace platform
