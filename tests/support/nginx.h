// A web server that none of us wrote, for as long as the object lives: nginx on loopback,
// with a configuration and a folder of its own, plain and over TLS with a certificate for
// 127.0.0.1 that nobody else signed; and over TLS with one that has expired.
//
// The constructor throws std::runtime_error with nginx's own words when it can't start.
#pragma once

#include <filesystem>
#include <string>

#include "tests/support/server_process.h"

class Nginx {
 public:
  // `locations`: what stands inside the server block. Files are served from root().
  Nginx(const std::filesystem::path& folder, const std::string& locations);

  std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::string tlsUrl() const { return "https://127.0.0.1:" + std::to_string(tlsPort_); }
  std::string expiredUrl() const { return "https://127.0.0.1:" + std::to_string(expiredPort_); }
  // The same as url() by another address; empty on a machine that has none of the kind.
  std::string ipv6Url() const {
    return hasIpv6_ ? "http://[::1]:" + std::to_string(port_) : std::string();
  }
  int tlsPort() const { return tlsPort_; }
  // The certificates, for those who want to trust them.
  std::string certificate() const { return (folder_ / "cert.pem").string(); }
  std::string expiredCertificate() const { return (folder_ / "expired.pem").string(); }
  std::filesystem::path root() const { return folder_ / "root"; }

 private:
  void makeCertificates() const;
  bool start(const std::string& locations);

  std::filesystem::path folder_;
  int port_ = 0;
  int tlsPort_ = 0;
  int expiredPort_ = 0;
  const bool hasIpv6_;
  ServerProcess process_;
};
