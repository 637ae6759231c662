// The line and a real broker, as a town would run it.
#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "platform/push/mqtt_line.h"
#include "tests/support/broker.h"
#include "tests/support/test_platform.h"

using push::BrokerAddress;
using push::MqttLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::TestPlatform;

namespace {

std::string message(int n) { return R"({"id":"n)" + std::to_string(n) + R"("})"; }

class BrokerTest : public testing::Test {
 protected:
  std::unique_ptr<MqttLine> line(const std::string& address, const std::string& certificates,
                                 const char* folder = "phone") {
    const auto home = phone_.root() / folder;
    std::filesystem::create_directories(home);
    auto line = std::make_unique<MqttLine>(
        MqttLine::Options{BrokerAddress::parse(address), "varlo", home.string(), certificates},
        phone_.platform().mainQueue());
    line->setReceiver([this](const std::string& json, const std::function<void()>& done) {
      heard_.push_back(json);
      done();
    });
    return line;
  }
  std::string safeAddress(const char* host = "localhost") const {
    return "mqtts://" + std::string(host) + ":" + std::to_string(broker_.tlsPort());
  }
  // What the completion is told; fails the test when it never is.
  std::optional<std::string> connect(MqttLine& line) {
    std::optional<std::string> told;
    bool completed = false;
    line.connect([&](const auto& connection) {
      told = connection;
      completed = true;
    });
    EXPECT_TRUE(phone_.runUntil([&] { return completed; }, 20000));
    return told;
  }
  bool hears(std::size_t count) {
    return phone_.runUntil([&] { return heard_.size() >= count; });
  }

  TestPlatform phone_;
  Broker broker_{phone_.root() / "broker"};
  std::vector<std::string> heard_;
};

TEST_F(BrokerTest, WhatIsSentUnderThePrefixArrivesAndWaitsWhileThePhoneSleeps) {
  auto line = this->line(safeAddress(), broker_.certificates());
  ASSERT_TRUE(connect(*line));
  line->subscribe("ios_general");
  line->subscribe("ios_general");
  broker_.send({message(1), "no JSON", message(2), message(1)});
  broker_.send({message(3)}, "another");
  ASSERT_TRUE(hears(2));
  EXPECT_TRUE(phone_.logged("A push message was dropped: it is no JSON"));

  line->disconnect();
  broker_.send({message(4), message(5)});
  EXPECT_EQ(connect(*line).value().size(), 22u);
  ASSERT_TRUE(hears(4));

  line->unsubscribe("ios_general");
  line->subscribe("another");
  broker_.send({message(6)});
  broker_.send({message(7)}, "another");
  ASSERT_TRUE(hears(5));
  EXPECT_THAT(heard_, ElementsAre(message(1), message(2), message(4), message(5), message(7)));
}

TEST_F(BrokerTest, MessagesWithoutAnIdAreToldApartAndARetainedOneComesOnce) {
  auto line = this->line("mqtt://127.0.0.1:" + std::to_string(broker_.plainPort()), "");
  ASSERT_TRUE(connect(*line));
  line->subscribe("ios_general");
  const std::string same = R"({"alert":"Prova"})";
  broker_.send({same, same});
  const std::string retained = R"({"alert":"Da tenere"})";
  broker_.send({retained}, "ios_general", true);
  ASSERT_TRUE(hears(3));
  ASSERT_TRUE(connect(*line));  // as after each return to the foreground
  line->subscribe("ios_general");
  broker_.send({message(1)});
  ASSERT_TRUE(hears(4));
  EXPECT_THAT(heard_, ElementsAre(same, same, retained, message(1)));
}

TEST_F(BrokerTest, ABrokerThatCannotProveWhoItIsGetsNoConnection) {
  auto stranger = line(safeAddress(), broker_.otherCertificates(), "first");
  EXPECT_FALSE(connect(*stranger));
  EXPECT_TRUE(phone_.logged("The line of push messages cannot be had"));
  auto unnamed = line(safeAddress("127.0.0.1"), broker_.certificates(), "second");
  EXPECT_FALSE(connect(*unnamed));
  auto system = line(safeAddress(), "", "third");
  EXPECT_FALSE(connect(*system));
  auto good = line(safeAddress(), broker_.certificates(), "fourth");
  EXPECT_TRUE(connect(*good));
}

TEST_F(BrokerTest, ACitizenWhoSendsIsRefused) {
  auto line = this->line(safeAddress(), broker_.certificates());
  ASSERT_TRUE(connect(*line));
  line->subscribe("ios_general");
  EXPECT_THAT(broker_.sendAsAnybody(message(1)), HasSubstr("Not authorized"));
  broker_.send({message(2)});
  ASSERT_TRUE(hears(1));
  EXPECT_THAT(heard_, ElementsAre(message(2)));
}

TEST_F(BrokerTest, NobodyThereIsToldSoonAndSaidOnce) {
  auto line = this->line(safeAddress(), broker_.certificates());
  broker_.killHard();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(connect(*line));
  const auto lines = phone_.lines();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const auto& l) { return l.find("cannot be had") != l.npos; }),
            1);
  // Going in the midst of a try, and of a connection, is quick and quiet.
  line->connect([](const auto&) { ADD_FAILURE() << "told after the line has gone"; });
  line.reset();
  phone_.drain();
}

// Five hundred messages while broker and app are killed in turn.
TEST_F(BrokerTest, EachOfFiveHundredMessagesArrivesOnce) {
  const auto home = phone_.root() / "listener";
  std::filesystem::create_directories(home);
  const auto out = phone_.root() / "out";
  ServerProcess app;
  const auto start = [&](const std::string& killedBy = "") {
    std::vector<std::string> command{PUSH_LISTENER, home.string(),
                                     std::to_string(broker_.tlsPort()), broker_.certificates(),
                                     out.string()};
    if (!killedBy.empty()) command.push_back(killedBy);
    ASSERT_TRUE(app.start(command, "connected")) << app.said();
  };
  const auto heard = [&] {
    std::vector<std::string> lines;
    std::istringstream text(TestPlatform::read(out));
    for (std::string l; std::getline(text, l);) lines.push_back(l);
    return lines;
  };
  const auto awaitHeard = [&](std::size_t count) {
    return phone_.runUntil([&] { return heard().size() >= count; }, 30000);
  };
  const auto send = [&](int from, int to) {
    std::vector<std::string> batch;
    for (int n = from; n < to; ++n) batch.push_back(message(n));
    broker_.send(batch);
  };

  start("60");
  send(0, 100);  // the sixtieth message kills the app before the citizen has seen it
  ASSERT_TRUE(awaitHeard(59));
  start();
  ASSERT_TRUE(awaitHeard(100));

  app.killHard();
  send(100, 200);
  ASSERT_TRUE(phone_.runUntil([&] { return broker_.holds("n199"); }));
  broker_.killHard();
  broker_.start();
  start();
  send(200, 300);
  ASSERT_TRUE(awaitHeard(300));

  // The broker goes in the midst of handing out, and forgets what was acknowledged since it
  // last wrote to the disk: it sends that again.
  send(300, 400);
  ASSERT_TRUE(phone_.runUntil([&] { return broker_.holds("n399") || heard().size() == 400; }));
  broker_.killHard();
  broker_.start();
  send(400, 500);
  ASSERT_TRUE(awaitHeard(500));
  send(500, 501);  // what would come twice would come before this one
  ASSERT_TRUE(awaitHeard(501));

  std::vector<std::string> all;
  for (int n = 0; n < 501; ++n) all.push_back(message(n));
  EXPECT_EQ(heard(), all);
}

}  // namespace
