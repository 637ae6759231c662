// What is a message, what came before, and what is told when.
#include <gmock/gmock.h>

#include "platform/push/broker_address.h"
#include "platform/push/local_line.h"
#include "platform/push/payload.h"
#include "tests/support/test_platform.h"

using push::BrokerAddress;
using push::Inbox;
using testing::ElementsAre;
using testing_support::TestPlatform;

namespace {

std::string nested(std::size_t levels) {
  std::string text = R"({"a":)";
  for (std::size_t i = 1; i < levels; ++i) text += "[";
  text += "0";
  for (std::size_t i = 1; i < levels; ++i) text += "]";
  return text + "}";
}

TEST(PushPayload, OnlyAnObjectOfSomeSizeAndDepthIsAMessage) {
  const struct {
    std::string text;
    const char *refusal, *id;
  } cases[] = {
      {"{}", "", ""},
      {R"( {"alert":"Domani scuole chiuse","id":"neve-1"} )", "", "neve-1"},
      {R"({"id":17,"a":{"id":"inner"}})", "", "17"},
      {R"({"a":{"id":"inner"},"b":["id"],"id":true})", "", ""},
      {"[1]", "it is no object", ""},
      {"\"text\"", "it is no object", ""},
      {"", "it is no JSON, from byte 0", ""},
      {R"({"alert":)", "it is no JSON, from byte 9", ""},
      {"{} {}", "it is no JSON, from byte 3", ""},
      {"{\"a\":\"\xC3\"}", "it is no JSON, from byte 6", ""},
      {nested(push::kDeepestPayload), "", ""},
      {nested(push::kDeepestPayload + 1), "it nests too deep", ""},
      {nested(20000), "it nests too deep", ""},
      {R"({"a":")" + std::string(push::kLargestPayload - 8, 'x') + R"("})", "", ""},
      {R"({"a":")" + std::string(push::kLargestPayload - 7, 'x') + R"("})", "it has 65537 bytes",
       ""},
  };
  for (const auto& c : cases) {
    const auto payload = push::readPayload(c.text);
    EXPECT_EQ(payload.refusal, c.refusal) << c.text.substr(0, 60);
    EXPECT_EQ(*c.refusal ? "" : payload.id, c.id) << c.text.substr(0, 60);
  }
}

TEST(PushAddress, TlsUnlessItIsThisMachineOrTheDeploymentSaysSo) {
  const auto parsed = [](const char* url, bool plain = false) -> std::string {
    try {
      const auto a = BrokerAddress::parse(url, plain);
      return a.host + " " + std::to_string(a.port) + (a.tls ? " tls" : " clear");
    } catch (const std::invalid_argument& e) {
      return "refused";
    }
  };
  EXPECT_EQ(parsed("mqtts://push.varlo.example"), "push.varlo.example 8883 tls");
  EXPECT_EQ(parsed("mqtts://[2001:db8::1]:8884/"), "2001:db8::1 8884 tls");
  EXPECT_EQ(parsed("mqtt://127.0.0.1:1999"), "127.0.0.1 1999 clear");
  EXPECT_EQ(parsed("mqtt://localhost"), "localhost 1883 clear");
  EXPECT_EQ(parsed("mqtt://[::1]"), "::1 1883 clear");
  EXPECT_EQ(parsed("mqtt://push.varlo.example", true), "push.varlo.example 1883 clear");
  for (const char* bad : {"mqtt://push.varlo.example", "mqtt://127.0.0.1.varlo.example",
                          "http://localhost", "mqtts://", "mqtts://host:0", "mqtts://host:65536",
                          "mqtts://host:12x", "mqtts://host:", "mqtts://user@host",
                          "mqtts://host/path", "mqtts://[::1", "push.varlo.example"})
    EXPECT_EQ(parsed(bad), "refused") << bad;
}

class InboxTest : public testing::Test {
 protected:
  std::shared_ptr<Inbox> inbox() {
    return std::make_shared<Inbox>(path_.string(), phone_.platform().mainQueue());
  }
  push::PushLine::Receiver receiver(bool seesToIt = true) {
    return [this, seesToIt](const std::string& json, const std::function<void()>& done) {
      heard_.push_back(json);
      if (seesToIt) done();
    };
  }
  TestPlatform phone_;
  std::filesystem::path path_ = phone_.root() / "push.db";
  std::vector<std::string> heard_;
};

TEST_F(InboxTest, WhatComesBeforeAnybodyListensIsToldFirstAndARepeatNever) {
  auto box = inbox();
  box->take(R"({"id":"a"})", "1");
  box->take(R"({"id":"b"})", "2");
  box->take(R"({"id":"a","again":true})", "3");
  box->take("{}", "4");
  box->take("{}", "4");
  phone_.drain();
  EXPECT_TRUE(heard_.empty());
  box->setReceiver(receiver());
  box->take("{}", "5");
  EXPECT_TRUE(heard_.empty());  // from the queue only
  phone_.drain();
  EXPECT_THAT(heard_, ElementsAre(R"({"id":"a"})", R"({"id":"b"})", "{}", "{}"));

  const auto self = box->identity();
  box = inbox();
  EXPECT_EQ(box->identity(), self);
  box->setReceiver(receiver());
  box->take(R"({"id":"b"})", "6");
  box->take("{}", "5");
  phone_.drain();
  EXPECT_EQ(heard_.size(), 4u);
  box->forget("5");
  box->take("{}", "5");
  phone_.drain();
  EXPECT_EQ(heard_.size(), 5u);
}

TEST_F(InboxTest, WhatNobodySawToComesAgainThreeTimesAtMost) {
  for (int start = 0; start < 4; ++start) {
    auto box = inbox();
    if (start == 0) box->take(R"({"id":"a"})", "1");
    box->setReceiver(receiver(false));
    phone_.drain();
    box->close();
  }
  EXPECT_EQ(heard_.size(), 3u);
  EXPECT_TRUE(phone_.logged("told three times to no avail"));
}

TEST_F(InboxTest, AStoreThatIsNoneIsPutAsideAndBegunAnew) {
  TestPlatform::write(path_, std::string(8192, 'x'));
  auto box = inbox();
  EXPECT_EQ(box->identity().size(), 22u);
  EXPECT_TRUE(std::filesystem::exists(path_.string() + ".damaged"));
  box->setReceiver(receiver());
  box->take("{}", "1");
  phone_.drain();
  EXPECT_EQ(heard_.size(), 1u);
}

TEST_F(InboxTest, TheDeskConnectsAtOnceAndReceivesWhatItIsHanded) {
  push::LocalLine line(phone_.platform().mainQueue());
  bool connected = false;
  line.connect([&](const auto& connection) { connected = connection.has_value(); });
  EXPECT_TRUE(connected);
  line.receive("{}");
  line.receive("[]");
  line.receive("{}");
  line.setReceiver(receiver());
  phone_.drain();
  EXPECT_THAT(heard_, ElementsAre("{}", "{}"));
  EXPECT_TRUE(phone_.logged("A push message was dropped: it is no object."));
}

}  // namespace
