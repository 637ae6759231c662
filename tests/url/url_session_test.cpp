#include "platform/url/url_session.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <future>

#include "coded.h"
#include "platform/base/clock.h"
#include "tests/support/nginx.h"
#include "tests/support/raw_server.h"
#include "tests/support/recording_session.h"
#include "tests/support/test_platform.h"
#include "townhost/town_host.h"

using namespace platform;
using namespace testing_support;
using testing::HasSubstr;
using testing::Not;

namespace {

class UrlSessionTest : public testing::Test {
 protected:
  // Every test has to leave the temporary folder as it found it.
  void TearDown() override {
    session.end();
    EXPECT_TRUE(std::filesystem::is_empty(folder())) << "a body's file was left behind";
  }
  std::string folder() const { return place.folders().temporary; }

  TestPlatform place;
  RecordingSession session{place.folders().temporary};
};

UrlRequest request(const std::string& url, const std::string& method = "GET",
                   std::optional<std::string> body = {}) {
  UrlRequest r(url);
  r.method = method;
  if (body) r.body = std::make_shared<const std::string>(*body);
  return r;
}

// What the server sees of one request; answers it with the given bytes.
std::string seenBy(RecordingSession& session, UrlRequest r, const std::string& reply = answer("")) {
  std::promise<std::string> seen;
  RawServer server([&](RawServer::Peer& peer) {
    seen.set_value(peer.readRequest());
    peer.send(reply);
  });
  r.url = server.url(r.url);
  session.run(r);
  return seen.get_future().get();
}

}  // namespace

