// Messages that come by themselves, from the line to the citizen.
#include "app/messaging/analytics_sink.h"
#include "app/messaging/delivery.h"
#include "platform/push/local_line.h"
#include "platform/push/mqtt_line.h"
#include "tests/support/broker.h"
#include "town_phone.h"

namespace varlo {
namespace {

// Answers a try to connect when the test says so, and notes what it is asked.
class SlowLine final : public push::PushLine {
 public:
  void connect(Completion completion) override {
    asked.emplace_back("connect");
    open = std::move(completion);
  }
  void disconnect() override { asked.emplace_back("disconnect"); }
  void subscribe(const std::string& topic) override { asked.push_back("subscribe " + topic); }
  void unsubscribe(const std::string& topic) override { asked.push_back("unsubscribe " + topic); }
  void setReceiver(Receiver) override {}

  Trace asked;
  Completion open;
};

class Push : public TownTest {
 protected:
  // The desk's line unless another is given.
  void launchWith(std::shared_ptr<push::PushLine> line) {
    delivery = std::make_unique<PushDelivery>(std::move(line));
    delegate = std::make_unique<KesAppDelegate>();
    delegate->didFinishLaunching();
    delivery->deliverTo(*delegate);
    phone.app.activate();
    settle();
  }
  std::vector<std::string> notified() {
    std::vector<std::string> bodies;
    for (const auto& n : phone.app.notifications()) bodies.push_back(n.body);
    return bodies;
  }
  std::unique_ptr<PushDelivery> delivery;
};

TEST_F(Push, AMessageIsShownAsItCameAndNotifiedASecondLater) {
  auto line = std::make_shared<push::LocalLine>(phone.test.platform().mainQueue());
  line->receive(R"({"alert":"Domani scuole chiuse","id":"a"})");  // the app is starting
  launchWith(line);
  EXPECT_THAT(dialogText(), testing::AllOf(testing::StartsWith("Push message!: "),
                                           HasSubstr("alert"), HasSubstr("Domani scuole chiuse")));
  EXPECT_TRUE(phone.test.logged("FCMConnected"));
  EXPECT_TRUE(phone.test.logged("Message arrived: "));
  EXPECT_THAT(notified(), IsEmpty());
  phone.pump.advance(1000);
  EXPECT_THAT(notified(), ElementsAre("Domani scuole chiuse"));

  ASSERT_TRUE(enter("OK"));
  line->receive(R"({"alert":"Domani scuole chiuse","id":"a"})");
  line->receive("{\"alert\":");
  settle();
  EXPECT_EQ(dialogText(), "");
  line->receive(R"({"testo":"senza avviso"})");
  settle();
  EXPECT_THAT(dialogText(), HasSubstr("senza avviso"));
  phone.pump.advance(1000);
  EXPECT_THAT(notified(), ElementsAre("Domani scuole chiuse", "null"));
}

TEST_F(Push, ConnectsWhenActiveAndAsksAgainHalfASecondAfterNothing) {
  auto line = std::make_shared<SlowLine>();
  launchWith(line);
  EXPECT_THAT(line->asked, ElementsAre("connect"));
  line->open(std::nullopt);
  phone.pump.advance(499);
  EXPECT_EQ(line->asked.size(), 1u);
  phone.pump.advance(1);
  EXPECT_THAT(line->asked, ElementsAre("connect", "connect"));

  // To another program and back, while nothing is to be had: one row of tries goes on.
  line->open(std::nullopt);
  phone.app.resignActive();
  phone.app.activate();
  phone.pump.drain();
  line->open(std::nullopt);
  line->asked.clear();
  phone.pump.advance(1000);
  EXPECT_THAT(line->asked, ElementsAre("connect"));

  line->open("session");
  phone.pump.drain();
  EXPECT_EQ(line->asked.back(), "subscribe ios_general");
  line->asked.clear();
  phone.app.enterBackground();
  line->open(std::nullopt);
  phone.pump.advance(2000);
  EXPECT_THAT(line->asked, ElementsAre("disconnect"));
  phone.app.activate();
  phone.pump.drain();
  line->open("session");
  phone.pump.drain();
  EXPECT_THAT(line->asked, ElementsAre("disconnect", "connect", "subscribe ios_general"));
}

TEST_F(Push, WithoutABrokerNothingIsTriedAndItIsSaidOnce) {
  EXPECT_EQ(makePushLine(""), nullptr);
  EXPECT_THROW(makePushLine("mqtt://push.varlo.example"), std::invalid_argument);
  launchWith(nullptr);
  phone.app.enterBackground();
  phone.app.activate();
  settle();
  const auto lines = phone.test.lines();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const auto& l) { return l.find("No broker") != l.npos; }),
            1);
}

TEST_F(Push, WhatWasSentWhileTheAppWasOffShowsAtItsStart) {
  Broker broker(phone.test.root() / "broker");
  const auto line = [&] {
    push::MqttLine::Options options;
    options.broker =
        push::BrokerAddress::parse("mqtts://localhost:" + std::to_string(broker.tlsPort()));
    options.prefix = deployment::pushPrefix().str();
    options.folder = phone.test.folders().library;
    options.certificates = broker.certificates();
    return std::make_shared<push::MqttLine>(std::move(options), phone.test.platform().mainQueue());
  };
  launchWith(line());
  ASSERT_TRUE(phone.test.runUntil([&] { return phone.test.logged("FCMConnected"); }));
  phone.pump.drain();
  broker.send({R"({"alert":"uno"})"});
  ASSERT_TRUE(phone.test.runUntil([&] { return dialogText() != ""; }));
  EXPECT_THAT(dialogText(), HasSubstr("uno"));
  settle();
  ASSERT_TRUE(enter("OK"));

  phone.app.enterBackground();
  delivery.reset();
  broker.send({R"({"alert":"due"})"});
  launchWith(line());
  ASSERT_TRUE(phone.test.runUntil([&] { return dialogText() != ""; }));
  EXPECT_THAT(dialogText(), HasSubstr("due"));
}

TEST_F(Push, AnalyticsReachTheSinkOfTheProgramAndNobodyElse) {
  struct Noted final : AnalyticsSink {
    void configure() override { heard.emplace_back("configure"); }
    void logEvent(const Text& name, const Ref<Dictionary>& parameters) override {
      heard.push_back(name.str() + " " + std::to_string(parameters->size()));
    }
    Trace heard;
  };
  const auto sink = std::make_shared<Noted>();
  AnalyticsSink::install(sink);
  launch();
  EXPECT_THAT(sink->heard, ElementsAre("configure"));
  app()._analytics.SendEvent("aperta", mapOf(R"({"pagina":"Farmacie","riga":3})"));
  EXPECT_EQ(sink->heard.back(), "aperta 2");
  AnalyticsSink::install(nullptr);
  app()._analytics.SendEvent("chiusa", mapOf("{}"));
  EXPECT_EQ(sink->heard.size(), 2u);
}

}  // namespace
}  // namespace varlo
