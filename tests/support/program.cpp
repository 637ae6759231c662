#include "tests/support/program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (auto& text : texts) all.push_back(text.data());
  all.push_back(nullptr);
  return all;
}

}  // namespace

Program::Program(std::vector<std::string> command, const std::vector<int>& heard,
                 std::vector<std::string> environment) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
  // Somebody may stop listening before a talkative one stops talking.
  constexpr int kRoom = 1 << 20;
  ::fcntl(ends[1], F_SETPIPE_SZ, kRoom);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int descriptor : heard)
    posix_spawn_file_actions_adddup2(&actions, ends[1], descriptor);
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  const auto arguments = pointersTo(command), variables = pointersTo(environment);
  const int error = posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(),
                                 environment.empty() ? environ : variables.data());
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  said_ = ::fdopen(ends[0], "r");
  if (!error) return;
  std::fclose(said_);
  throw std::runtime_error(command[0] + ": " + std::strerror(error));
}

Program::~Program() {
  finish(SIGKILL);
  std::fclose(said_);
}

std::optional<std::string> Program::line() {
  std::string text;
  int c;
  while ((c = std::getc(said_)) != EOF && c != '\n') text += static_cast<char>(c);
  return c == EOF && text.empty() ? std::nullopt : std::optional(text);
}

std::vector<std::string> Program::allLines() {
  std::vector<std::string> lines;
  while (auto one = line()) lines.push_back(*std::move(one));
  return lines;
}

int Program::finish(int signal) {
  const auto process = std::exchange(process_, -1);
  if (process < 0) return -1;
  if (signal) ::kill(process, signal);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
