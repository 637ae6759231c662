#include "runtime/net/http.h"

#include "net_fixture.h"
#include "tests/support/nginx.h"
#include "townhost/town_host.h"

namespace {

// Owns an engine and writes down its events, each with the status and the task id.
class EngineOwner : public KesClass {
 public:
  void _initialize(const Ref<Kes>&) { initializeClassModule(); }
  static void describe(ClassBuilder<EngineOwner>& c) {
    c.name("kes_engineowner");
    c.sub<&EngineOwner::_hc_responsesuccess>("hc_responsesuccess");
    c.sub<&EngineOwner::_hc_responseerror>("hc_responseerror");
  }
  void _hc_responsesuccess(const Ref<KesHttpResponse>& response, std::int32_t id) {
    last = response;
    status = response->StatusCode();
    if (onSuccess)
      onSuccess();
    else
      body = response->GetString().str();
    events.push_back("success " + std::to_string(status) + " #" + std::to_string(id));
  }
  void _hc_responseerror(const Ref<KesHttpResponse>& response, const Text& reason,
                         std::int32_t code, std::int32_t id) {
    last = response;
    status = response->StatusCode();
    body = response->GetString().str();
    EXPECT_EQ(status, code);
    events.push_back("error " + std::to_string(code) + " #" + std::to_string(id));
    error = reason.str();
  }

  Trace events;
  Ref<KesHttpResponse> last;
  std::string body, error;
  int status = 0;
  std::function<void()> onSuccess;
};

class HttpTest : public NetTest {
 protected:
  HttpTest() {
    ClassRegistry::instance().add<EngineOwner>();
    owner = make<EngineOwner>(Ref<Kes>());
    http = platform::makeShared<KesHttp>();
    http->Initialize(owner->bi(), "HC");
  }
  ~HttpTest() override {
    if (http) http->end();
    EXPECT_EQ(faults, Trace{});
  }
  void await(std::size_t events = 1) {
    ASSERT_TRUE(phone.runUntil([&] { return owner->events.size() >= events; }, 30000));
  }
  void get(const std::string& link, std::int32_t id = 1) {
    KesHttpRequest request;
    request.InitializeGet(link);
    run(request, id);
  }
  void run(const KesHttpRequest& request, std::int32_t id = 1) {
    owner->events.clear();
    owner->error.clear();
    http->Execute(request, id);
    await();
  }

  Ref<EngineOwner> owner;
  Ref<KesHttp> http;
};

// Another web server that none of us wrote, for the challenge that nginx doesn't know: a
// folder of files, of which those below /private/ are for "varlo" with the password "segreta".
struct Lighttpd {
  explicit Lighttpd(const std::filesystem::path& folder) : root(folder / "root") {
    const auto at = folder.string();
    std::filesystem::create_directories(root);
    TestPlatform::write(folder / "users", "varlo:segreta\n");
    process.startSomewhere("lighttpd", [&] {
      port = ServerProcess::freePort();
      TestPlatform::write(
          folder / "lighttpd.conf",
          "server.modules = (\"mod_auth\", \"mod_authn_file\")\n"
          "server.bind = \"127.0.0.1\"\nserver.port = " +
              std::to_string(port) + "\nserver.document-root = \"" + root.string() +
              "\"\nserver.upload-dirs = (\"" + at +
              "\")\nauth.backend = \"plain\"\nauth.backend.plain.userfile = \"" + at +
              "/users\"\nauth.require = (\"/private/\" => (\"method\" => \"digest\", "
              "\"realm\" => \"town\", \"require\" => \"valid-user\"))\n");
      return process.start({"/usr/sbin/lighttpd", "-D", "-f", at + "/lighttpd.conf"},
                           "server started");
    });
  }
  std::filesystem::path root;
  int port = 0;
  ServerProcess process;
};

}  // namespace

