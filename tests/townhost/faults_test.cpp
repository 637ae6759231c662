#include "townhost/faults.h"

#include <gmock/gmock.h>
#include <httplib.h>

#include <chrono>
#include <future>
#include <latch>
#include <thread>

#include "support.h"
#include "townhost/fault_script.h"

namespace town {
namespace {

using test::get;
using test::json;

const std::string menu = "/InfoVarlo/infocitta/master/menu.json";

std::size_t announced(const test::Wire& wire) { return std::stoul(wire.header("Content-Length")); }

TEST(Faults, AreSeenOnTheWire) {
  TownHost host(test::on("2026-05-04T09:00"));
  auto& faults = host.faults();
  const auto good = get(host, menu).body();
  const auto spoilt = [&](const Fault& fault) {
    faults.clear();
    faults.add("/InfoVarlo/", fault);
    return get(host, menu);
  };

  auto wire = spoilt(Fault::drop());
  EXPECT_EQ(wire.all, "");
  EXPECT_TRUE(wire.closed);
  EXPECT_EQ(host.requests().all().back().fault, "drop");
  faults.add("/InfoVarlo/", Fault::delay(1));
  EXPECT_EQ(get(host, menu).all, "");
  EXPECT_EQ(host.requests().all().back().fault, "delay+drop");

  for (long sent : {0L, 1L, 100L}) {
    wire = spoilt(Fault::truncate(sent));
    EXPECT_EQ(wire.status(), 200);
    EXPECT_EQ(announced(wire), good.size());
    EXPECT_EQ(wire.body(), good.substr(0, static_cast<std::size_t>(sent)));
    EXPECT_TRUE(wire.closed);
  }

  wire = spoilt(Fault::wrongLength(12));
  EXPECT_EQ(announced(wire), good.size() + 12);
  EXPECT_EQ(wire.body(), good);
  EXPECT_TRUE(wire.closed);
  wire = spoilt(Fault::wrongLength(-12));
  EXPECT_EQ(announced(wire), good.size() - 12);
  EXPECT_EQ(wire.body(), good);

  wire = spoilt(Fault::status(503, "chiuso"));
  EXPECT_EQ(wire.status(), 503);
  EXPECT_EQ(wire.body(), "chiuso");
  EXPECT_NE(spoilt(Fault::status(404)).body(), "");

  wire = spoilt(Fault::redirect("/_bytes/3"));
  EXPECT_EQ(wire.status(), 302);
  EXPECT_EQ(wire.header("Location"), "/_bytes/3");

  wire = spoilt(Fault::garbage());
  EXPECT_EQ(wire.status(), 200);
  EXPECT_EQ(announced(wire), wire.body().size());
  EXPECT_TRUE(rapidjson::Document().Parse(wire.body().c_str()).HasParseError());
  EXPECT_FALSE(json(spoilt(Fault::shape()).body()).IsArray());

  wire = spoilt(Fault::missingField("Link"));
  const auto without = json(wire.body());
  EXPECT_EQ(without.Size(), json(good).Size());
  for (const auto& category : without.GetArray()) {
    EXPECT_FALSE(category.HasMember("Link"));
    EXPECT_TRUE(category.HasMember("Nome"));
  }

  faults.clear();
  EXPECT_EQ(get(host, menu).body(), good);
}

TEST(Faults, HoldAnswersBackAndLetGoWhenTheHostStops) {
  TownHost host;
  host.faults().add("/_echo", Fault::delay(60));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(get(host, "/_echo").status(), 200);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(60));

