// A thousand small GETs, sixteen in flight, on loopback: as jobs of the app beside bare
// libcurl with one multi handle. Prints the medians of both, in milliseconds.
#include <curl/curl.h>

#include <algorithm>
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

constexpr int kRequests = 1000, kInFlight = 16, kRounds = 15;

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

size_t keep(char* data, size_t size, size_t count, void* body) {
  static_cast<std::string*>(body)->append(data, size * count);
  return size * count;
}

double asMulti(const std::string& url) {
  const auto start = std::chrono::steady_clock::now();
  CURLM* multi = curl_multi_init();
  std::vector<std::string> bodies(kInFlight);
  int begun = 0, done = 0;
  const auto begin = [&](CURL* easy, std::string& body) {
    body.clear();
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, keep);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &body);
    curl_easy_setopt(easy, CURLOPT_PRIVATE, &body);
    curl_multi_add_handle(multi, easy);
    ++begun;
  };
  for (auto& body : bodies) begin(curl_easy_init(), body);
  while (done < kRequests) {
    int running = 0, queued = 0;
    curl_multi_perform(multi, &running);
    while (CURLMsg* message = curl_multi_info_read(multi, &queued)) {
      if (message->msg != CURLMSG_DONE) continue;
      CURL* easy = message->easy_handle;
      if (message->data.result != CURLE_OK) throw std::runtime_error("a GET failed");
      ++done;
      char* body = nullptr;
      curl_easy_getinfo(easy, CURLINFO_PRIVATE, &body);
      curl_multi_remove_handle(multi, easy);
      if (begun < kRequests)
        begin(easy, *reinterpret_cast<std::string*>(body));
      else
        curl_easy_cleanup(easy);
    }
    if (done < kRequests) curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
  }
  curl_multi_cleanup(multi);
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

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
  std::vector<double> jobs, multi;
  for (int i = 0; i < kRounds; ++i) {
    jobs.push_back(asJobs(client, Text(url)));
    multi.push_back(asMulti(url));
  }
  std::printf("%.2f %.2f\n", median(jobs), median(multi));
  kes_httputils2service::instance()._process_globals();
  return 0;
}