TEST_F(HttpTest, TellsSuccessForTheTwoHundredsAndAnErrorForAllElse) {
  RawServer server([](RawServer::Peer& peer) {
    const auto head = peer.readRequest();
    const auto status = head.substr(5, 3);
    const bool empty = status == "204";
    peer.send("HTTP/1.1 " + status + " X\r\n" +
              (empty ? "\r\n" : "Content-Length: 4\r\nX-Là: s\xec\r\n\r\ntest"));
  });
  const struct {
    std::int32_t id;
    const char *status, *event;
    const char* body;
  } cases[] = {{0, "200", "success 200 #0", "test"},
               {-1, "200", "success 200 #-1", "test"},
               {INT32_MAX, "204", "success 204 #2147483647", ""},
               {INT32_MIN, "299", "success 299 #-2147483648", "test"},
               {-7, "199", "error 199 #-7", ""},
               {INT32_MIN, "300", "error 300 #-2147483648", ""},
               {INT32_MAX, "404", "error 404 #2147483647", ""},
               {1, "500", "error 500 #1", ""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.event);
    get(server.url("/" + std::string(c.status)), c.id);
    EXPECT_EQ(owner->events, Trace{c.event});
    EXPECT_EQ(owner->body, c.body);
    if (*c.event == 'e') {
      EXPECT_EQ(owner->error, "unknown error");
    }
  }
  get(server.url("/200"));
  EXPECT_EQ(owner->last->ContentLength(), 4);
  EXPECT_EQ(owner->last->ContentType(), "");
  const KesMap headers = owner->last->GetHeaders();
  EXPECT_TRUE(headers.IsReadOnly());
  EXPECT_EQ(headers.Get("Content-Length").asText(), "4");
  EXPECT_EQ(headers.Get("X-Là").asText(), "sì") << "a header that is Latin-1";
  EXPECT_THROW(owner->last->GetString(), KesException) << "the body has gone after the event";

  // Exactly one: nothing more comes.
  phone.runUntil([] { return false; }, 50);
  EXPECT_EQ(owner->events.size(), 1u);
}

TEST_F(HttpTest, TellsTransportFailuresWithTheirTextAndTheStatusSoFar) {
  RawServer server([](RawServer::Peer& peer) {
    if (peer.readRequest().starts_with("GET /cut"))
      peer.send("HTTP/1.1 200 OK\r\nContent-Length: 40\r\n\r\ntest");
  });
  get(server.url("/cut"));
  EXPECT_EQ(owner->events, Trace{"error 200 #1"});
  EXPECT_NE(owner->error, "unknown error");
  EXPECT_NE(owner->error, "");
  get("nessun indirizzo");
  EXPECT_EQ(owner->events, Trace{"error 0 #1"});
  EXPECT_EQ(owner->error, "unsupported URL");
  EXPECT_EQ(KesHttpResponse().StatusCode(), 0);
  EXPECT_EQ(KesHttpResponse().GetString(), "");
}

TEST_F(HttpTest, ReadsABodyInTheCharsetThatIsAskedFor) {
  const std::string small = "citt\xe0 \x80";
  const struct {
    const char* charset;
    const char* text;   // null: no text in it
    const char* error;  // null: none
  } cases[] = {{"ISO-8859-1", "citt\u00e0 \u0080", nullptr},
               {"windows-1252", "citt\u00e0 \u20ac", nullptr},
               {"UTF8", nullptr, "Error decoding data as string."},
               {"no-such-charset", nullptr, "Invalid CharSet no-such-charset"}};
  for (const std::size_t padding : {0, 100000}) {  // in memory, in a file
    const auto body = small + std::string(padding, ' ');
    RawServer server(answering(answer(body)));
    owner->onSuccess = [&] {
      for (const auto& c : cases) {
        SCOPED_TRACE(c.charset);
        try {
          const auto text = owner->last->GetString2(c.charset).str();
          EXPECT_EQ(text, std::string(c.text ? c.text : "nothing") + std::string(padding, ' '));
        } catch (const KesException& e) {
          EXPECT_STREQ(e.what(), c.error ? c.error : "no error");
        }
      }
      auto stream = owner->last->GetInputStream();
      EXPECT_EQ(stream.readAll().size(), body.size());
      stream.Close();
      EXPECT_EQ(std::filesystem::is_empty(phone.folders().temporary), padding == 0);
    };
    get(server.url());
    EXPECT_EQ(owner->events, Trace{"success 200 #1"});
    EXPECT_THROW(owner->last->GetInputStream().readAll(), KesException) << "the body has gone";
  }
}

