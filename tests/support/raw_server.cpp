#include "tests/support/raw_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace testing_support {

namespace {
// The number after "Content-Length:" in a head, 0 when there is none.
std::size_t announced(std::string_view head) {
  std::string lower(head);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto at = lower.find("\r\ncontent-length:");
  return at == std::string::npos ? 0 : std::strtoul(lower.c_str() + at + 17, nullptr, 10);
}
}  // namespace

std::string RawServer::Peer::readRequest() {
  for (;;) {
    if (const auto end = pending_.find("\r\n\r\n"); end != std::string::npos) {
      const auto whole = end + 4 + announced(std::string_view(pending_).substr(0, end));
      if (pending_.size() >= whole) {
        auto request = pending_.substr(0, whole);
        pending_.erase(0, whole);
        return request;
      }
    }
    char buffer[16384];
    const auto n = ::recv(socket_, buffer, sizeof buffer, 0);
    if (n <= 0) return {};
    pending_.append(buffer, static_cast<std::size_t>(n));
  }
}

void RawServer::Peer::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto n = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (n <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
}

void RawServer::Peer::awaitHangUp() {
  char buffer[4096];
  while (::recv(socket_, buffer, sizeof buffer, 0) > 0) {
  }
}

RawServer::RawServer(Script script) : script_(std::move(script)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (listener_ < 0 || ::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::listen(listener_, 128) != 0 ||
      ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    throw std::runtime_error(std::string("no listening socket: ") + std::strerror(errno));
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { listen(); });
}

RawServer::~RawServer() {
  ending_ = true;
  ::shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  ::close(listener_);
  {
    std::lock_guard lock(mutex_);
    for (int s : open_) ::shutdown(s, SHUT_RDWR);
  }
  for (auto& t : threads_) t.join();
}

void RawServer::listen() {
  for (;;) {
    const int s = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (s < 0) {
      if (ending_) return;
      continue;
    }
    const int on = 1;
    ::setsockopt(s, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::lock_guard lock(mutex_);
    open_.push_back(s);
    const int number = connections_++;
    threads_.emplace_back([this, s, number] {
      Peer peer(s);
      peer.connection = number;
      script_(peer);
      std::lock_guard closing(mutex_);
      open_.erase(std::find(open_.begin(), open_.end(), s));
      ::close(s);
    });
  }
}

std::string RawServer::url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

std::string answer(std::string_view body, std::string_view headers, std::string_view status) {
  return "HTTP/1.1 " + std::string(status) + "\r\n" + std::string(headers) +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

RawServer::Script answering(std::string bytes) {
  return [bytes = std::move(bytes)](RawServer::Peer& peer) {
    peer.readRequest();
    peer.send(bytes);
  };
}

}  // namespace testing_support
