// From the tap on " Farmacia di turno" to the three rows in the view tree, on loopback,
// beside the same two GETs by bare libcurl. Prints, in milliseconds, the medians of both.
#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "app/shell/main.h"
#include "platform/ui/reading/finder.h"
#include "simulator/phone.h"
#include "simulator/player.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

size_t keep(char* data, size_t size, size_t count, void* body) {
  static_cast<std::string*>(body)->append(data, size * count);
  return size * count;
}

void get(CURL* curl, const std::string& url) {
  std::string body;
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, keep);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
  if (curl_easy_perform(curl) != CURLE_OK || body.empty())
    throw std::runtime_error("no answer from " + url);
}

}  // namespace

int main() {
  sim::Options options;
  options.screen = sim::Options::Screen::Headless;
  options.now = sim::parseIsoTime("2026-11-21T20:00", "Europe/Rome");
  sim::Phone phone(options);
  phone.start();
  sim::Player player(phone, std::cout);
  player.waitIdle();
  auto& main = varlo::kes_main::instance();
  auto& queue = platform::current().mainQueue();

  CURL* curl = curl_easy_init();
  std::vector<double> ours, bare;
  for (int i = 0; i < 41; ++i) {
    const auto tap = Clock::now();
    main._lstmenu_itemclick(9, 4);
    while (main._clv->_getsize() < 3) {
      if (!queue.runOne() && !queue.waitForTask(5000)) return 1;
      if (millisecondsSince(tap) > 10000) return 1;
    }
    ours.push_back(millisecondsSince(tap));
    player.waitIdle();

    const auto start = Clock::now();
    get(curl, phone.townUrl() + "/InfoVarlo/farmacie/master/farmacie.json");
    get(curl, phone.townUrl() + "/InfoVarlo/farmacie/master/turni.json");
    bare.push_back(millisecondsSince(start));
  }
  curl_easy_cleanup(curl);
  std::printf("%.3f %.3f\n", median(ours), median(bare));
  return 0;
}
