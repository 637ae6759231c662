#include "support.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace town::test {

Instant at(const std::string& iso) {
  const auto instant = parseInstant(iso);
  if (!instant) throw std::invalid_argument("no time: " + iso);
  return *instant;
}

TownHost::Options on(const std::string& iso) {
  TownHost::Options options;
  options.now = [instant = at(iso)] { return instant; };
  return options;
}

int Wire::status() const { return all.starts_with("HTTP/1.1 ") ? std::stoi(all.substr(9, 3)) : 0; }

std::string Wire::header(const std::string& name) const {
  const auto start = all.find("\r\n" + name + ": ");
  if (start == std::string::npos || start > all.find("\r\n\r\n")) return "";
  const auto from = start + name.size() + 4;
  return all.substr(from, all.find("\r\n", from) - from);
}

std::string Wire::body() const {
  const auto end = all.find("\r\n\r\n");
  return end == std::string::npos ? "" : all.substr(end + 4);
}

Wire rawRequest(const TownHost& host, const std::string& bytes) {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(host.port()));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  Wire wire;
  if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    ::close(socket);
    throw std::runtime_error("no connection");
  }
  ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  for (char part[4096];;) {
    pollfd readable{socket, POLLIN, 0};
    if (::poll(&readable, 1, 20'000) <= 0) {
      ADD_FAILURE() << "the host neither sends nor closes";
      break;
    }
    const auto got = ::recv(socket, part, sizeof part, 0);
    if (got <= 0) {
      wire.closed = true;
      break;
    }
    wire.all.append(part, static_cast<std::size_t>(got));
  }
  ::close(socket);
  return wire;
}

Wire get(const TownHost& host, const std::string& path) {
  return rawRequest(host, "GET " + path + " HTTP/1.1\r\nHost: varlo\r\nConnection: close\r\n\r\n");
}

rapidjson::Document json(const std::string& text) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(
      text.data(), text.size());
  EXPECT_FALSE(document.HasParseError()) << "not JSON: " << text.substr(0, 200);
  return document;
}

}  // namespace town::test