  host.faults().clear();
  host.faults().add("/_echo", Fault::delay(3'600'000));
  auto held = std::async(std::launch::async, [&] { return get(host, "/_echo"); });
  while (host.requests().count("/_echo") < 2) std::this_thread::yield();
  host.stop();
  EXPECT_TRUE(held.get().closed);
}

TEST(Faults, FollowPathCountAndAge) {
  Faults faults;
  const auto taken = [&](const char* path) {
    std::string all;
    for (const auto& fault : faults.take(path))
      all += std::string(nameOf(fault.kind)) + std::to_string(fault.amount) + " ";
    return all;
  };
  faults.add("/a", Fault::status(500));
  faults.add("/a/b", Fault::status(404).onlyFor(2));
  faults.add("/a", Fault::delay(7).onlyFor(3));
  std::vector<std::string> seen;
  for (const char* path : {"/c", "/a/b", "/a/x", "/a/b", "/a/b", "/a", "/"})
    seen.push_back(taken(path));
  EXPECT_EQ(seen, (std::vector<std::string>{"", "delay7 status404 ", "delay7 status500 ",
                                            "delay7 status404 ", "status500 ", "status500 ", ""}));
  EXPECT_EQ(faults.standing().size(), 1u);
}

TEST(Faults, MixAtTheGivenRatesAndTheSameForTheSameSeed) {
  const auto run = [](std::uint32_t seed) {
    Faults faults;
    FaultMix mix;
    mix.seed = seed;
    mix.rate(Fault::Kind::delay) = 0.5;
    mix.rate(Fault::Kind::drop) = 0.2;
    mix.rate(Fault::Kind::status) = 0.1;
    faults.mix("/", mix);
    std::vector<std::string> all;
    for (int i = 0; i < 4000; ++i) {
      std::string one;
      for (const auto& fault : faults.take("/x"))
        one += std::string(nameOf(fault.kind)) + std::to_string(fault.amount) + " ";
      all.push_back(one);
    }
    return all;
  };
  const auto all = run(7);
  EXPECT_EQ(all, run(7));
  EXPECT_NE(all, run(8));
  const auto with = [&](const char* kind) {
    return std::count_if(all.begin(), all.end(),
                         [&](const auto& s) { return s.find(kind) != std::string::npos; });
  };
  EXPECT_NEAR(with("delay"), 2000, 200);
  EXPECT_NEAR(with("drop"), 800, 120);
  EXPECT_NEAR(with("status"), 320, 100);  // what drop left of its tenth
  EXPECT_EQ(with("truncate"), 0);
}

TEST(Faults, AreSetByScripts) {
  TownHost host;
  httplib::Client client(host.url());
  const auto post = [&](const char* body) {
    return client.Post("/_faults", body, "application/json")->status;
  };
  EXPECT_EQ(post(R"([{"path":"/_echo","kind":"status","amount":418,"times":1},
                     {"path":"/_bytes","kind":"delay","amount":1}])"),
            200);
  EXPECT_EQ(get(host, "/_echo").status(), 418);
  EXPECT_EQ(get(host, "/_echo").status(), 200);
  const auto left = json(client.Get("/_faults")->body);
  ASSERT_EQ(left.Size(), 1u);
  EXPECT_STREQ(left[0]["path"].GetString(), "/_bytes");

  for (const char* bad :
       {"", "{", "7", "[7]", R"({"kind":"mood"})", R"({"kind":"status","amount":99})",
        R"({"kind":"delay","amount":-1})", R"({"kind":"delay","amount":"1"})",
        R"({"kind":"drop","times":-1})", R"({"kind":"drop","path":3})", R"({"mix":{}})",
        R"({"mix":{"rates":{"drop":2}}})", R"({"mix":{"rates":{"x":0}}})",
        R"([{"kind":"drop"},{"kind":"mood"}])"})
    EXPECT_EQ(post(bad), 400) << bad;
  EXPECT_EQ(host.faults().standing().size(), 1u) << "a bad script did half its work";

  EXPECT_EQ(post(R"({"mix":{"seed":3,"rates":{"drop":1}}})"), 200);
  EXPECT_FALSE(client.Get("/_echo"));
  EXPECT_EQ(client.Delete("/_faults")->status, 200);
  EXPECT_EQ(client.Get("/_echo")->status, 200);
}

// Every answer is awaited by all clients at once: with fewer than 64 threads the
// host would never give the first.
TEST(Faults, SixtyFourConnectionsAreServedAtOnce) {
  // More than once: an end that reaches for a connection which has gone fails by chance only.
  for (int round = 0; round < 4; ++round) {
    TownHost host;
    std::latch together(64);
    host.documents().add("/insieme", "text/plain", [&](const Occasion&) {
      together.arrive_and_wait();
      return std::string("tutti");
    });
    std::vector<std::future<std::string>> clients;
    for (int i = 0; i < 64; ++i)
      clients.push_back(
          std::async(std::launch::async, [&] { return get(host, "/insieme").body(); }));
    for (auto& client : clients) EXPECT_EQ(client.get(), "tutti");
  }
}

}  // namespace
}  // namespace town
