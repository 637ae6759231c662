// From the tap on a row of the menu to the last row in the view tree, on loopback, beside
// the same GETs by bare libcurl, each document parsed by bare RapidJSON. Prints a line a
// feature: its menu value and, in milliseconds, the medians of both and our 9th decile.
#include <curl/curl.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "app/shell/main.h"
#include "platform/base/platform.h"
#include "simulator/phone.h"
#include "simulator/player.h"
#include "townhost/town_host.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kTimes = 31;
// Those that show a list on the home page.
constexpr int kFeatures[] = {50, 51, 55, 30, 31, 32, 6, 60, 4, 2, 5, 3};

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double decile(std::vector<double> v, std::size_t tenths) {
  std::sort(v.begin(), v.end());
  return v[std::min(v.size() - 1, v.size() * tenths / 10)];
}

size_t keep(char* data, size_t size, size_t count, void* body) {
  static_cast<std::string*>(body)->append(data, size * count);
  return size * count;
}

// What the feature does at the least: the documents, and what stands in them.
void fetchAndParse(CURL* curl, const std::string& url) {
  std::string body;
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, keep);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
  if (curl_easy_perform(curl) != CURLE_OK || body.empty())
    throw std::runtime_error("no answer from " + url);
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag>(body.data(), body.size());
  if (document.HasParseError()) throw std::runtime_error("no JSON from " + url);
}

bool isDocument(const town::LoggedRequest& request) {
  return !request.path.starts_with("/upload/") && request.path.find(".png") == std::string::npos &&
         request.path.find(".jpg") == std::string::npos;
}

struct Bench {
  varlo::kes_main& app = varlo::kes_main::instance();
  sim::Player& player;
  town::TownHost& host;
  CURL* curl;

  // Until the list has so many rows.
  double tapToRows(int feature, std::int32_t rows) {
    auto& queue = platform::current().mainQueue();
    const auto tap = Clock::now();
    app._lstmenu_itemclick(0, feature);
    while (app._clv->_getsize() < rows) {
      if (!queue.runOne() && !queue.waitForTask(5000)) throw std::runtime_error("no rows came");
      if (millisecondsSince(tap) > 10000) throw std::runtime_error("the rows took too long");
    }
    return millisecondsSince(tap);
  }

  void run(int feature) {
    host.requests().clear();
    app._lstmenu_itemclick(0, feature);
    player.waitIdle();
    const auto rows = app._clv->_getsize();
    std::vector<std::string> documents;
    for (const auto& request : host.requests().all())
      if (isDocument(request)) documents.push_back(host.url() + request.path);
    if (rows == 0 || documents.empty()) throw std::runtime_error("nothing to measure");

    std::vector<double> ours, bare;
    for (int i = 0; i < kTimes; ++i) {
      ours.push_back(tapToRows(feature, rows));
      player.waitIdle();
      const auto start = Clock::now();
      for (const auto& url : documents) fetchAndParse(curl, url);
      bare.push_back(millisecondsSince(start));
    }
    std::printf("%d %d %.3f %.3f %.3f\n", feature, rows, decile(ours, 5), decile(bare, 5),
                decile(ours, 9));
    std::fflush(stdout);
  }
};

}  // namespace

int main() {
  const auto now = sim::parseIsoTime("2026-11-21T20:00", "Europe/Rome");
  town::TownHost::Options town;
  town.now = [now] { return now; };
  town::TownHost host(std::move(town));
  sim::Options options;
  options.screen = sim::Options::Screen::Headless;
  options.now = now;
  options.town = host.url();
  sim::Phone phone(options);
  phone.start();
  sim::Player player(phone, std::cerr);
  player.waitIdle();

  CURL* curl = curl_easy_init();
  Bench bench{.player = player, .host = host, .curl = curl};
  for (const int feature : kFeatures) bench.run(feature);
  curl_easy_cleanup(curl);
  return 0;
}
