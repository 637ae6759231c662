// Another web server that none of us wrote, for the challenge that nginx doesn't know:
// lighttpd on loopback, with a folder of files behind digest authentication.
//
// The constructor throws std::runtime_error with lighttpd's own words when it can't start.
#pragma once

#include <filesystem>
#include <string>

#include "tests/support/server_process.h"

class Lighttpd {
 public:
  // Everything below /private/ is for "varlo" with the password "segreta".
  explicit Lighttpd(const std::filesystem::path& folder);

  std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::filesystem::path root() const { return folder_ / "root"; }

 private:
  std::filesystem::path folder_;
  int port_ = 0;
  ServerProcess process_;
};