TEST_F(HttpTest, SendsARequestAsItStoodWhenItWasExecuted) {
  town::TownHost town;
  TestPlatform::write(phone.folders().assets + "/body.txt", "corpo");
  KesHttpRequest request;
  EXPECT_THROW(request.SetHeader("a", "b"), KesException);
  request.InitializePost(town.url() + "/_echo", File().DirAssets(), "BODY.txt");
  EXPECT_EQ(request.Timeout(), 30000);
  request.setTimeout(12345);
  EXPECT_EQ(request.Timeout(), 12345);
  request.SetContentType("a/b");
  request.SetContentType("text/plain");
  request.SetContentEncoding("UTF8");
  http->Execute(request, 1);
  request.SetContentType("too/late");
  await();
  EXPECT_EQ(owner->events, Trace{"success 200 #1"});
  for (const char* part :
       {R"("method":"POST")", R"("body":"corpo")", R"("Content-Type":"text/plain")",
        R"("Content-Encoding":"UTF8")", R"("Content-Length":"5")"})
    EXPECT_THAT(owner->body, HasSubstr(part));
  EXPECT_THROW(request.InitializePost(town.url(), File().DirAssets(), "none"), KesException);
}

TEST_F(HttpTest, MayEndInsideItsEventAndWhileOneWaitsForItsTurn) {
  town::TownHost town;
  owner->onSuccess = [&] { http = nullptr; };
  KesHttpRequest request;
  request.InitializeGet(town.url() + "/_bytes/10");
  for (int i = 0; i < 5; ++i) http->Execute(request, i);
  ASSERT_TRUE(phone.platform().mainQueue().waitForTask(30000));
  phone.drain();
  EXPECT_EQ(owner->events.size(), 1u);

  http = platform::makeShared<KesHttp>();
  http->Initialize(owner->bi(), "hc");
  http->Execute(request, 1);
  ASSERT_TRUE(phone.platform().mainQueue().waitForTask(30000));
  http = nullptr;
  phone.drain();
  EXPECT_EQ(owner->events.size(), 1u) << "an event came after the engine's end";
}

// Symptom: an error event that waited its turn kept the engine, and what it had under way,
// alive beyond its end.
TEST_F(HttpTest, EndsAtOnceWhileAnErrorEventWaits) {
  RawServer server([](RawServer::Peer& peer) { peer.awaitHangUp(); });
  KesHttpRequest request;
  request.InitializeGet(server.url());
  http->Execute(request, 1);
  request.InitializeGet("nessun indirizzo");
  http->Execute(request, 2);
  ASSERT_TRUE(phone.platform().mainQueue().waitForTask(30000));
  phone.platform().mainQueue().runOne();  // the engine learns of it and posts the event
  http->end();
  EXPECT_FALSE(http->IsInitialized());
  phone.drain();
  EXPECT_EQ(owner->events, Trace{"error 0 #2"}) << "what had been told, and nothing else";
}

