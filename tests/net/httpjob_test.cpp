#include "runtime/net/httpjob.h"

#include <future>

#include "net_fixture.h"
#include "runtime/data/bytes/byte_converter.h"
#include "townhost/town_host.h"

namespace {

// A page that runs jobs as the app's features do.
class Feature : public KesClass {
 public:
  void _initialize(const Ref<Kes>&) { initializeClassModule(); }
  static void describe(ClassBuilder<Feature>& c) {
    c.name("kes_feature");
    c.sub<&Feature::_jobdone>("jobdone");
  }
  void _jobdone(const Ref<kes_httpjob>& job) {
    trace.push_back("unclaimed " + job->_jobname.str());
  }

  Ref<kes_httpjob> job(const Text& name = "") { return make<kes_httpjob>(bi(), name, self()); }
  Resumable<> await(Ref<kes_httpjob> job) {
    ++waiting;
    auto done = co_await waitFor<kes_httpjob>("jobdone:", job);
    --waiting;
    if (done->_tag.isText()) {
      try {
        bitmap = done->_getbitmap();
        resized = done->_getbitmapresize(40, 30, true);
      } catch (const KesException& e) {
        trace.push_back(e.what());
      }
      co_return;
    }
    body = done->_getstring().str();
    trace.push_back((done->_success ? "ok " : "failed ") + done->_jobname.str());
    done->_release();
  }
  Resumable<> download(Text link) {
    auto job = this->job("one");
    job->_download(link);
    job->_getrequest().SetHeader("User-Agent", "InfoVARLO");
    trace.push_back("queued");
    job = co_await waitFor<kes_httpjob>("jobdone:", job);
    trace.push_back("read " + std::to_string(job->_getstring().Length()));
    co_await sleep(0);
    try {
      job->_getstring();
    } catch (const KesException&) {
      trace.push_back("gone");
    }
  }

  Trace trace;
  std::string body;
  KesBitmap bitmap, resized;
  int waiting = 0;
};

class JobTest : public NetTest {
 protected:
  JobTest() {
    ClassRegistry::instance().add<Feature>();
    feature = make<Feature>(Ref<Kes>());
  }
  // Waits for a job whose verb was called, and gives what came.
  std::string body(const Ref<kes_httpjob>& job) {
    feature->await(job);
    EXPECT_TRUE(phone.runUntil([&] { return feature->waiting == 0; }, 30000));
    return feature->body;
  }
  // The value of a key of the echo's flat JSON.
  static std::string field(const std::string& echo, const std::string& key) {
    const auto at = echo.find("\"" + key + "\":\"");
    if (at == std::string::npos) return "(none)";
    const auto begin = at + key.size() + 4;
    return echo.substr(begin, echo.find('"', begin) - begin);
  }
  static std::string hex(std::string_view bytes) {
    return KesByteConverter::HexFromBytes(bytesOf(bytes)).ToLowerCase().str();
  }

  town::TownHost town;
  Ref<Feature> feature;
};

}  // namespace

TEST_F(JobTest, GoesFromTheVerbToTheFeatureInTheGivenOrder) {
  const auto text = town.url() + "/_echo";
  feature->download(text);
  EXPECT_EQ(service().jobsInFlight(), 0) << "a verb only queues the submission";
  EXPECT_EQ(service()._taskcounter, 0);
  feature->trace.push_back("returned");
  phone.platform().mainQueue().runOne();
  EXPECT_EQ(service().jobsInFlight(), 1);
  EXPECT_EQ(service()._taskcounter, 1);
  ASSERT_TRUE(phone.runUntil([&] { return feature->trace.size() >= 4; }));
  EXPECT_EQ(service().jobsInFlight(), 0);
  EXPECT_THAT(feature->trace,
              testing::ElementsAre("queued", "returned", testing::StartsWith("read "), "gone"));
  EXPECT_EQ(town.requests().all().back().userAgent, "InfoVARLO") << "headers set after the verb";
  EXPECT_EQ(faults, Trace{});
  // The sub has ended and nothing holds the job any more.
  EXPECT_TRUE(phone.logged("Class (kes_httpjob) instance released."));
}

