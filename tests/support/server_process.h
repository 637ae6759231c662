// A server that none of us wrote, run by a test on loopback for as long as the object lives.
//
// The test's thread only. What can't be done throws std::runtime_error with the reason.
#pragma once

#include <stdexcept>

#include "tests/support/program.h"

class ServerProcess {
 public:
  ServerProcess() = default;
  ~ServerProcess() { stop(); }
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  // Returns when the program has said on standard error that it listens; false when it
  // ends before. Either way said() is what it said.
  bool start(std::vector<std::string> command, const std::string& whenItListens);
  void stop();
  // As an empty battery would.
  void killHard();
  const std::string& said() const { return said_; }

  // Runs a program to its end; whether it went well.
  static bool run(std::vector<std::string> command, const std::string& home);
  // The same where it has to.
  static void require(const std::vector<std::string>& command, const std::string& home);
  // Somebody else may take it before it is used.
  static int freePort();
  // Tries anew, on other ports, what may have met somebody there.
  template <class Start>
  void startSomewhere(const char* name, Start start) {
    for (int attempt = 0; attempt < 5; ++attempt)
      if (start()) return;
    throw std::runtime_error(name + (" does not start: " + said_));
  }

 private:
  std::optional<Program> program_;  // kept listened to, so that it can go on talking
  std::string said_;
};
