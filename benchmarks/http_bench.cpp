// A thousand small GETs, sixteen in flight, on loopback: as jobs of the app beside bare
// libcurl with one multi handle. Both send the same requests, keep their connections and
// read every body. The rounds of the two take turns. Prints the rounds as they came, ours and
// then libcurl's, in milliseconds.
#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "runtime/net/httpjob.h"
#include "runtime/net/register_net.h"
#include "townhost/town_host.h"

namespace {

using namespace kes;

constexpr int kRequests = 1000, kInFlight = 16, kRounds = 31;

class Client final : public KesClass {
 public:
  static void describe(ClassBuilder<Client>& c) {
    c.name("kes_bench_client");
    c.sub<&Client::_jobdone>("jobdone");
  }
  void _initialize() { initializeClassModule(); }
  void _jobdone(Value) {}
  Resumable<> fetch(Text url) {
    while (left > 0) {
      --left;
      auto job = make<kes_httpjob>(bi(), "", self());
      job->_download(url);
      job = co_await waitFor<kes_httpjob>("jobdone:", job);
      if (!job->_success || job->_getstring().empty()) throw KesException("a GET failed");
      ++done;
    }
  }
  int left = 0, done = 0;
};

double asJobs(const Ref<Client>& client, const Text& url) {
  const auto start = std::chrono::steady_clock::now();
  client->left = kRequests;
  client->done = 0;
  for (int i = 0; i < kInFlight; ++i) client->fetch(url);
  auto& queue = platform::current().mainQueue();
  while (client->done < kRequests)
    if (!queue.runOne() && !queue.waitForTask(5000)) throw std::runtime_error("no answer");
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

// libcurl as its manual says to use it. Like our session it keeps its handles and their
// connections from one round to the next.
class Multi {
 public:
  explicit Multi(std::string url) : url_(std::move(url)) {
    for (auto& transfer : transfers_) transfer.easy = curl_easy_init();
  }
  ~Multi() {
    for (auto& transfer : transfers_) curl_easy_cleanup(transfer.easy);
    curl_multi_cleanup(multi_);
  }
  Multi(const Multi&) = delete;
  Multi& operator=(const Multi&) = delete;

  double run() {
    const auto start = std::chrono::steady_clock::now();
    int begun = 0, done = 0;
    for (auto& transfer : transfers_) begin(transfer), ++begun;
    while (done < kRequests) {
      int running = 0, queued = 0;
      curl_multi_perform(multi_, &running);
      while (CURLMsg* message = curl_multi_info_read(multi_, &queued)) {
        if (message->msg != CURLMSG_DONE) continue;
        CURL* easy = message->easy_handle;
        char* transfer = nullptr;
        curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
        if (message->data.result != CURLE_OK || reinterpret_cast<Transfer*>(transfer)->body.empty())
          throw std::runtime_error("a GET failed");
        ++done;
        curl_multi_remove_handle(multi_, easy);
        if (begun < kRequests) begin(*reinterpret_cast<Transfer*>(transfer)), ++begun;
      }
      if (done < kRequests) curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
    }
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
  }

 private:
  struct Transfer {
    CURL* easy = nullptr;
    std::string body;
  };

  static size_t keep(char* data, size_t size, size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
  }
  void begin(Transfer& transfer) {
    transfer.body.clear();
    curl_easy_setopt(transfer.easy, CURLOPT_URL, url_.c_str());
    curl_easy_setopt(transfer.easy, CURLOPT_WRITEFUNCTION, keep);
    curl_easy_setopt(transfer.easy, CURLOPT_WRITEDATA, &transfer.body);
    curl_easy_setopt(transfer.easy, CURLOPT_PRIVATE, &transfer);
    // The same request on the wire.
    curl_easy_setopt(transfer.easy, CURLOPT_USERAGENT, "Runtime/1.0");
    curl_easy_setopt(transfer.easy, CURLOPT_ACCEPT_ENCODING, "");
    curl_multi_add_handle(multi_, transfer.easy);
  }

  const std::string url_;
  CURLM* multi_ = curl_multi_init();
  std::array<Transfer, kInFlight> transfers_;
};

}  // namespace

int main() {
  platform::setLogSink([](std::string_view) {});
  platform::SystemClock clock;
  const std::string temporary = std::filesystem::temp_directory_path().string();
  platform::Platform phone(clock, {temporary, temporary + "/", temporary + "/", temporary});
  platform::PlatformScope scope(phone);
  registerNet();
  ClassRegistry::instance().add<Client>();
  town::TownHost host;
  const std::string url = host.url() + "/InfoVarlo/infocitta/master/menu.json";
  auto client = make<Client>();
  client->_initialize();
  kes_httputils2service::instance().initializeModule();
  Multi multi(url);
  std::vector<double> jobTimes, multiTimes;
  for (int i = 0; i < kRounds; ++i) {
    jobTimes.push_back(asJobs(client, Text(url)));
    multiTimes.push_back(multi.run());
  }
  for (int i = 0; i < kRounds; ++i)
    std::printf("%.2f %.2f\n", jobTimes[static_cast<std::size_t>(i)],
                multiTimes[static_cast<std::size_t>(i)]);
  kes_httputils2service::instance()._process_globals();
  return 0;
}