TEST_F(JobTest, TellsAFailedJobsReasonAndLogsTheStatus) {
  const struct {
    std::string link;
    const char *message, *line;
  } cases[] = {
      {town.url() + "/_status/404", "unknown error",
       "ResponseError: unknown error, status code: 404"},
      {"non un indirizzo", "unsupported URL", "ResponseError: unsupported URL, status code: 0"},
  };
  std::int32_t id = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.link);
    phone.clearLog();
    auto job = feature->job();
    job->_download(c.link);
    EXPECT_EQ(body(job), "");
    EXPECT_EQ(service()._taskcounter, ++id);
    EXPECT_FALSE(job->_success);
    EXPECT_EQ(job->_errormessage, c.message);
    EXPECT_FALSE(job->_res);
    EXPECT_EQ(job->_getstring(), "");
    EXPECT_FALSE(job->_getinputstream().IsInitialized());
    EXPECT_EQ(phone.lines(), Trace{c.line});
  }
}

TEST_F(JobTest, TellsJobsOfOneTargetApartByTheSender) {
  // The second is answered first.
  std::promise<void> go;
  auto gone = go.get_future().share();
  RawServer slow([&](RawServer::Peer& peer) {
    peer.readRequest();
    gone.wait();
    peer.send(answer("ok"));
  });
  auto first = feature->job("first"), second = feature->job("second");
  first->_download(slow.url());
  feature->await(first);
  second->_download(town.url() + "/_echo");
  ASSERT_TRUE(phone.runUntil([&] { return !feature->trace.empty(); }));
  go.set_value();
  ASSERT_TRUE(phone.runUntil([&] { return feature->waiting == 0; }));
  EXPECT_EQ(feature->trace, (Trace{"unclaimed second", "ok first"}));
}

TEST_F(JobTest, KeepsAJobInFlightAlive) {
  {
    auto job = feature->job("dropped");
    job->_download(town.url() + "/_echo");
  }
  ASSERT_TRUE(phone.runUntil([&] { return !feature->trace.empty(); }));
  EXPECT_EQ(feature->trace, Trace{"unclaimed dropped"});
  EXPECT_TRUE(phone.logged("Class (kes_httpjob) instance released."));

  auto lost = make<kes_httpjob>(feature->bi(), "", Value("no component"));
  lost->_download(town.url() + "/_echo");
  ASSERT_TRUE(phone.runUntil([&] { return !faults.empty(); }));
  EXPECT_EQ(faults, Trace{"Invalid component: no component"});
  EXPECT_EQ(service().jobsInFlight(), 0);
}

TEST_F(JobTest, MayBeUsedAgainAfterItWasInitialisedAgain) {
  auto job = feature->job("one");
  job->_download(town.url() + "/_status/404");
  body(job);
  job->_initialize(feature->bi(), "two", feature->self());
  EXPECT_EQ(job->_errormessage, "");
  EXPECT_EQ(job->_res->GetString(), "") << "before any answer";
  job->_download(town.url() + "/_bytes/3");
  body(job);
  EXPECT_TRUE(job->_success);
  EXPECT_EQ(feature->trace, (Trace{"failed one", "ok two"}));
}

