// A program that a test runs and listens to; killed with the object where it still runs.
//
// The test's thread only. What can't be done throws std::runtime_error with the reason.
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

class Program {
 public:
  // `heard`: what of it is listened to, 1 its standard output, 2 its standard error. Runs in
  // the test's own environment where none is given.
  Program(std::vector<std::string> command, const std::vector<int>& heard,
          std::vector<std::string> environment = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // The next line that it says, also after its end; nothing when no more comes.
  std::optional<std::string> line();
  std::vector<std::string> allLines();
  // Sends the signal, if any, and awaits the end: its exit status, -1 where a signal ended it.
  int finish(int signal = 0);

 private:
  pid_t process_ = -1;
  std::FILE* said_ = nullptr;
};
