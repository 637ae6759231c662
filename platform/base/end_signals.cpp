#include "platform/base/end_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>

namespace platform {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM};

// All that a handler may do is to write a byte.
std::atomic<int> g_pipe{-1};

void tell(int signal) {
  const int error = errno;
  const auto byte = static_cast<unsigned char>(signal);
  [[maybe_unused]] const auto written = ::write(g_pipe, &byte, 1);
  errno = error;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> politely, std::function<void()> atLast,
                       std::int64_t patience)
    : politely_(std::move(politely)), atLast_(std::move(atLast)), patience_(patience) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe for signals");
  reading_ = ends[0];
  writing_ = ends[1];
  g_pipe = writing_;
  thread_ = std::thread([this] { watch(); });
  struct sigaction action {};
  action.sa_handler = tell;
  for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
}

EndSignals::~EndSignals() {
  for (const int signal : kSignals) ::signal(signal, SIG_DFL);
  g_pipe = -1;
  const unsigned char over = 0;
  [[maybe_unused]] const auto written = ::write(writing_, &over, 1);
  thread_.join();
  ::close(reading_);
  ::close(writing_);
}

void EndSignals::watch() {
  unsigned char byte = 0;
  while (::read(reading_, &byte, 1) < 0 && errno == EINTR) {
  }
  if (byte == 0) return;
  came_ = byte;
  politely_();
  // Until the object goes (a zero), another signal comes, or the time is over.
  pollfd wait{reading_, POLLIN, 0};
  const int ready = ::poll(&wait, 1, static_cast<int>(patience_));
  unsigned char next = 1;
  if (ready > 0 && ::read(reading_, &next, 1) == 1 && next == 0) return;
  atLast_();
  ::_exit(128 + came_);
}

}  // namespace platform