TEST_F(JobTest, SendsEachVerbWithItsBody) {
  TestPlatform::write(phone.folders().documents + "doc.bin", std::string("a\0\xff", 3));
  const Text echo = town.url() + "/_echo";
  const struct {
    const char* method;
    std::function<Text(kes_httpjob&)> verb;
    std::string body;
  } cases[] = {
      {"GET", [&](auto& j) { return j._download(echo); }, ""},
      {"DELETE", [&](auto& j) { return j._delete(echo); }, ""},
      {"POST", [&](auto& j) { return j._poststring(echo, "città"); }, "città"},
      {"POST", [&](auto& j) { return j._postbytes(echo, bytesOf("x\ny")); }, "x\ny"},
      {"POST", [&](auto& j) { return j._postfile(echo, File().DirDocuments(), "doc.bin"); },
       std::string("a\0\xff", 3)},
      {"PUT", [&](auto& j) { return j._putstring(echo, "😀"); }, "😀"},
      {"PUT", [&](auto& j) { return j._putbytes(echo, bytesOf("")); }, ""},
      {"PATCH", [&](auto& j) { return j._patchstring(echo, "è"); }, "è"},
      {"PATCH", [&](auto& j) { return j._patchbytes(echo, bytesOf("abc")); }, "abc"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.method) + " " + c.body);
    auto job = feature->job();
    EXPECT_EQ(c.verb(*job), "");
    const auto seen = body(job);
    EXPECT_TRUE(job->_success) << job->_errormessage.str();
    EXPECT_EQ(field(seen, "method"), c.method);
    EXPECT_EQ(field(seen, "bodyHex"), hex(c.body));
  }
  auto head = feature->job();
  head->_head(town.url() + "/_bytes/7");
  EXPECT_EQ(body(head), "");
  EXPECT_EQ(head->_res->ContentLength(), 7);
  TestPlatform::write(phone.folders().library + "outside", "secret");
  for (const char* name : {"none", "../library/outside"})
    EXPECT_THROW(feature->job()->_postfile(echo, File().DirDocuments(), name), KesException)
        << name;
}

TEST_F(JobTest, GivesABodyAsABitmap) {
  KesBitmap::resizer = [](const EncodedImage& image, double width, double height, bool keepRatio) {
    EXPECT_EQ(image.format(), "PNG");
    EXPECT_TRUE(width == 40 && height == 30 && keepRatio);
    return EncodedImage::Drawn{{'B', 'M'}};
  };
  const std::string png = "\x89PNG\r\n\x1a\nrest";
  town.documents().addFixed("/logo.png", "image/png", png);
  for (const auto& [path, isImage] : {std::pair{"/logo.png", true}, {"/_bytes/20", false}}) {
    SCOPED_TRACE(path);
    auto job = feature->job();
    feature->bitmap = KesBitmap();
    job->_tag = "bitmap";
    job->_download(town.url() + path);
    body(job);
    EXPECT_TRUE(job->_success);
    EXPECT_EQ(feature->bitmap.IsInitialized(), isImage);
    EXPECT_EQ(feature->trace, isImage ? Trace{} : Trace{"Error loading image."});
    if (isImage) {
      EXPECT_EQ(feature->resized.native()->format(), "BMP");
    }
  }
  KesBitmap::resizer = nullptr;
  EXPECT_THROW(feature->resized.Resize(1, 1, false), KesException) << "nobody can draw it";
}

TEST_F(JobTest, UsesCredentialsOnlyWhenBothPartsAreGiven) {
  const struct {
    const char *user, *password;
    bool success;
    std::size_t requests;
  } cases[] = {{"varlo", "segreta", true, 2},
               {"varlo", "", false, 1},
               {"", "segreta", false, 1},
               {"varlo", "altra", false, 2}};
  for (const auto& c : cases) {
    for (const std::string path :
         {"/_auth/basic", "/_auth/digest", "/_redirect/1?to=/_auth/digest"}) {
      SCOPED_TRACE(path + " " + c.user + ":" + c.password);
      const std::size_t redirects = path.starts_with("/_redirect");
      town.requests().clear();
      auto job = feature->job();
      job->_username = c.user;
      job->_password = c.password;
      // A link of its own: credentials stay with the first link for as long as the engine lives.
      job->_download(town.url() + path + "/" + c.user + c.password);
      body(job);
      EXPECT_EQ(job->_success, c.success);
      EXPECT_EQ(town.requests().all().size(), redirects + c.requests);
    }
  }
}

