// The program as scripts use it: started for real, spoken to, and interrupted.
#include <gmock/gmock.h>
#include <httplib.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support.h"

namespace town {
namespace {

// Runs until finish(); what it prints goes to a pipe.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), VARLO_TOWNHOST);
    std::vector<char*> argv;
    for (auto& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    const int failed = posix_spawn(&id_, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    out_ = ends[0];
    if (failed) throw std::runtime_error("the program doesn't start");
  }
  ~Program() { ::close(out_); }

  std::string line() {
    std::string text;
    for (char c; ::read(out_, &c, 1) == 1 && c != '\n';) text += c;
    return text;
  }
  int finish(int signal) {
    if (signal) ::kill(id_, signal);
    int status = 0;
    ::waitpid(id_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t id_ = 0;
  int out_ = -1;
};

TEST(Program, ServesTheDayItIsToldUntilItIsInterrupted) {
  for (int signal : {SIGINT, SIGTERM}) {
    Program program({"--now", "2031-12-31T23:00", "--released", "3.2"});
    const auto url = program.line();
    EXPECT_THAT(url, testing::StartsWith("http://127.0.0.1:"));
    httplib::Client client(url);
    EXPECT_EQ(client.Get("/InfoVarlo/config/master/version_ios")->body, "3.2");
    const auto turns = test::json(client.Get("/InfoVarlo/farmacie/master/turni.json")->body);
    const auto& today = turns[turns.Size() / 2];
    EXPECT_EQ(today["Giorno"].GetInt(), 31);
    EXPECT_EQ(today["Mese"].GetInt(), 12);
    EXPECT_EQ(today["Anno"].GetInt(), 2031);
    EXPECT_EQ(program.finish(signal), 0);
  }
}

TEST(Program, SaysWhatItDoesNotUnderstand) {
  TownHost other;
  const struct {
    std::vector<std::string> arguments;
    int expected;
    const char* says;
  } cases[] = {
      {{"--port"}, 2, "usage"},
      {{"--port", "70000"}, 2, "usage"},
      {{"--port", "80x"}, 2, "usage"},
      {{"--now", "domani"}, 2, "usage"},
      {{"--help"}, 0, "usage"},
      {{"--port", std::to_string(other.port())}, 1, "varlo-townhost: "},
  };
  for (const auto& c : cases) {
    Program program(c.arguments);
    EXPECT_THAT(program.line(), testing::StartsWith(c.says)) << c.arguments[0];
    EXPECT_EQ(program.finish(0), c.expected) << c.arguments[0];
  }
}

}  // namespace
}  // namespace town
