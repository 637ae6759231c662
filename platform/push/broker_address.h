// Where a broker is: "mqtts://host[:port]" or, in the clear, "mqtt://host[:port]".
//
// The clear form is refused but to this very machine, or where the deployment allows it:
// without TLS anybody on the way could write to the citizens. Plain data; parse() throws
// std::invalid_argument with one line that says what is wrong.
#pragma once

#include <string>
#include <string_view>

namespace push {

struct BrokerAddress {
  std::string host;  // a name, or an IP address without brackets
  int port = 8883;
  bool tls = true;

  static BrokerAddress parse(std::string_view url, bool plainAllowed = false);
};

}  // namespace push
