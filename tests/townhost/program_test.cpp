// The program as scripts use it: started for real, spoken to, and interrupted.
#include <gmock/gmock.h>
#include <httplib.h>
#include <signal.h>

#include <string>
#include <vector>

#include "support.h"
#include "tests/support/program.h"

namespace town {
namespace {

std::vector<std::string> townHost(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), VARLO_TOWNHOST);
  return arguments;
}

TEST(TownHostProgram, ServesTheDayItIsToldUntilItIsInterrupted) {
  for (int signal : {SIGINT, SIGTERM}) {
    // Already the 31st in the town, though not yet by Greenwich.
    Program program(townHost({"--now", "2031-12-31T00:30", "--released", "3.2"}), {1, 2});
    const auto url = program.line().value();
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

TEST(TownHostProgram, SaysWhatItDoesNotUnderstand) {
  TownHost other;
  const struct {
    std::vector<std::string> arguments;
    int expected;
    const char* says;
  } cases[] = {
      {{"--port"}, 2, "varlo-townhost: --port is 0 to 65535"},
      {{"--port", "70000"}, 2, "varlo-townhost: --port is 0 to 65535, not 70000"},
      {{"--port", "80x"}, 2, "varlo-townhost: --port is 0 to 65535, not 80x"},
      {{"--now", "domani"}, 2, "varlo-townhost: no such time: domani"},
      {{"--export", ""}, 2, "varlo-townhost: --export needs a value"},
      {{"--prot", "80"}, 2, "varlo-townhost: unknown option --prot"},
      {{"--help"}, 0, "usage"},
      {{"--port", std::to_string(other.port())}, 1, "varlo-townhost: "},
  };
  for (const auto& c : cases) {
    Program program(townHost(c.arguments), {1, 2});
    EXPECT_THAT(program.line().value(), testing::StartsWith(c.says)) << c.arguments[0];
    EXPECT_EQ(program.finish(), c.expected) << c.arguments[0];
  }
}

}  // namespace
}  // namespace town