TEST_F(HttpTest, AgreesWithAServerThatOthersWroteAndJudgesItsCertificate) {
  const auto folder = (phone.root() / "nginx").string(), alias = " alias " + folder + "/root/; }\n";
  Nginx nginx(folder,
              "location /dav/ { dav_methods PUT DELETE; create_full_put_path on; "
              "client_max_body_size 1m; }\n"
              "location /small/ { dav_methods PUT; client_max_body_size 1k; }\n"
              "location /moved { return 301 /file.txt; }\n"
              "location /away { return 307 https://$host:$arg_port/file.txt; }\n"
              "location /hangup { return 444; }\n"
              "location /gzip/ { gzip on; gzip_types text/plain;" +
                  alias + "location /ssi/ { ssi on; ssi_types text/plain;" + alias +
                  "location /private { auth_basic town; auth_basic_user_file " + folder +
                  "/users;" + alias);
  std::string text;
  while (text.size() < 200000) text += "La città di Varlo. ";
  TestPlatform::write(nginx.root() / "file.txt", text);
  TestPlatform::write(phone.root() / "nginx/users", "varlo:{PLAIN}segreta\n");
  get(nginx.tlsUrl() + "/file.txt");
  EXPECT_EQ(owner->events, Trace{"error 0 #1"});
  EXPECT_THAT(owner->error, HasSubstr("certificate"));
  http->InitializeAcceptAll(owner->bi(), "hc");

  for (const auto& base : {nginx.url(), nginx.tlsUrl()}) {
    SCOPED_TRACE(base);
    for (const char* path : {"/file.txt", "/gzip/file.txt", "/ssi/file.txt", "/moved"}) {
      SCOPED_TRACE(path);
      get(base + path);
      EXPECT_EQ(owner->events, Trace{"success 200 #1"});
      EXPECT_EQ(owner->body, text);
    }
    get(base + "/none");
    EXPECT_EQ(owner->events, Trace{"error 404 #1"});
    get(base + "/hangup");
    EXPECT_EQ(owner->events, Trace{"error 0 #1"});

    KesHttpRequest request;
    request.InitializeHead(base + "/file.txt");
    run(request);
    EXPECT_EQ(owner->events, Trace{"success 200 #1"});
    EXPECT_EQ(owner->body, "");
    EXPECT_EQ(owner->last->ContentLength(), static_cast<std::int64_t>(text.size()));

    TestPlatform::write(phone.folders().documents + "upload.bin", text);
    request.InitializePut(base + "/dav/up.bin", File().DirDocuments(), "upload.bin");
    run(request);
    EXPECT_EQ(owner->events, Trace{"success 201 #1"});
    EXPECT_EQ(TestPlatform::read(nginx.root() / "dav/up.bin"), text);
    request.InitializeDelete(base + "/dav/up.bin");
    run(request);
    EXPECT_EQ(owner->events, Trace{"success 204 #1"});
    request.InitializePut(base + "/small/up.bin", File().DirDocuments(), "upload.bin");
    run(request);
    EXPECT_THAT(owner->events[0], testing::StartsWith("error "));

    owner->events.clear();
    request.InitializeGet(base + "/private/file.txt");
    http->ExecuteCredentials(request, 1, "varlo", "segreta");
    await();
    EXPECT_EQ(owner->body, text);
  }
  get(nginx.url() + "/away?port=" + nginx.tlsUrl().substr(18));
  EXPECT_EQ(owner->events, Trace{"success 200 #1"}) << "from plain to TLS";
}

TEST_F(HttpTest, AnswersTheDigestChallengeOfAServerThatOthersWrote) {
  Lighttpd lighttpd(phone.root() / "lighttpd");
  TestPlatform::write(lighttpd.root / "private/file.txt", "per pochi");
  const auto url = "http://127.0.0.1:" + std::to_string(lighttpd.port) + "/private/file.txt";
  const struct {
    const char* query;  // credentials stay with the link
    const char *password, *event;
    const char* body;
  } cases[] = {{"?right", "segreta", "success 200 #1", "per pochi"},
               {"?wrong", "sbagliata", "error 401 #1", ""},
               {"?right", "segreta", "success 200 #1", "per pochi"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.query);
    owner->events.clear();
    KesHttpRequest request;
    request.InitializeGet(url + c.query);
    http->ExecuteCredentials(request, 1, "varlo", c.password);
    await();
    EXPECT_EQ(owner->events, Trace{c.event});
    EXPECT_EQ(owner->body, c.body);
  }
  get(url);
  EXPECT_EQ(owner->events, Trace{"error 401 #1"});
  EXPECT_EQ(owner->error, "unknown error");
}
