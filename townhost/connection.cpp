#include "townhost/connection.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace town {
namespace {

template <class Ask>
void addressOf(Ask ask, int socket, std::string& ip, int& port) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (ask(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) return;
  if (address.sin_family != AF_INET) return;
  char text[INET_ADDRSTRLEN] = "";
  if (inet_ntop(AF_INET, &address.sin_addr, text, sizeof text)) ip = text;
  port = ntohs(address.sin_port);
}

}  // namespace

Connection::Connection(int socket, int readTimeout, int writeTimeout)
    : socket_(socket), readTimeout_(readTimeout), writeTimeout_(writeTimeout), buffer_(16384) {}

Connection::~Connection() {
  hangUp();
  ::close(socket_);
}

void Connection::hangUp() {
  gone_ = true;
  ::shutdown(socket_, SHUT_RDWR);
}

bool Connection::ready(short events, int milliseconds) const {
  pollfd wanted{socket_, events, 0};
  int got;
  do {
    got = ::poll(&wanted, 1, milliseconds);
  } while (got < 0 && errno == EINTR);
  return got > 0 && !gone_;
}

// A client that hangs up makes the socket readable too: a look at the first byte tells it from
// one that asks.
bool Connection::awaitRequest(int milliseconds) {
  if (begin_ == end_) {
    if (!ready(POLLIN, milliseconds)) return false;
    char first;
    if (::recv(socket_, &first, 1, MSG_PEEK) <= 0) return false;
  }
  return !gone_;
}

bool Connection::is_readable() const { return begin_ < end_ || ready(POLLIN, readTimeout_); }

bool Connection::is_writable() const { return ready(POLLOUT, writeTimeout_); }

ssize_t Connection::read(char* to, std::size_t size) {
  if (begin_ == end_) {
    if (!ready(POLLIN, readTimeout_)) return -1;
    ssize_t got;
    do {
      got = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
    } while (got < 0 && errno == EINTR);
    if (got <= 0) return got;
    begin_ = 0;
    end_ = static_cast<std::size_t>(got);
  }
  const auto taken = std::min(size, end_ - begin_);
  std::memcpy(to, buffer_.data() + begin_, taken);
  begin_ += taken;
  return static_cast<ssize_t>(taken);
}

ssize_t Connection::write(const char* from, std::size_t size) {
  std::size_t sent = 0;
  while (sent < size) {
    if (gone_ || !ready(POLLOUT, writeTimeout_)) return -1;
    const auto put = ::send(socket_, from + sent, size - sent, MSG_NOSIGNAL);
    if (put < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (put < 0) return -1;
    sent += static_cast<std::size_t>(put);
  }
  return static_cast<ssize_t>(sent);
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  addressOf(::getpeername, socket_, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  addressOf(::getsockname, socket_, ip, port);
}

}  // namespace town
