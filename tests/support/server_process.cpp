#include "tests/support/server_process.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

bool ServerProcess::run(std::vector<std::string> command, const std::string& home) {
  Program program(std::move(command), {2}, {"PATH=/usr/bin:/bin", "HOME=" + home});
  program.allLines();
  return program.finish() == 0;
}

void ServerProcess::require(const std::vector<std::string>& command, const std::string& home) {
  if (!run(command, home)) throw std::runtime_error(command[0] + " " + command[1] + " failed");
}

int ServerProcess::freePort() {
  const int s = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (s < 0 || ::bind(s, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    throw std::runtime_error(std::string("no free port: ") + std::strerror(errno));
  ::close(s);
  return ntohs(address.sin_port);
}

bool ServerProcess::start(std::vector<std::string> command, const std::string& whenItListens) {
  stop();
  said_.clear();
  program_.emplace(std::move(command), std::vector{2},
                   std::vector<std::string>{"PATH=/usr/bin:/bin"});
  while (const auto line = program_->line()) {
    said_ += *line + "\n";
    if (line->find(whenItListens) != std::string::npos) return true;
  }
  stop();
  return false;
}

void ServerProcess::stop() {
  if (program_) program_->finish(SIGTERM);
  program_.reset();
}

void ServerProcess::killHard() { program_.reset(); }
