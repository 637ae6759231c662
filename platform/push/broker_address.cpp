#include "platform/push/broker_address.h"

#include <charconv>
#include <stdexcept>

namespace push {

namespace {

constexpr int kPlainPort = 1883;

bool isThisMachine(std::string_view host) {
  return host == "localhost" || host == "::1" ||
         (host.starts_with("127.") && host.find_first_not_of("0123456789.") == host.npos);
}

}  // namespace

BrokerAddress BrokerAddress::parse(std::string_view url, bool plainAllowed) {
  const auto fail = [&](const std::string& why) -> void {
    throw std::invalid_argument("the broker's address " + std::string(url) + " " + why);
  };
  BrokerAddress address;
  std::string_view rest = url;
  if (rest.starts_with("mqtts://")) {
    rest.remove_prefix(8);
  } else if (rest.starts_with("mqtt://")) {
    rest.remove_prefix(7);
    address.tls = false;
    address.port = kPlainPort;
  } else {
    fail("begins neither with mqtts:// nor with mqtt://");
  }
  if (rest.ends_with('/')) rest.remove_suffix(1);

  std::string_view port;
  if (rest.starts_with('[')) {
    const auto end = rest.find(']');
    if (end == rest.npos) fail("has a bracket that does not close");
    address.host = rest.substr(1, end - 1);
    port = rest.substr(end + 1);
  } else {
    const auto colon = rest.find(':');
    address.host = rest.substr(0, colon);
    if (colon != rest.npos) port = rest.substr(colon);
  }
  if (address.host.empty()) fail("names no host");
  if (address.host.find_first_of("/?#@% \t\r\n") != std::string::npos)
    fail("has more than a host and a port");
  if (!port.empty()) {
    const auto* end = port.data() + port.size();
    const auto [stopped, error] = std::from_chars(port.data() + 1, end, address.port);
    if (port[0] != ':' || error != std::errc() || stopped != end || address.port < 1 ||
        address.port > 65535)
      fail("has no such port");
  }
  if (!address.tls && !plainAllowed && !isThisMachine(address.host))
    fail("is in the clear: only a broker on this machine may be (use mqtts://)");
  return address;
}

}  // namespace push
