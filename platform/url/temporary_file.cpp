#include "platform/url/temporary_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace platform {

std::string randomName() {
  std::array<unsigned char, 16> bytes;
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) return {};
  std::string name;
  for (auto b : bytes) {
    name += "0123456789abcdef"[b >> 4];
    name += "0123456789abcdef"[b & 15];
  }
  return name;
}

TemporaryFile::~TemporaryFile() { remove(); }

bool TemporaryFile::fail(int code) {
  error_ = std::generic_category().message(code);
  return false;
}

bool TemporaryFile::create(const std::string& folder) {
  remove();
  const auto name = randomName();
  if (name.empty()) return fail(errno);
  std::string path = folder;
  if (path.empty() || path.back() != '/') path += '/';
  path += "download-" + name + ".tmp";
  fd_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (fd_ < 0) return fail(errno);
  path_ = std::move(path);
  return true;
}

bool TemporaryFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto n = ::write(fd_, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return fail(errno);
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

bool TemporaryFile::truncate() {
  if (::ftruncate(fd_, 0) != 0 || ::lseek(fd_, 0, SEEK_SET) != 0) return fail(errno);
  return true;
}

bool TemporaryFile::close() {
  if (fd_ < 0) return true;
  const int result = ::close(std::exchange(fd_, -1));
  return result == 0 || fail(errno);
}

void TemporaryFile::remove() {
  close();
  if (created()) ::unlink(path_.c_str());
  path_.clear();
}

}  // namespace platform