TEST_F(UrlSessionTest, TellsOneOutcomeWhateverTheServerSends) {
  std::string manyHeaders = "HTTP/1.1 200 OK\r\n";
  for (int i = 0; i < 4000; ++i)
    manyHeaders += "X-Header-" + std::to_string(i) + ": " + std::string(80, 'x') + "\r\n";
  std::string interims;
  for (int i = 0; i < 1000; ++i) interims += "HTTP/1.1 102 Wait\r\n\r\n";
  const auto gzip = deflated("Varlo", Frame::Gzip);
  const auto coded = [](const std::string& coding, const std::string& body,
                        const char* status = "200 OK") {
    return answer(body, "Content-Encoding: " + coding + "\r\n", status);
  };
  const struct {
    const char* what;
    std::string bytes;
    int status;         // 0: no response
    const char* error;  // null: none
    const char* body;   // null: no download was told
  } cases[] = {
      {"whole", answer("Varlo"), 200, nullptr, "Varlo"},
      {"empty", answer(""), 200, nullptr, ""},
      {"without content", "HTTP/1.1 204 No Content\r\n\r\n", 204, nullptr, ""},
      {"ended by hanging up", "HTTP/1.0 200 OK\r\n\r\nVarlo", 200, nullptr, "Varlo"},
      {"in chunks",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: "
       "chunked\r\n\r\n2\r\nVa\r\n3;x=y\r\nrlo\r\n0\r\nX-End: 1\r\n\r\n",
       200, nullptr, "Varlo"},
      {"bare line feeds", "HTTP/1.1 200 OK\nContent-Length: 5\n\nVarlo", 200, nullptr, "Varlo"},
      {"another status", answer("no", "", "404 Not Found"), 404, nullptr, "no"},
      {"several choices", answer("", "Location: /x\r\n", "300 Choices"), 300, nullptr, ""},
      {"a redirect to nowhere", answer("", "", "302 Found"), 302, nullptr, ""},
      {"after an interim answer", "HTTP/1.1 100 Continue\r\n\r\n" + answer("Varlo"), 200, nullptr,
       "Varlo"},
      {"an interim answer as its last word", "HTTP/1.1 199 Odd\r\n\r\n", 199, nullptr, ""},
      {"cut short", "HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\nVarlo", 200, "bytes", nullptr},
      {"cut in a chunk", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n20\r\nVarlo", 200,
       "", nullptr},
      {"cut before the last chunk",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nVarlo\r\n", 200, "", nullptr},
      {"a chunk without a size",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nVarlo\r\n0\r\n\r\n", 200, "",
       nullptr},
      {"a length that is no number", "HTTP/1.1 200 OK\r\nContent-Length: lots\r\n\r\nVarlo", 0,
       "Content-Length", nullptr},
      {"a negative length", "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nVarlo", 0,
       "Content-Length", nullptr},
      {"garbage for a status line", "\x16\x03\x01 Buongiorno\r\n\r\nVarlo", 0, "", nullptr},
      {"a status that is no number", "HTTP/1.1 abc OK\r\n\r\nVarlo", 0, "", nullptr},
      {"cut in the headers", "HTTP/1.1 200 OK\r\nContent-Le", 0, "", nullptr},
      {"nothing", "", 0, "", nullptr},
      {"headers without an end", manyHeaders + "\r\n", 0, "too large", nullptr},
      {"one endless header", "HTTP/1.1 200 OK\r\nX: " + std::string(200000, 'x') + "\r\n\r\n", 0,
       "", nullptr},
      {"interim answers without an end", interims, 0, "no final answer", nullptr},
      {"a coding that nobody knows", coded("utf-8", "Varlo"), 200, nullptr, "Varlo"},
      {"a compressed body", coded("gzip", gzip), 200, nullptr, "Varlo"},
      {"a compressed body of another status", coded("gzip", gzip, "404 Not Found"), 404, nullptr,
       "Varlo"},
      {"a compressed body without a byte", coded("gzip", ""), 200, nullptr, ""},
      {"damaged compression", coded("gzip", "Varlo"), 200, "is damaged", nullptr},
      {"compression that breaks off", coded("gzip", gzip.substr(0, gzip.size() - 1)), 200,
       "breaks off", nullptr},
      {"compression that breaks off at a hang-up",
       "HTTP/1.0 200 OK\r\nContent-Encoding: gzip\r\n\r\n" + gzip.substr(0, 10), 200, "breaks off",
       nullptr},
      {"a compressed body cut short", coded("gzip", gzip).substr(0, 80), 200, "bytes", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    RawServer server(answering(c.bytes));
    const auto told = session.run(server.url());
    EXPECT_EQ(told.completions, 1);
    EXPECT_EQ(told.downloads, c.body ? 1 : 0);
    EXPECT_EQ(told.body, c.body ? c.body : "");
    EXPECT_EQ(told.answered, c.status != 0);
    EXPECT_EQ(told.status, c.status);
    if (c.error) {
      EXPECT_THAT(told.error, HasSubstr(c.error));
      EXPECT_NE(told.error, "") << "an error needs a text";
    } else {
      EXPECT_EQ(told.error, "");
    }
  }
}

TEST_F(UrlSessionTest, RefusesWhatIsNoWebAddressWithoutConnecting) {
  for (const char* url :
       {"", "Varlo", "ftp://127.0.0.1/x", "file:///etc/passwd", "http://", "http://a b/",
        "http://127.0.0.1/caffè", "http://127.0.0.1/%zz", "http://127.0.0.1/#a#b",
        "http://127.0.0.1:99999/", "http://127.0.0.1/\r\nX: y"}) {
    SCOPED_TRACE(url);
    const auto told = session.run(url);
    EXPECT_EQ(told.error, "unsupported URL");
    EXPECT_EQ(told.completions, 1);
    EXPECT_FALSE(told.answered);
  }
  EXPECT_THAT(session.run("http://127.0.0.1:1/").error, HasSubstr("connect"));
}

TEST_F(UrlSessionTest, SendsTheRequestAsItWasMade) {
  place.write(place.root() / "body.bin", "from a file");
  const BodyFile file{(place.root() / "body.bin").string(), 11};
  const struct {
    const char* method;
    std::optional<std::string> body;
    bool asFile;
    const char* expected;  // the end of what the server reads
  } cases[] = {
      {"GET", {}, false, "\r\n\r\n"},
      {"HEAD", {}, false, "\r\n\r\n"},
      {"DELETE", {}, false, "\r\n\r\n"},
      {"DELETE", "why", false, "\r\n\r\nwhy"},
      {"POST", "text", false, "\r\n\r\ntext"},
      {"POST", {}, false, "\r\n\r\n"},
      {"PUT", "text", false, "\r\n\r\ntext"},
      {"PATCH", std::string("a\0b", 3), false, nullptr},
      {"POST", {}, true, "\r\n\r\nfrom a file"},
      {"PUT", {}, true, "\r\n\r\nfrom a file"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.method) + (c.asFile ? " file" : ""));
    auto r = request("/a/../b?c=d%20e", c.method, c.body);
    if (c.asFile) r.bodyFile = file;
    const auto seen = seenBy(session, r);
    EXPECT_TRUE(seen.starts_with(std::string(c.method) + " /a/../b?c=d%20e HTTP/1.1\r\n")) << seen;
    EXPECT_TRUE(seen.ends_with(c.expected ? c.expected : std::string("\r\n\r\na\0b", 7))) << seen;
    EXPECT_THAT(seen, Not(HasSubstr("Expect")));
    const bool carriesLength = c.body || c.asFile || *c.method == 'P';
    EXPECT_EQ(seen.find("Content-Length: ") != std::string::npos, carriesLength) << seen;
    const bool formType = std::string(c.method) == "POST";
    EXPECT_EQ(seen.find("application/x-www-form-urlencoded") != std::string::npos, formType)
        << seen;
  }
}

TEST_F(UrlSessionTest, SendsHeadersOnceAndNeverBreaksTheFraming) {
  auto r = request("/", "POST", "12345");
  r.headers.set("User-Agent", "first");
  r.headers.set("user-agent", "second");
  r.headers.set("X-Empty", "");
  r.headers.set("Content-Length", "3");
  r.headers.set("Transfer-Encoding", "chunked");
  r.headers.set("Content-Type", "text/plain");
  const auto seen = seenBy(session, r);
  EXPECT_THAT(seen, HasSubstr("\r\nUser-Agent: second\r\n"));
  EXPECT_THAT(seen, Not(HasSubstr("first")));
  EXPECT_THAT(seen, HasSubstr("\r\nX-Empty:\r\n"));
  EXPECT_THAT(seen, HasSubstr("\r\nContent-Length: 5\r\n"));
  EXPECT_THAT(seen, Not(HasSubstr("chunked")));
  EXPECT_THAT(seen, HasSubstr("\r\nContent-Type: text/plain\r\n"));
}

// Symptom: a user name or a method with a line break became a header, or a request, of its own.
TEST_F(UrlSessionTest, RefusesWhatWouldBreakARequestBeforeItConnects) {
  RawServer server(
      answering(answer("", "WWW-Authenticate: Digest realm=\"r\", nonce=\"1\"\r\n", "401 No")));
  const struct {
    const char* what;
    std::string method, name, value;
    UrlCredential credential;
  } cases[] = {
      {"no method", "", "X", "a", {"u", "p"}},
      {"method", "GET / HTTP/1.1\r\nX: y\r\n\r\nGET", "X", "a", {"u", "p"}},
      {"method", "GET ", "X", "a", {"u", "p"}},
      {"method", "CONNECT", "X", "a", {"u", "p"}},
      {"header", "GET", "X", "a\r\nY: b", {"u", "p"}},
      {"header", "GET", "X", std::string("a\0b", 3), {"u", "p"}},
      {"header", "GET", "X", "a\x7f", {"u", "p"}},
      {"header", "GET", "X Y", "a", {"u", "p"}},
      {"header", "GET", "", "a", {"u", "p"}},
      {"header", "GET", "X:", "a", {"u", "p"}},
      {"user", "GET", "X", "a", {"u\r\nY: b", "p"}},
      {"user", "GET", "X", "a", {"u\nY: b", "p"}},
      {"user", "GET", "X", "a", {"u:v", "p"}},
      {"password", "GET", "X", "a", {"u", "p\r\nY: b"}},
  };
  UrlCredential credential;
  session.credential = [&](const UrlTask&) { return credential; };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.what) + " " + c.method + c.name + c.value + c.credential.user);
    credential = c.credential;
    auto r = request(server.url(), c.method);
    r.headers.set(c.name, c.value);
    const auto told = session.run(r);
    EXPECT_THAT(told.error, HasSubstr("malformed"));
    EXPECT_EQ(told.completions, 1);
  }
  EXPECT_EQ(server.connections(), 0);
}

