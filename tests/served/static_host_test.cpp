// The town as files, behind a web server that none of us wrote, set up as docs/town.md tells.
#include <gmock/gmock.h>

#include <chrono>

#include "checker/report.h"
#include "checker/town_check.h"
#include "tests/support/nginx.h"
#include "tests/support/server_process.h"
#include "tests/support/test_platform.h"
#include "townhost/town_export.h"

namespace {

using testing_support::TestPlatform;

// What stands inside the server block of docs/town.md.
constexpr const char* kLocations = R"(
    charset utf-8;
    etag on;
    gzip on;
    gzip_types application/json text/html text/plain;
    gzip_min_length 512;
    types { application/json json; text/html html; image/png png; image/jpeg jpg; }
    location / { add_header Cache-Control "no-cache"; }
)";

class StaticHost : public testing::Test {
 protected:
  StaticHost() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    town::TownExport files;
    files.now = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    files.url = nginx_.url();
    EXPECT_GT(town::exportTown(nginx_.root(), files), 40);
  }
  bool run(std::vector<std::string> command) {
    return ServerProcess::run(std::move(command), phone_.root().string());
  }

  TestPlatform phone_;
  Nginx nginx_{phone_.root() / "nginx", kLocations};
};

TEST_F(StaticHost, TheWholeTourIsMadeAgainstIt) {
  EXPECT_TRUE(run({VARLO_SIM, "--screen", "headless", "--tour", (phone_.root() / "tour").string(),
                   "--town", nginx_.url()}));
}

TEST_F(StaticHost, ItsDocumentsAreSoundServedAndAsFiles) {
  const check::TownOptions options{
      std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now()), true};
  for (const std::string& town : {nginx_.url(), nginx_.root().string()}) {
    const auto source = check::openTown(town);
    const auto report = check::checkTown(*source, options);
    EXPECT_TRUE(report.findings.empty()) << town << "\n"
                                         << check::reportText(report, check::Language::English);
  }
}

// What a phone has is not sent again, and what is sent is small.
TEST_F(StaticHost, SendsLittleAndOnlyWhatIsNew) {
  const auto path = "/InfoVarlo/farmacie/master/turni.json";
  const auto out = (phone_.root() / "answer").string();
  ASSERT_TRUE(run({"/bin/sh", "-c",
                   "tag=$(curl -sI \"$1\" | tr -d '\\r' | sed -n 's/^ETag: //p') && "
                   "curl -s -o /dev/null -w '%{http_code} ' -H \"If-None-Match: $tag\" \"$1\" >$2 "
                   "&& curl -s -o /dev/null -w '%{size_download}' --compressed \"$1\" >>$2",
                   "sh", nginx_.url() + path, out}));
  const auto answer = TestPlatform::read(out);
  EXPECT_THAT(answer, testing::StartsWith("304 "));
  const auto whole = std::filesystem::file_size(nginx_.root() / (path + 1));
  EXPECT_LT(std::stoul(answer.substr(4)), whole / 5);
}

}  // namespace
