#include "runtime/data/files/file_handle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "runtime/data/files/system_error.h"

namespace kes {

namespace {

constexpr std::int64_t kFarthest = std::int64_t{1} << 60;

class DiskFile final : public FileHandle {
 public:
  DiskFile(std::string path, int fd) : path_(std::move(path)), fd_(fd) {}
  DiskFile(const DiskFile&) = delete;
  DiskFile& operator=(const DiskFile&) = delete;
  ~DiskFile() override { closeFile(); }
  std::string_view className() const override { return "NSFileHandle"; }

  std::vector<std::uint8_t> readDataOfLength(std::size_t length) override {
    // The length may be forged; only what the file holds is made room for.
    const auto there = std::max<std::int64_t>(0, size() - position_);
    std::vector<std::uint8_t> bytes(std::min(length, static_cast<std::size_t>(there)));
    std::size_t done = 0;
    while (done < bytes.size()) {
      const auto n = ::pread(fd_, bytes.data() + done, bytes.size() - done,
                             position_ + static_cast<off_t>(done));
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) fail("Error reading from file: %@");
      if (n == 0) break;
      done += static_cast<std::size_t>(n);
    }
    bytes.resize(done);
    position_ += static_cast<std::int64_t>(done);
    return bytes;
  }

  void writeData(std::span<const std::uint8_t> bytes) override {
    while (!bytes.empty()) {
      const auto n = ::pwrite(fd_, bytes.data(), bytes.size(), position_);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) fail("Error writing to file: %@");
      bytes = bytes.subspan(static_cast<std::size_t>(n));
      position_ += n;
    }
  }

  void seekToFileOffset(std::int64_t offset) override {
    if (offset < 0 || offset > kFarthest) {
      errno = EINVAL;
      fail("Error seeking in file: %@");
    }
    position_ = offset;
  }

  std::int64_t size() const override {
    struct stat about;
    if (::fstat(fd_, &about) != 0) fail("Error reading from file: %@");
    return about.st_size;
  }

  void synchronizeFile() override {
    if (::fsync(fd_) != 0) fail("Error writing to file: %@");
  }

  void closeFile() override {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  [[noreturn]] void fail(std::string_view format) const {
    throw KesException(formatText(format, {systemError(path_, errno)}));
  }

  std::string path_;
  int fd_;
  std::int64_t position_ = 0;
};

}  // namespace

Ref<FileHandle> openFileHandle(const std::string& path, bool readOnly) {
  const int fd = ::open(path.c_str(), (readOnly ? O_RDONLY : O_RDWR | O_CREAT) | O_CLOEXEC, 0600);
  if (fd < 0) return nullptr;
  // A folder opens for reading, but holds no bytes.
  struct stat about;
  if (::fstat(fd, &about) != 0 || S_ISDIR(about.st_mode)) {
    ::close(fd);
    return nullptr;
  }
  return platform::makeShared<DiskFile>(path, fd);
}

}  // namespace kes