// Symptom: 1.5 MB of gzip became 3 GB of memory, and a success.
TEST_F(UrlSessionTest, BoundsABodyWhileItComes) {
  const std::string zeros(std::size_t{16} << 20, '\0');
  const auto member = deflated(zeros, Frame::Gzip);
  RawServer server([&](RawServer::Peer& peer) {
    const auto head = peer.readRequest();
    const auto send = [&](const std::string& headers, const std::string& body, int times) {
      peer.send("HTTP/1.1 200 OK\r\n" + headers + "\r\n\r\n");
      for (int i = 0; i < times; ++i) peer.send(body);
    };
    if (head.find("/bomb") != head.npos) send("Content-Encoding: gzip", member, 100);
    if (head.find("/double") != head.npos)
      send("Content-Encoding: gzip, gzip", deflated(member, Frame::Gzip), 100);
    if (head.find("/endless") != head.npos) send("X: y", zeros.substr(0, 1 << 20), 100);
    if (head.find("/announced") != head.npos) send("Content-Length: 90000000000", "x", 1);
    if (head.find("/five") != head.npos) send("Content-Length: 5", "Varlo", 1);
  });
  const auto peak = [] {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
      if (word == "VmHWM:") break;
    long kilobytes = 0;
    status >> kilobytes;
    return kilobytes;
  };
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts anew
  const long before = peak();
  for (const char* path : {"/bomb", "/double", "/endless", "/announced"}) {
    SCOPED_TRACE(path);
    const auto told = session.run(server.url(path));
    EXPECT_EQ(told.error, "The body is too large: more than 67108864 bytes.");
    EXPECT_EQ(told.status, 200);
    EXPECT_EQ(told.downloads, 0);
  }
  EXPECT_LT(peak() - before, 64 * 1024) << "kilobytes";
  for (const int limit : {4, 5}) {
    auto r = request(server.url("/five"));
    r.bodyLimit = limit;
    EXPECT_EQ(session.run(r).error, limit == 5 ? "" : "The body is too large: more than 4 bytes.");
  }
}

