#include "runtime/data/framing/byte_channel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

namespace kes {

namespace {

[[noreturn]] void fail(std::string_view format) {
  throw KesException(formatText(format, {std::strerror(errno)}));
}

class DescriptorChannel final : public ByteChannel {
 public:
  explicit DescriptorChannel(int fd) : fd_(fd), wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    const int flags = ::fcntl(fd_, F_GETFL);
    const bool ready = wake_ >= 0 && flags >= 0 && ::fcntl(fd_, F_SETFL, flags | O_NONBLOCK) == 0;
    if (ready) return;
    const int code = errno;
    release();
    errno = code;
    fail("Error opening stream: %@");
  }
  DescriptorChannel(const DescriptorChannel&) = delete;
  DescriptorChannel& operator=(const DescriptorChannel&) = delete;
  ~DescriptorChannel() override { release(); }

  std::size_t read(std::span<std::uint8_t> into) override {
    while (await(POLLIN)) {
      const auto n = ::read(fd_, into.data(), into.size());
      if (n >= 0) return static_cast<std::size_t>(n);
      if (!mayRetry()) fail("Error reading from stream: %@");
    }
    return 0;
  }

  bool write(std::span<const std::uint8_t> bytes) override {
    while (!bytes.empty()) {
      if (!await(POLLOUT)) return false;
      const auto n = ::write(fd_, bytes.data(), bytes.size());
      if (n >= 0)
        bytes = bytes.subspan(static_cast<std::size_t>(n));
      else if (!mayRetry())
        fail("Error writing to stream: %@");
    }
    return true;
  }

  void interrupt() override {
    const std::uint64_t one = 1;
    // Never read again, so the channel stays interrupted; it cannot fail before 2^64.
    [[maybe_unused]] const auto n = ::write(wake_, &one, sizeof one);
  }

 private:
  static bool mayRetry() { return errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK; }

  // False once interrupted.
  bool await(short what) {
    for (;;) {
      pollfd watched[] = {{wake_, POLLIN, 0}, {fd_, what, 0}};
      const int n = ::poll(watched, 2, -1);
      if (n < 0 && errno != EINTR) fail("Error reading from stream: %@");
      if (n <= 0) continue;
      return watched[0].revents == 0;
    }
  }
  void release() {
    if (fd_ >= 0) ::close(fd_);
    if (wake_ >= 0) ::close(wake_);
  }

  int fd_;
  int wake_;
};

class StreamChannel final : public ByteChannel {
 public:
  StreamChannel(const KesInputStream& in, const KesOutputStream& out)
      : in_(in.nativeOrNull()), out_(out.nativeOrNull()) {}

  std::size_t read(std::span<std::uint8_t> into) override {
    if (interrupted_ || !in_) return 0;
    const auto n = in_->read(into);
    if (n < 0) throw KesException(formatText("Error reading from stream: %@", {in_->error()}));
    return static_cast<std::size_t>(n);
  }
  bool write(std::span<const std::uint8_t> bytes) override {
    if (interrupted_ || !out_) return false;
    if (out_->write(bytes) < 0)
      throw KesException(formatText("Error writing to stream: %@", {out_->error()}));
    return true;
  }
  void interrupt() override { interrupted_ = true; }

 private:
  Ref<InputStream> in_;
  Ref<OutputStream> out_;
  std::atomic<bool> interrupted_{false};
};

}  // namespace

std::unique_ptr<ByteChannel> descriptorChannel(int fd) {
  return std::make_unique<DescriptorChannel>(fd);
}

std::unique_ptr<ByteChannel> streamChannel(const KesInputStream& in, const KesOutputStream& out) {
  return std::make_unique<StreamChannel>(in, out);
}

}  // namespace kes
