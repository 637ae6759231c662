#include "townhost/trial_paths.h"

#include <gmock/gmock.h>
#include <httplib.h>

#include <thread>

#include "support.h"

namespace town {
namespace {

using test::get;
using test::json;
using test::rawRequest;

TEST(TrialPaths, EchoGivesBackEveryVerbUnchanged) {
  TownHost host;
  httplib::Client client(host.url());
  const httplib::Headers headers = {{"User-Agent", "prova/1"}, {"X-Due", "a"}, {"X-Due", "b"}};
  const std::string body = "testo con àccenti \x01";
  const auto check = [&](const httplib::Result& result, const char* method, bool hasBody) {
    SCOPED_TRACE(method);
    ASSERT_TRUE(result);
    const auto echo = json(result->body);
    EXPECT_STREQ(echo["method"].GetString(), method);
    EXPECT_STREQ(echo["target"].GetString(), "/_echo/x?a=%20b");
    EXPECT_STREQ(echo["headers"]["User-Agent"].GetString(), "prova/1");
    EXPECT_STREQ(echo["headers"]["X-Due"].GetString(), "a, b");
    EXPECT_STREQ(echo["body"].GetString(), hasBody ? body.c_str() : "");
  };
  const char* path = "/_echo/x?a=%20b";
  check(client.Get(path, headers), "GET", false);
  check(client.Post(path, headers, body, "text/plain"), "POST", true);
  check(client.Put(path, headers, body, "text/plain"), "PUT", true);
  check(client.Patch(path, headers, body, "text/plain"), "PATCH", true);
  check(client.Delete(path, headers, body, "text/plain"), "DELETE", true);
  check(client.Options(path, headers), "OPTIONS", false);
  EXPECT_EQ(client.Head("/_echo")->status, 200);

  const auto log = host.requests().all();
  ASSERT_EQ(log.size(), 7u);
  EXPECT_EQ(log[3].method, "PATCH");
  EXPECT_EQ(log[3].path, path);
  EXPECT_EQ(log[3].userAgent, "prova/1");
}

// A client that asks first would wait in vain, and send late.
TEST(TrialPaths, AnnouncedBodiesAreWelcomedBeforeTheyCome) {
  TownHost host;
  const auto wire = rawRequest(host,
                               "PUT /_echo HTTP/1.1\r\nHost: varlo\r\nConnection: close\r\n"
                               "Expect: 100-continue\r\nContent-Length: 2\r\n\r\nsi");
  EXPECT_THAT(wire.all, testing::StartsWith("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n"));
}

// The engine below would split forms, and unpack what calls itself packed.
TEST(TrialPaths, EchoLeavesBodiesAsTheyCame) {
  TownHost host;
  const std::string bytes(
      "--x\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\n\xff\0\r\n--x--\r\n", 60);
  for (const char* kind : {"Content-Type: multipart/form-data; boundary=x",
                           "Content-Type: application/x-www-form-urlencoded",
                           "Content-Encoding: gzip", "Content-Encoding: UTF8", "Expect: nothing"}) {
    const auto wire = rawRequest(
        host, "POST /_echo HTTP/1.1\r\nHost: varlo\r\nConnection: close\r\n" + std::string(kind) +
                  "\r\nContent-Length: " + std::to_string(bytes.size()) + "\r\n\r\n" + bytes);
    ASSERT_EQ(wire.status(), 200) << kind;
    const auto echo = json(wire.body());
    std::string hex;
    for (unsigned char c : bytes) {
      char two[3];
      std::snprintf(two, sizeof two, "%02x", c);
      hex += two;
    }
    EXPECT_EQ(echo["bodyHex"].GetString(), hex) << kind;
    const std::string name(kind, std::string_view(kind).find(':'));
    EXPECT_TRUE(echo["headers"].HasMember(name.c_str())) << kind;
  }
}

TEST(TrialPaths, StatusBytesAndRedirectsAnswerAsAsked) {
  TownHost host;
  for (int status : {200, 201, 204, 299, 300, 304, 401, 418, 500, 599})
    EXPECT_EQ(get(host, "/_status/" + std::to_string(status)).status(), status);
  EXPECT_EQ(get(host, "/_status/204").body(), "");
  for (const char* bad : {"/_status/199", "/_status/600", "/_status/2x", "/_status/", "/_bytes/-1",
                          "/_bytes/99999999999", "/_redirect/0", "/_redirect/2?to=//altrove",
                          "/_redirect/1?to=http://altrove"})
    EXPECT_EQ(get(host, bad).status(), 400) << bad;

  const auto many = get(host, "/_bytes/100000").body();
  ASSERT_EQ(many.size(), 100'000u);
  EXPECT_EQ(many[250], '\xfa');
  EXPECT_EQ(many[251], '\0');
  EXPECT_EQ(get(host, "/_bytes/0").header("Content-Length"), "0");

  httplib::Client client(host.url());
  client.set_follow_location(true);
  host.requests().clear();
  EXPECT_EQ(client.Get("/_redirect/4?to=/_status/203")->status, 203);
  EXPECT_EQ(host.requests().count("/_redirect/1"), 1u);
  const auto packed = client.Get("/_gzip");
  EXPECT_EQ(packed->get_header_value("Content-Encoding"), "gzip");
  EXPECT_STREQ(json(packed->body)["citta"].GetString(), "Varlo");
}

TEST(TrialPaths, ProtectedPathsKnowTheirUser) {
  TownHost host;
  const struct {
    const char *user, *password;
    int expected;
  } cases[] = {
      {"varlo", "segreta", 200}, {"varlo", "Segreta", 401}, {"", "segreta", 401}, {"", "", 401}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.user) + ":" + c.password);
    httplib::Client basic(host.url()), digest(host.url());
    if (*c.password) basic.set_basic_auth(c.user, c.password);
    if (*c.password) digest.set_digest_auth(c.user, c.password);
    EXPECT_EQ(basic.Get("/_auth/basic/x")->status, c.expected);
    EXPECT_EQ(digest.Get("/_auth/digest/x")->status, c.expected);
  }
  EXPECT_THAT(get(host, "/_auth/basic").header("WWW-Authenticate"), testing::StartsWith("Basic "));
  const auto challenge = get(host, "/_auth/digest").header("WWW-Authenticate");
  EXPECT_THAT(challenge, testing::HasSubstr("qop=\"auth\""));
  for (const char* header :
       {"Digest", "Digest ", "Digest nonce", "Digest nonce=\"", "Digest username=\"varlo\"",
        "Digest nonce=\"1.x\", username=\"varlo\"", "Basic dmFybG86c2VncmV0YQ=="})
    EXPECT_EQ(
        rawRequest(host, "GET /_auth/digest HTTP/1.1\r\nConnection: close\r\nAuthorization: " +
                             std::string(header) + "\r\n\r\n")
            .status(),
        401)
        << header;
}

TEST(TrialPaths, AHostileRequestIsRefusedAndTheHostGoesOn) {
  TownHost host;
  const std::string end = " HTTP/1.1\r\nConnection: close\r\n\r\n";
  EXPECT_EQ(rawRequest(host, "GET /" + std::string(5000, 'a') + end).status(), 414);
  EXPECT_EQ(rawRequest(host, "GET /" + std::string(20'000, 'a') + end).status(), 414);
  EXPECT_EQ(rawRequest(host, "DANCE /_echo" + end).status(), 400);
  EXPECT_EQ(rawRequest(host, "GET /_echo%ff%fe?%zz" + end).status(), 200);
  EXPECT_EQ(rawRequest(host,
                       "PUT /InfoVarlo/config/master/version_ios HTTP/1.1\r\n"
                       "Connection: close\r\nContent-Length: 1\r\n\r\n9")
                .status(),
            405);
  EXPECT_EQ(get(host, "/InfoVarlo/config/master/version_ios").body(), "1.0");
}

TEST(TrialPaths, AHostStopsInTheMidstOfTraffic) {
  for (int round = 0; round < 5; ++round) {
    TownHost host;
    std::vector<std::thread> clients;
    for (int i = 0; i < 16; ++i)
      clients.emplace_back([&host] {
        httplib::Client client(host.url());
        client.set_keep_alive(true);
        while (client.Get("/_bytes/20000")) continue;
      });
    while (host.requests().all().size() < 100) std::this_thread::yield();
    host.stop();
    for (auto& client : clients) client.join();
    EXPECT_GE(host.requests().count("/_bytes/20000"), 100u);
  }
}

TEST(TrialPaths, TwoHostsDoNotShareAPortAndAStoppedOneIsGone) {
  TownHost first;
  TownHost::Options same;
  same.port = first.port();
  EXPECT_THROW(TownHost second(same), std::runtime_error);
  httplib::Client idle(first.url());
  idle.set_keep_alive(true);
  EXPECT_EQ(idle.Get("/_echo")->status, 200);  // leaves its connection open
  first.stop();
  first.stop();
  EXPECT_THROW(get(first, "/_echo"), std::runtime_error);
}

}  // namespace
}  // namespace town