// Symptom: an answer in a coding that nobody knows failed a POST, and cost a GET two requests.
TEST_F(UrlSessionTest, SendsARequestOnceWhateverTheCodingOfItsAnswer) {
  std::atomic<int> requests{0};
  RawServer server([&](RawServer::Peer& peer) {
    while (!peer.readRequest().empty()) {
      ++requests;
      peer.send(answer("Varlo", "Content-Encoding: x-town\r\n"));
    }
  });
  for (const char* method : {"GET", "POST", "PUT", "PATCH", "DELETE"}) {
    SCOPED_TRACE(method);
    requests = 0;
    EXPECT_EQ(session.run(request(server.url(), method)).body, "Varlo");
    EXPECT_EQ(requests, 1);
  }
}

TEST_F(UrlSessionTest, FollowsRedirectsAsTheirStatusAsks) {
  const struct {
    int status;
    const char *method, *then;
    bool keepsBody;
  } cases[] = {
      {301, "GET", "GET", false},  {301, "POST", "GET", false},   {302, "POST", "GET", false},
      {302, "PUT", "PUT", true},   {303, "PUT", "GET", false},    {303, "HEAD", "HEAD", false},
      {307, "POST", "POST", true}, {308, "PATCH", "PATCH", true}, {303, "DELETE", "GET", false},
  };
  place.write(place.root() / "body.bin", "from a file");
  for (const auto& c : cases) {
    for (bool asFile : {false, true}) {
      SCOPED_TRACE(std::to_string(c.status) + c.method + (asFile ? " file" : ""));
      std::promise<std::string> second;
      RawServer server([&](RawServer::Peer& peer) {
        if (peer.readRequest().find(" /first ") == std::string::npos) return;
        peer.send(answer("", "Location: second?x=y\r\n", std::to_string(c.status) + " Go"));
        second.set_value(peer.readRequest());
        peer.send(answer(""));
      });
      auto r = request(server.url("/first"), c.method);
      r.headers.set("Content-Type", "text/plain");
      r.headers.set("Authorization", "Bearer x");
      if (*c.method == 'P') {
        if (asFile)
          r.bodyFile = BodyFile{(place.root() / "body.bin").string(), 11};
        else
          r.body = std::make_shared<const std::string>("from a text");
      }
      const auto told = session.run(r);
      EXPECT_EQ(told.status, 200);
      EXPECT_EQ(told.url, server.url("/second?x=y"));
      const auto seen = second.get_future().get();
      EXPECT_TRUE(seen.starts_with(std::string(c.then) + " /second?x=y ")) << seen;
      EXPECT_THAT(seen, HasSubstr("Bearer x")) << "the same host may know it";
      EXPECT_EQ(seen.find("text/plain") != std::string::npos,
                c.keepsBody || *c.then != 'G' || *c.method == 'G')
          << seen;
      EXPECT_TRUE(seen.ends_with(!c.keepsBody ? "\r\n\r\n"
                                 : asFile     ? "from a file"
                                              : "from a text"))
          << seen;
    }
  }
}