TEST_F(JobTest, EscapesTheQuery) {
  const struct {
    std::vector<Value> pairs;
    const char* query;
  } cases[] = {
      {{}, ""},
      {{"a", "b c&d"}, "?a=b%20c%26d"},
      {{"a", "1", "b", 2}, "?a=1&b=2"},
      {{"via", "città?", "k&", ""}, "?via=citt%C3%A0%3F&k%26="},
  };
  for (const auto& c : cases) {
    auto job = feature->job();
    EXPECT_EQ(job->_escapelink("http://h/p", texts(c.pairs)), Text("http://h/p") + Text(c.query));
  }
  EXPECT_EQ(feature->job()->_escapelink("http://h/?x=y", texts({"a", "b"})), "http://h/?x=y?a=b");
  auto job = feature->job();
  job->_download2(town.url() + "/_echo", texts({"a", "b c&d"}));
  EXPECT_EQ(field(body(job), "target"), "/_echo?a=b%20c%26d");
  auto gone = feature->job();
  gone->_delete2(town.url() + "/_echo", texts({"a", "b"}));
  EXPECT_EQ(field(body(gone), "target"), "/_echo?a=b");
}

TEST_F(JobTest, PostsFormsToTheByte) {
  TestPlatform::write(phone.folders().documents + "a.bin", "1\n2\r\n");
  TestPlatform::write(phone.folders().documents + "empty", "");
  const auto file = [&](const char* key, const char* name, const char* type) {
    auto f = platform::makeShared<_multipartfiledata>();
    f->Initialize();
    f->Dir = File().DirDocuments();
    f->FileName = name;
    f->KeyName = key;
    f->ContentType = type;
    return Value(f);
  };
  const std::string line = "-----------------------------1461124740692";
  KesMap one = KesCommon::createMap({"nota", "riga 1\nriga \"2\""});
  KesMap two = KesCommon::createMap({"n", 7, "q", "è"});
  const struct {
    const char* what;
    KesMap fields;
    KesList files;
    std::string body;
  } cases[] = {
      {"nothing", {}, {}, line + "--\r\n"},
      {"one file alone",
       {},
       KesList::of({file("k", "a.bin", "a/b")}),
       line +
           "\r\nContent-Disposition: form-data; name=\"k\"; filename=\"a.bin\"\r\nContent-Type: "
           "a/b\r\n\r\n1\n2\r\n\r\n" +
           line + "--\r\n"},
      {"a field with a line feed",
       one,
       {},
       line + "\r\nContent-Disposition: form-data; name=\"nota\"\r\n\r\nriga 1\r\nriga \"2\"\r\n" +
           line + "--\r\n"},
      {"fields before files", two, KesList::of({file("f", "empty", "x/y")}),
       line + "\r\nContent-Disposition: form-data; name=\"n\"\r\n\r\n7\r\n" + line +
           "\r\nContent-Disposition: form-data; name=\"q\"\r\n\r\nè\r\n" + line +
           "\r\nContent-Disposition: form-data; name=\"f\"; filename=\"empty\"\r\nContent-Type: "
           "x/y\r\n\r\n\r\n" +
           line + "--\r\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto job = feature->job();
    job->_postmultipart(town.url() + "/_echo", c.fields, c.files);
    const auto seen = body(job);
    EXPECT_EQ(field(seen, "bodyHex"), hex(c.body));
    EXPECT_EQ(field(seen, "Content-Type"),
              "multipart/form-data; boundary=---------------------------1461124740692");
    EXPECT_EQ(field(seen, "Content-Encoding"), "UTF8");
    EXPECT_EQ(field(seen, "method"), "POST");
  }
  const auto record = file("k", "a.bin", "a/b").as<_multipartfiledata>();
  EXPECT_THAT(record->description().str(), HasSubstr("a.bin"));
}
