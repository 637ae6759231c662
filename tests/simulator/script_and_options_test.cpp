#include "simulator/script.h"

#include <gtest/gtest.h>

#include "simulator/options.h"
#include "tests/support/test_platform.h"

using sim::Command;
using sim::Options;
using sim::Script;

namespace {

std::string errorOf(const std::string& source) {
  try {
    Script::parse(source);
  } catch (const sim::ScriptError& e) {
    return e.what();
  }
  return "";
}

std::string refusal(std::vector<std::string> arguments) {
  try {
    Options::parse(arguments);
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
  return "";
}

}  // namespace

TEST(Script, ReadsEveryCommandWithItsLineNumber) {
  const Script script = Script::parse(
      "#! --now 2026-11-21T20:00 --size 320x568\n"
      "# a remark\n"
      "\n"
      "  tap \"Farmacia \\\"di\\\" turno\\n\" 2\n"
      "tap #clv\n"
      "wait idle\n"
      "wait 250\n"
      "named \"button\" \"Home\"\n"
      "fault {\"path\": \"/\", \"kind\": \"drop\"}\n"
      "dump\n"
      "shot out/a b.png  \n");
  EXPECT_EQ(script.options,
            (std::vector<std::string>{"--now", "2026-11-21T20:00", "--size", "320x568"}));
  ASSERT_EQ(script.commands.size(), 8u);
  EXPECT_EQ(script.commands[0].text, "Farmacia \"di\" turno\n");
  EXPECT_EQ(script.commands[0].number, 2);
  EXPECT_EQ(script.commands[0].line, 4);
  EXPECT_EQ(script.commands[1].text, "#clv");
  EXPECT_EQ(script.commands[2].verb, Command::Verb::WaitIdle);
  EXPECT_EQ(script.commands[3].number, 250);
  EXPECT_EQ(script.commands[4].second, "Home");
  EXPECT_EQ(script.commands[5].text, R"({"path": "/", "kind": "drop"})");
  EXPECT_TRUE(script.commands[6].text.empty());
  EXPECT_EQ(script.commands[7].text, "out/a b.png");
}

TEST(Script, SaysWhatIsWrongAndWhere) {
  const struct {
    const char *source, *error;
  } cases[] = {
      {"wait idle\nfly home", "line 2: unknown command \"fly\""},
      {"tap \"open", "line 1: the text has no closing quote"},
      {"tap", "line 1: what is to be tapped?"},
      {"tap \"a\" zwei", "line 1: a number is wanted in place of \"zwei\""},
      {"tap \"a\" 0", "line 1: the number is out of range: 0"},
      {"swipe sideways", "line 1: one of left, right, up, down is wanted in place of \"sideways\""},
      {"expect text", "line 1: a text in quotes is wanted here"},
      {"back twice", "line 1: nothing more is wanted after \"back\""},
      {"shot", "line 1: a file name is wanted here"},
  };
  for (const auto& c : cases) EXPECT_EQ(errorOf(c.source), c.error) << c.source;
}

TEST(SimulatorOptions, ReadValuesAndRefuseNonsense) {
  testing_support::TestPlatform platform;
  const auto o = Options::parse({"--size", "320x568", "--scale", "3", "--screen", "headless",
                                 "--town", "http://127.0.0.1:8080/", "--now", "2026-07-01T00:30:15",
                                 "--text-size", "200", "--at", "45.25,-10"});
  EXPECT_EQ(o.width, 320);
  EXPECT_EQ(o.height, 568);
  EXPECT_EQ(o.scale, 3);
  EXPECT_EQ(o.textSize, 200);
  EXPECT_EQ(o.at, (ui::GeoPoint{45.25, -10}));
  EXPECT_EQ(o.town, "http://127.0.0.1:8080");
  EXPECT_EQ(o.now, 1782858615000) << "summer time in the town";
  const struct {
    std::vector<std::string> arguments;
    const char* error;
  } cases[] = {
      {{"--fast"}, "unknown option --fast"},
      {{"--size"}, "--size needs a value"},
      {{"--size", "320"}, "--size wants WxH, as in 375x667"},
      {{"--size", "0x5"}, "a width cannot be 0"},
      {{"--scale", "-1"}, "a scale cannot be -1"},
      {{"--text-size", "79"}, "--text-size is a whole number from 80 to 200, not 79"},
      {{"--text-size", "201"}, "--text-size is a whole number from 80 to 200, not 201"},
      {{"--text-size", "1e2"}, "--text-size is a whole number from 80 to 200, not 1e2"},
      {{"--screen", "tv"}, "--screen is qt or headless, not tv"},
      {{"--town", "ftp://x"}, "--town wants an http or https address, not ftp://x"},
      {{"--now", "tomorrow"}, "not an ISO time: tomorrow (as in 2026-11-21T20:00)"},
      {{"--at", "45.2"}, "--at wants LAT,LON, as in 45.238,10.042"},
      {{"--at", "91,0"}, "--at wants LAT,LON, as in 45.238,10.042"},
      {{"--at", "45,8,10"}, "--at wants LAT,LON, as in 45.238,10.042"},
      {{"--now", "2026-02-30"}, "no such time: 2026-02-30"},
  };
  for (const auto& c : cases) EXPECT_EQ(refusal(c.arguments), c.error);
}

TEST(IsoTime, TakesZonesAndOffsets) {
  testing_support::TestPlatform platform;
  const struct {
    const char* text;
    std::int64_t ticks;
  } cases[] = {
      {"1970-01-01T00:00:00Z", 0},      {"1970-01-01T01:00", 0},         {"1970-01-01", -3600000},
      {"1970-01-01T05:30:00+05:30", 0}, {"1969-12-31T16:00:00-0800", 0},
  };
  for (const auto& c : cases)
    EXPECT_EQ(sim::parseIsoTime(c.text, "Europe/Rome"), c.ticks) << c.text;
}