TEST_F(UrlSessionTest, EndsRedirectsThatLeadNowhereGood) {
  std::promise<std::string> elsewhere;
  RawServer other([&](RawServer::Peer& peer) {
    elsewhere.set_value(peer.readRequest());
    peer.send(answer(""));
  });
  RawServer server([&](RawServer::Peer& peer) {
    for (;;) {
      const auto head = peer.readRequest();
      if (head.empty()) return;
      const auto path = head.substr(4, head.find(' ', 4) - 4);
      std::string target = path;
      std::string body;
      if (path == "/file") target = "file:///etc/passwd";
      if (path == "/other") target = other.url();
      if (path == "/accents") target = "/caffè e tè";
      if (path == "/caff%c3%a8%20e%20t%c3%a8") {
        peer.send(answer("ok"));
        continue;
      }
      if (path == "/fat") target = "/loop", body = std::string(4 << 20, 'x');
      peer.send(answer(body, "Location: " + target + "\r\n", "302 Found"));
    }
  });
  const struct {
    const char *path, *error;
  } cases[] = {{"/loop", "too many HTTP redirects"},
               {"/fat", "too many HTTP redirects"},
               {"/file", "The server redirects to an unsupported URL."}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path);
    const auto told = session.run(server.url(c.path));
    EXPECT_EQ(told.error, c.error);
    EXPECT_FALSE(told.answered);
  }
  EXPECT_EQ(session.run(server.url("/accents")).body, "ok") << "an address that wants escaping";
  auto r = request(server.url("/other"));
  r.headers.set("Authorization", "Bearer x");
  r.headers.set("Cookie", "visit=secret");
  r.headers.set("X-Api-Key", "secret");
  r.headers.set("User-Agent", "InfoVARLO");
  EXPECT_EQ(session.run(r).status, 200);
  const auto seen = elsewhere.get_future().get();
  for (const char* secret : {"Bearer", "secret"})
    EXPECT_THAT(seen, Not(HasSubstr(secret))) << "another host must not learn it";
  EXPECT_THAT(seen, HasSubstr("User-Agent: InfoVARLO"));
}

TEST_F(UrlSessionTest, JudgesServersByTheirCertificates) {
  Nginx nginx(place.root() / "nginx", "location / { return 200 $server_protocol; }");
  const auto otherName = "https://localhost:" + std::to_string(nginx.tlsPort());
  const struct {
    std::string trusted, url;
    const char *error, *body;
  } cases[] = {
      {nginx.certificate(), nginx.tlsUrl(), "", "HTTP/2.0"},
      {nginx.certificate(), otherName, "no alternative certificate subject name matches", ""},
      {nginx.expiredCertificate(), nginx.expiredUrl(), "expired", ""},
      {nginx.expiredCertificate(), nginx.tlsUrl(), "certificate", ""},
      {"", nginx.tlsUrl(), "certificate", ""},
      {"", nginx.ipv6Url(), "", "HTTP/1.1"},
  };
  for (const auto& c : cases) {
    if (c.url.empty()) continue;
    SCOPED_TRACE(c.url);
    RecordingSession judge(UrlSession::Configuration{folder(), "", false, c.trusted});
    const auto told = judge.run(c.url);
    EXPECT_THAT(told.error, HasSubstr(c.error));
    EXPECT_EQ(told.error.empty(), *c.error == 0) << told.error;
    EXPECT_EQ(told.body, c.body);
  }
}

TEST_F(UrlSessionTest, AsksTheMachinesProxyForAllButLoopback) {
  std::promise<std::string> seen;
  RawServer proxy([&](RawServer::Peer& peer) {
    seen.set_value(peer.readRequest());
    peer.send(answer("proxy"));
  });
  RawServer here(answering(answer("here")));
  ::setenv("http_proxy", proxy.url().c_str(), 1);
  EXPECT_EQ(session.run(here.url()).body, "here");
  EXPECT_EQ(session.run("http://comune.varlo.example/x").body, "proxy");
  ::unsetenv("http_proxy");
  EXPECT_THAT(seen.get_future().get(), testing::StartsWith("GET http://comune.varlo.example/x "));
}

TEST_F(UrlSessionTest, SendsABodyFileAnewWhenItWasChallenged) {
  town::TownHost town;
  place.write(place.root() / "body.bin", std::string(300000, 'b'));
  session.credential = [](const UrlTask&) { return UrlCredential{"varlo", "segreta"}; };
  for (const char* path : {"/_auth/basic", "/_auth/digest"}) {
    SCOPED_TRACE(path);
    town.requests().clear();
    auto r = request(town.url() + path, "POST");
    r.bodyFile = BodyFile{(place.root() / "body.bin").string(), 300000};
    const auto told = session.run(r);
    EXPECT_EQ(told.error, "");
    EXPECT_EQ(told.status, 200);
    EXPECT_EQ(told.downloads, 1);
    EXPECT_EQ(town.requests().all().size(), 2u);
  }
}

