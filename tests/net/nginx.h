// A web server that none of us wrote, for as long as the object lives: nginx on loopback,
// with a configuration and a folder of its own, plain and over TLS with a certificate
// that nobody signed.
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
  std::filesystem::path root() const { return folder_ / "root"; }

 private:
  bool start(const std::string& locations);

  std::filesystem::path folder_;
  int port_ = 0;
  int tlsPort_ = 0;
  ServerProcess process_;
};
