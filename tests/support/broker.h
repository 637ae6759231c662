// A broker that none of us wrote, for as long as the object lives: mosquitto on loopback,
// set up as docs/push.md tells a town to: anybody listens under "varlo/", one account
// sends, what nobody has fetched yet is on the disk.
//
// The constructor makes the certificates and throws std::runtime_error when it can't start.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/server_process.h"

class Broker {
 public:
  explicit Broker(const std::filesystem::path& folder);

  // Over TLS, with a certificate for "localhost" and 127.0.0.1; in the clear.
  int tlsPort() const { return tlsPort_; }
  int plainPort() const { return plainPort_; }
  // Those who signed that certificate; others who did not.
  std::string certificates() const { return (folder_ / "ca.pem").string(); }
  std::string otherCertificates() const { return (folder_ / "other.pem").string(); }

  void killHard() { process_.killHard(); }
  // On the same ports, with what is on the disk.
  void start();
  // Returns once what the broker keeps on the disk holds the text.
  bool holds(const std::string& text) const;

  // Sends as the town does; returns when the broker has said that it has them.
  void send(const std::vector<std::string>& messages, const std::string& topic = "ios_general",
            bool retained = false);
  // Sends as anybody, and gives back what the tool had to say.
  std::string sendAsAnybody(const std::string& message);

 private:
  bool tryPorts();
  std::filesystem::path folder_;
  int tlsPort_ = 0, plainPort_ = 0;
  ServerProcess process_;
};