TEST_F(UrlSessionTest, GivesUpOnAChallengeThatNeverEnds) {
  int rounds = 0;
  RawServer server([&](RawServer::Peer& peer) {
    while (!peer.readRequest().empty()) {
      ++rounds;
      peer.send(answer("",
                       "WWW-Authenticate: Digest realm=\"r\", stale=true, nonce=\"" +
                           std::to_string(rounds) + "\"\r\n",
                       "401 No"));
    }
  });
  session.credential = [](const UrlTask&) { return UrlCredential{"a", "b"}; };
  const auto told = session.run(server.url());
  EXPECT_EQ(told.completions, 1);
  EXPECT_TRUE(told.status == 401 || !told.error.empty());
  EXPECT_LE(rounds, 6);
}

// Symptom: a host that trickled kept a request under way for minutes.
TEST_F(UrlSessionTest, FailsWhatIsNotThereWhenItsTimeIsOver) {
  std::promise<void> end;
  auto ended = end.get_future().share();
  const auto trickle = [&](RawServer::Peer& peer, const std::string& piece) {
    while (ended.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout)
      peer.send(piece);
  };
  RawServer server([&](RawServer::Peer& peer) {
    const auto head = peer.readRequest();
    const auto is = [&](const char* path) { return head.find(path) != std::string::npos; };
    if (is("/headers")) peer.send("HTTP/1.1 200 OK\r\n"), trickle(peer, "X: y\r\n");
    if (is("/half")) peer.send("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nhalf"), ended.wait();
    if (is("/drip"))
      peer.send("HTTP/1.1 200 OK\r\nContent-Length: 9999\r\n\r\n"), trickle(peer, "x");
    if (is("/around")) {
      ended.wait_for(std::chrono::milliseconds(250));
      peer.send(answer("", "Location: /around\r\n", "302 Go"));
      return;
    }
    peer.awaitHangUp();
  });
  constexpr double kSeconds = 3;
  const SystemClock clock;
  const auto begun = clock.monotonic();
  const std::pair<const char*, int> cases[] = {
      {"/silent", 0}, {"/headers", 0}, {"/half", 200}, {"/drip", 200}, {"/around", 0}};
  for (const auto& [path, status] : cases) {
    auto r = request(server.url(path));
    r.timeout = kSeconds;
    session.start(r, path);
  }
  for (const auto& [path, status] : cases) {
    SCOPED_TRACE(path);
    const auto told = session.await(path);
    EXPECT_EQ(told.error, "The request timed out.");
    EXPECT_EQ(told.status, status);
    EXPECT_EQ(told.downloads, 0);
    EXPECT_NEAR(static_cast<double>(clock.monotonic() - begun), kSeconds * 1000, kSeconds * 50);
  }
  end.set_value();
}

