#include "runtime/data/files/byte_stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "runtime/data/files/system_error.h"

namespace kes {

namespace {

const Text kClosed = "The stream is closed";

// A descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }
  int get() const { return fd_; }
  bool isOpen() const { return fd_ >= 0; }
  int close() { return isOpen() ? ::close(std::exchange(fd_, -1)) : 0; }

 private:
  int fd_;
};

template <class Call>
auto retried(Call call) {
  auto n = call();
  while (n < 0 && errno == EINTR) n = call();
  return n;
}

class FileInput final : public InputStream {
 public:
  explicit FileInput(const std::string& path)
      : path_(path), file_(retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); })) {
    struct stat about;
    if (!file_.isOpen() || ::fstat(file_.get(), &about) != 0) {
      fail(systemError(path_, errno));
    } else if (S_ISDIR(about.st_mode)) {
      file_.close();
      fail(systemError(path_, EISDIR));
    }
  }

  std::ptrdiff_t read(std::span<std::uint8_t> into) override {
    if (!file_.isOpen()) return fail(error().empty() ? kClosed : error());
    const auto n = retried([&] { return ::read(file_.get(), into.data(), into.size()); });
    return n < 0 ? fail(systemError(path_, errno)) : n;
  }
  void close() override { file_.close(); }

 private:
  std::string path_;
  Descriptor file_;
};

// Nothing is gathered: who writes in small pieces pays for each, and what was written is in
// the file when write() returns.
class FileOutput final : public OutputStream {
 public:
  FileOutput(const std::string& path, bool append)
      : path_(path), file_(retried([&] {
          return ::open(path.c_str(),
                        O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC), 0666);
        })) {
    if (!file_.isOpen()) fail(systemError(path_, errno));
  }

  std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override {
    if (!file_.isOpen()) return fail(error().empty() ? kClosed : error());
    for (auto left = bytes; !left.empty();) {
      const auto n = retried([&] { return ::write(file_.get(), left.data(), left.size()); });
      if (n < 0) return fail(systemError(path_, errno));
      left = left.subspan(static_cast<std::size_t>(n));
    }
    return static_cast<std::ptrdiff_t>(bytes.size());
  }
  void close() override {
    if (file_.close() < 0) fail(systemError(path_, errno));
  }

 private:
  std::string path_;
  Descriptor file_;
};

class MemoryInput final : public InputStream {
 public:
  explicit MemoryInput(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

  std::ptrdiff_t read(std::span<std::uint8_t> into) override {
    if (closed_) return fail(kClosed);
    const auto n = std::min(into.size(), bytes_.size() - position_);
    if (n) std::memcpy(into.data(), bytes_.data() + position_, n);
    position_ += n;
    return static_cast<std::ptrdiff_t>(n);
  }
  void close() override { closed_ = true; }

 private:
  std::vector<std::uint8_t> bytes_;
  std::size_t position_ = 0;
  bool closed_ = false;
};

}  // namespace

std::ptrdiff_t MemoryOutputStream::write(std::span<const std::uint8_t> bytes) {
  if (closed_) return fail(kClosed);
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return static_cast<std::ptrdiff_t>(bytes.size());
}

Ref<InputStream> fileInput(const std::string& path) {
  return platform::makeShared<FileInput>(path);
}

Ref<OutputStream> fileOutput(const std::string& path, bool append) {
  return platform::makeShared<FileOutput>(path, append);
}

Ref<InputStream> memoryInput(std::vector<std::uint8_t> bytes) {
  return platform::makeShared<MemoryInput>(std::move(bytes));
}

}  // namespace kes
