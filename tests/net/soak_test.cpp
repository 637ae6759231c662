// Ten thousand jobs against a town where everything goes wrong now and then.
#include <map>

#include "net_fixture.h"
#include "townhost/town_host.h"

namespace {

#ifdef __SANITIZE_THREAD__
constexpr int kJobs = 4000;  // ten times as slow, and races show long before
#else
constexpr int kJobs = 10000;
#endif
constexpr int kInFlight = 64;

class Crowd : public KesClass {
 public:
  void _initialize(const Ref<Kes>&, std::string url) {
    initializeClassModule();
    base = std::move(url);
  }
  static void describe(ClassBuilder<Crowd>& c) {
    c.name("kes_crowd");
    c.sub<&Crowd::_jobdone>("jobdone");
  }
  // A job that was told twice, or that nobody waits for.
  void _jobdone(const Ref<kes_httpjob>&) { ++unclaimed; }

  Resumable<> run() {
    const char* paths[] = {"/InfoVarlo/farmacie/master/farmacie.json",
                           "/InfoVarlo/infocitta/master/menu.json",
                           "/_bytes/200000",
                           "/_gzip",
                           "/_redirect/2",
                           "/_auth/digest"};
    while (started < kJobs) {
      const int i = started++;
      auto job = make<kes_httpjob>(bi(), std::to_string(i), self());
      const Text link = base + paths[i % 6];
      if (i % 6 == 5) job->_username = "varlo", job->_password = "segreta";
      if (i % 4 == 3)
        job->_poststring(link, "corpo");
      else
        job->_download(link);
      if (i % 10 == 9) job->_getrequest().setTimeout(15);
      job = co_await waitFor<kes_httpjob>("jobdone:", job);
      ++told[i];
      if (job->_success)
        bytes += job->_getinputstream().readAll().size();
      else
        // By kind: texts that count bytes are one kind.
        ++failures[job->_errormessage.str().substr(0, 20)];
    }
    ++finished;
  }

  std::string base;
  int started = 0, finished = 0, unclaimed = 0;
  std::size_t bytes = 0;
  std::map<int, int> told;
  std::map<std::string, int> failures;
};

std::size_t openFiles() {
  std::size_t n = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    ++n;
  return n;
}

}  // namespace

TEST_F(NetTest, ThousandsOfJobsEndOnceEachWhateverGoesWrong) {
  ClassRegistry::instance().add<Crowd>();
  const auto filesBefore = openFiles();
  {
    town::TownHost town;
    town::FaultMix mix;
    mix.seed = 20171115;
    mix.longestDelay = 25;
    for (auto kind :
         {town::Fault::Kind::drop, town::Fault::Kind::truncate, town::Fault::Kind::status,
          town::Fault::Kind::wrongLength, town::Fault::Kind::garbage, town::Fault::Kind::shape,
          town::Fault::Kind::missingField, town::Fault::Kind::redirect})
      mix.rate(kind) = 0.03;
    mix.rate(town::Fault::Kind::delay) = 0.05;
    town.faults().mix("/", mix);

    auto crowd = make<Crowd>(Ref<Kes>(), town.url());
    for (int i = 0; i < kInFlight; ++i) crowd->run();
    int most = 0;
    // As long as it gets on; how fast is the machine's affair.
    for (int before = -1; crowd->finished < kInFlight;) {
      ASSERT_GT(crowd->started, before) << "no job ended for half a minute";
      before = crowd->started;
      phone.runUntil(
          [&] {
            most = std::max(most, service().jobsInFlight());
            return crowd->finished == kInFlight || crowd->started > before + 1000;
          },
          30000);
    }
    EXPECT_EQ(most, kInFlight);
    EXPECT_EQ(crowd->unclaimed, 0);
    ASSERT_EQ(crowd->told.size(), static_cast<std::size_t>(kJobs));
    for (const auto& [job, times] : crowd->told) ASSERT_EQ(times, 1) << "job " << job;
    EXPECT_EQ(service().jobsInFlight(), 0);
    EXPECT_EQ(service()._taskcounter, kJobs);
    EXPECT_EQ(faults, std::vector<std::string>{});
    EXPECT_GT(crowd->bytes, 0u);
    // All the ways to fail took place.
    EXPECT_GT(crowd->failures["unknown error"], 0);
    EXPECT_GT(crowd->failures["The request timed ou"], 0);
    EXPECT_GE(crowd->failures.size(), 4u) << testing::PrintToString(crowd->failures);
    service().initializeModule();  // the kept connections go with the engine
  }
  EXPECT_EQ(openFiles(), filesBefore);
  EXPECT_TRUE(std::filesystem::is_empty(phone.folders().temporary));
}
