#include "tests/support/server_process.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

pid_t spawn(std::vector<std::string> command, std::vector<std::string> environment,
            posix_spawn_file_actions_t* actions) {
  std::vector<char*> arguments, variables;
  for (auto& a : command) arguments.push_back(a.data());
  for (auto& e : environment) variables.push_back(e.data());
  arguments.push_back(nullptr);
  variables.push_back(nullptr);
  pid_t process = -1;
  const int error =
      posix_spawnp(&process, arguments[0], actions, nullptr, arguments.data(), variables.data());
  if (error) throw std::runtime_error(command[0] + ": " + std::strerror(error));
  return process;
}

int awaitEnd(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace

bool ServerProcess::run(std::vector<std::string> command, const std::string& home) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  const auto process = spawn(std::move(command), {"PATH=/usr/bin:/bin", "HOME=" + home}, &actions);
  posix_spawn_file_actions_destroy(&actions);
  return awaitEnd(process) == 0;
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

bool ServerProcess::awaitListening(const std::string& words) {
  char buffer[1024];
  while (said_.find(words) == std::string::npos) {
    const auto n = ::read(log_, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    said_.append(buffer, static_cast<std::size_t>(n));
  }
  return true;
}

bool ServerProcess::start(std::vector<std::string> command, const std::string& whenItListens) {
  stop();
  said_.clear();
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
  // Nobody reads on once it listens: room for what a talkative one says.
  constexpr int kRoom = 1 << 20;
  ::fcntl(ends[1], F_SETPIPE_SZ, kRoom);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  process_ = spawn(std::move(command), {"PATH=/usr/bin:/bin"}, &actions);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  log_ = ends[0];
  if (awaitListening(whenItListens)) return true;
  stop();
  return false;
}

void ServerProcess::stop() { end(SIGTERM); }
void ServerProcess::killHard() { end(SIGKILL); }

void ServerProcess::end(int signal) {
  if (process_ > 0) {
    ::kill(process_, signal);
    awaitEnd(process_);
    process_ = -1;
  }
  if (log_ >= 0) ::close(std::exchange(log_, -1));
}