TEST_F(UrlSessionTest, KeepsABodyInAPrivateFileForTheCallOnly) {
  town::TownHost town;
  session.onDownload = [&](const UrlTask& task) {
    const auto path = session.told()[task.description].path;
    struct stat about {};
    ASSERT_EQ(::stat(path.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777, 0600u);
    EXPECT_GT(about.st_size, 0);
    const auto place = std::filesystem::path(path).parent_path();
    ASSERT_EQ(::stat(place.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777, 0700u);
    EXPECT_EQ(place.parent_path(), folder());
  };
  const auto told = session.run(town.url() + "/_bytes/2000000");
  EXPECT_EQ(told.status, 200);
  ASSERT_EQ(told.body.size(), 2'000'000u);
  EXPECT_EQ(static_cast<unsigned char>(told.body[1'999'999]), 1'999'999 % 251);
  EXPECT_FALSE(std::filesystem::exists(told.path)) << "gone before completed()";
  EXPECT_THAT(session.run(town.url() + "/_gzip").body, HasSubstr("Varlo"));
}

// Symptom: what a killed process had downloaded stayed in the temporary folder for ever.
TEST_F(UrlSessionTest, SweepsWhatProcessesThatWereKilledLeftBehind) {
  namespace fs = std::filesystem;
  town::TownHost town;
  const fs::path here = folder();
  const std::string digits = "0123456789abcdef0123456789abcdef";
  TestPlatform::write(here / ("downloads-" + digits) / "download-1.tmp", "left behind");
  const fs::path kept[] = {here / "pictures" / "a.png", here / "downloads-mine" / "a.tmp",
                           here / ("downloads-" + digits + "0") / "a.tmp"};
  for (const auto& path : kept) TestPlatform::write(path, "kept");
  fs::create_directory_symlink(here / "pictures", here / ("downloads-f" + digits.substr(1)));

  RecordingSession other(folder());  // plays another program's
  other.onDownload = [&](const UrlTask& task) {
    session.run(town.url() + "/_bytes/2000000");
    EXPECT_TRUE(fs::exists(other.told()[task.description].path));
  };
  EXPECT_EQ(other.run(town.url() + "/_bytes/2000000").error, "");
  EXPECT_FALSE(fs::exists(here / ("downloads-" + digits)));
  for (const auto& path : kept) EXPECT_TRUE(fs::exists(path)) << path;
  other.end();
  session.end();
  for (const auto& path : kept) fs::remove_all(path.parent_path());
  fs::remove(here / ("downloads-f" + digits.substr(1)));
}

TEST_F(UrlSessionTest, KeepsSmallBodiesInMemoryWithinABound) {
  const auto memory = std::make_shared<UrlBodyMemory>(100'000);
  const std::string full(UrlBody::kInMemory, 'a');
  const auto place = std::make_shared<DownloadFolder>(folder());
  UrlBody first(place, memory), second(place, memory), third(place, memory);
  EXPECT_TRUE(first.write(full.substr(1)) && first.write("b"));
  ASSERT_TRUE(first.bytes());
  EXPECT_EQ(*first.bytes(), full.substr(1) + "b");
  EXPECT_TRUE(second.write("c") && second.write(full) && second.write("d") && second.close());
  EXPECT_FALSE(second.bytes()) << "too large";
  EXPECT_EQ(TestPlatform::read(second.path()), "c" + full + "d");
  EXPECT_TRUE(third.write(full));
  EXPECT_FALSE(third.bytes()) << "the others have used the memory up";
  EXPECT_TRUE(third.clear() && third.write("e") && third.close());
  EXPECT_EQ(TestPlatform::read(third.path()), "e");

  const auto kept = first.bytes();
  const auto path = first.path();
  EXPECT_EQ(TestPlatform::read(path), *kept) << "a file on demand";
  EXPECT_TRUE(UrlBody(place, memory).write(full));
  for (auto* body : {&first, &second, &third}) {
    body->discard();
    EXPECT_FALSE(body->bytes());
    EXPECT_FALSE(std::filesystem::exists(body->path()));
  }
  EXPECT_EQ(place.use_count(), 1) << "nothing needs the folder any more";
  EXPECT_EQ(path, first.path());
  EXPECT_TRUE(memory->take(100'000)) << "all was given back";
}

TEST_F(UrlSessionTest, TellsWhenTheBodyCannotBeStored) {
  town::TownHost town;
  {
    // As a full disk does, writing fails in the middle of a body.
    auto former = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 100'000;
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto told = session.run(town.url() + "/_bytes/2000000");
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, former);
    EXPECT_THAT(told.error, HasSubstr("can't be stored: File too large"));
    EXPECT_EQ(told.status, 200);
    EXPECT_EQ(told.downloads, 0);
  }
  RecordingSession homeless((place.root() / "missing").string());
  const auto large = homeless.run(town.url() + "/_bytes/70000");
  EXPECT_THAT(large.error, HasSubstr("can't be stored: No such file"));
  EXPECT_EQ(large.downloads, 0);
  const auto small = homeless.run(town.url() + "/_bytes/5");
  EXPECT_EQ(small.error, "") << "a small body needs no file";
  EXPECT_EQ(small.body.size(), 5u);
  EXPECT_EQ(small.path, "");
}

TEST_F(UrlSessionTest, TellsWhenABodyFileIsNotWhatWasAnnounced) {
  RawServer server([](RawServer::Peer& peer) { peer.awaitHangUp(); });
  place.write(place.root() / "short", "12345");
  const struct {
    std::string path;
    std::int64_t length;
    const char* error;
  } cases[] = {{(place.root() / "short").string(), 10, "shorter than announced"},
               {(place.root() / "none").string(), 10, "No such file"},
               {place.root().string(), 10, "not a plain file"}};
  for (const auto& c : cases) {
    auto r = request(server.url(), "PUT");
    r.bodyFile = BodyFile{c.path, c.length};
    EXPECT_THAT(session.run(r).error, HasSubstr(c.error));
  }
  auto r = request("/", "PUT");
  r.bodyFile = BodyFile{(place.root() / "short").string(), 3};
  EXPECT_THAT(seenBy(session, r), testing::EndsWith("Content-Length: 3\r\n\r\n123"));
}

TEST_F(UrlSessionTest, LetsTasksBeyondItsConnectionsWaitTheirTurn) {
  std::promise<void> open;
  auto opened = open.get_future().share();
  RawServer server([&](RawServer::Peer& peer) {
    while (!peer.readRequest().empty()) {
      opened.wait();
      peer.send(answer("ok"));
    }
  });
  RawServer another(answering(answer("ok")));
  for (int i = 0; i < 40; ++i) session.get(server.url(), std::to_string(i));
  EXPECT_EQ(session.run(another.url()).body, "ok") << "a busy host must not hold up another";
  EXPECT_EQ(session.session().tasksUnderWay(), 40u);
  open.set_value();
  for (int i = 0; i < 40; ++i) EXPECT_EQ(session.await(std::to_string(i)).body, "ok");
  EXPECT_EQ(session.session().tasksUnderWay(), 0u);
  EXPECT_LE(server.connections(), 6);
}

TEST_F(UrlSessionTest, CancelsWhatIsUnderWayWhenItEnds) {
  std::promise<void> reached;
  RawServer server([&](RawServer::Peer& peer) {
    peer.readRequest();
    peer.send("HTTP/1.1 200 OK\r\nContent-Length: 90000\r\n\r\n" + std::string(80000, 'x'));
    if (peer.connection == 5) reached.set_value();
    peer.awaitHangUp();
  });
  for (int i = 0; i < 30; ++i) session.get(server.url(), std::to_string(i));
  reached.get_future().wait();
  session.end();
  for (const auto& [name, told] : session.told()) {
    EXPECT_EQ(told.completions, 1) << name;
    EXPECT_EQ(told.downloads, 0) << name;
    EXPECT_EQ(told.error, "cancelled") << name;
  }
  EXPECT_EQ(session.told().size(), 30u);
}

TEST_F(UrlSessionTest, MayEndOnItsDelegateQueue) {
  town::TownHost town;
  bool first = true;
  std::size_t completed = 0;
  std::promise<void> allStarted;
  session.onDownload = [&](const UrlTask&) {
    if (!std::exchange(first, false)) return;
    allStarted.get_future().wait();
    session.end();
    for (const auto& [name, told] : session.told()) completed += told.completions;
  };
  auto r = request(town.url() + "/_bytes/10");
  for (int i = 0; i < 10; ++i) session.start(r, std::to_string(i));
  allStarted.set_value();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(session.await(std::to_string(i)).completions, 1);
  EXPECT_EQ(completed, 9u) << "all but the one that was being told, when the end had returned";
}

// Symptom: a request that follows on a connection which the server had closed failed.
TEST_F(UrlSessionTest, UsesAFreshConnectionWhenTheServerClosedTheKeptOne) {
  RawServer server(answering(answer("ok")));
  for (int i = 0; i < 20; ++i) EXPECT_EQ(session.run(server.url()).body, "ok");
}

// Symptom: a page that sets a cookie and redirects until it sees it went round for ever.
TEST_F(UrlSessionTest, KeepsCookiesForTheHostThatSetThem) {
  std::vector<std::string> heads;
  RawServer server([&](RawServer::Peer& peer) {
    const auto head = peer.readRequest();
    heads.push_back(head);
    const bool known = head.find("visit=1") != std::string::npos;
    peer.send(known
                  ? answer("ok")
                  : answer("", "Set-Cookie: visit=1; Path=/\r\nLocation: /again\r\n", "302 Found"));
  });
  EXPECT_EQ(session.run(server.url()).body, "ok");
  EXPECT_EQ(session.run(server.url()).body, "ok");
  EXPECT_EQ(heads.size(), 3u) << "asked to come back once";
  auto byHand = request(server.url("/"));
  byHand.headers.set("Cookie", "visit=1; mine=2");
  EXPECT_EQ(session.run(byHand).body, "ok");
  EXPECT_THAT(heads.back(), HasSubstr("Cookie: visit=1; mine=2\r\n"));
  EXPECT_EQ(heads.back().find("Cookie:"), heads.back().rfind("Cookie:"));
  RecordingSession other(folder());
  EXPECT_EQ(other.run(server.url()).body, "ok");
  EXPECT_EQ(heads.size(), 6u) << "another session begins without any";
}
