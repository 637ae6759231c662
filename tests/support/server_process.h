// A server that none of us wrote, run by a test on loopback for as long as the object lives.
//
// The test's thread only. What can't be done throws std::runtime_error with the reason.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

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
  // Somebody else may take it before it is used.
  static int freePort();

 private:
  void end(int signal);
  bool awaitListening(const std::string& words);

  pid_t process_ = -1;
  int log_ = -1;  // what it says, kept open so that it can go on saying it
  std::string said_;
};
