// From the tap on a map of 5,000 markers to their pins on the screen, beside a bare page of
// the same library and plug-in that fetches the same document in the same engine; then how
// many frames each shows in two seconds of panning. Prints: ours and the bare page's
// median in milliseconds, ours and the bare page's median frames a second.
#include <QQuickWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

#include "app/kit/deployment.h"
#include "app/mappe/modmaps.h"
#include "app/shell/branding.h"
#include "app/shell/main.h"
#include "app/shell/register_app.h"
#include "platform/base/assets_folder.h"
#include "platform/qt/qt_hand.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_screen.h"
#include "platform/ui/controls/web_view.h"
#include "runtime/net/httputils2service.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/app/services.h"
#include "townhost/map/map_documents.h"
#include "townhost/town_host.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kRounds = 7, kMapsRow = 60;
constexpr std::size_t kMarkers = 5000;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

std::string fileText(const std::string& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  if (text.str().empty()) throw std::runtime_error("cannot read " + path);
  return text.str();
}

// The page that anybody would write: no app around it.
std::string barePage() {
  return R"(<!DOCTYPE html><html><head><meta charset="utf-8">
<link rel="stylesheet" href="/bare/leaflet.css"><link rel="stylesheet" href="/bare/cluster.css">
<style>html, body, #map { height: 100%; margin: 0 }</style></head><body><div id="map"></div>
<script src="/bare/leaflet.js"></script><script src="/bare/cluster.js"></script><script>
const map = L.map("map", {fadeAnimation: false}).setView([45.2378, 10.0425], 15);
L.tileLayer("/tiles/{z}/{x}/{y}{r}.png", {maxZoom: 19}).addTo(map);
const pins = L.markerClusterGroup({animate: false});
const icon = L.divIcon({html: "", iconSize: [30, 40], iconAnchor: [15, 40]});
fetch(")" +
         std::string(town::kTreesPath) +
         R"(").then(answer => answer.json()).then(rows => {
  pins.addLayers(rows.map(row =>
      L.marker([+row.latitudine, +row.longitudine], {icon, title: row.nome_comune})));
  map.addLayer(pins);
  requestAnimationFrame(() => requestAnimationFrame(() => host.post("pins")));
});
</script></body></html>)";
}

class Bench {
 public:
  Bench()
      : folder_(std::filesystem::temp_directory_path().string() + "/"),
        platform_(clock_, platform::Folders{platform::assetsFolder(), folder_, folder_, folder_}),
        scope_(platform_) {
    const std::string leaflet = "/usr/share/javascript/leaflet/";
    const auto add = [&](const char* name, const char* type, const std::string& text) {
      host_.documents().addFixed(std::string("/bare/") + name, type, text);
    };
    add("index.html", "text/html; charset=utf-8", barePage());
    add("leaflet.js", "text/javascript", fileText(leaflet + "leaflet.min.js"));
    add("leaflet.css", "text/css", fileText(leaflet + "leaflet.css"));
    add("cluster.js", "text/javascript", fileText(leaflet + "leaflet.markercluster.min.js"));
    add("cluster.css", "text/css",
        fileText(leaflet + "MarkerCluster.css") + fileText(leaflet + "MarkerCluster.Default.css"));
    varlo::registerApp();
    kes::lendServices();
    varlo::setBranding();
    varlo::deployment::pointEveryServiceAt(kes::Text(host_.url()));
    screen_ = std::make_unique<qt::QtScreen>(qt::QtScreen::Options());
    app_ = std::make_unique<ui::Application>(*screen_, screen_->textEngine());
    loop_ = std::make_unique<qt::QtLoop>(platform_, *screen_);
    hand_ = std::make_unique<qt::QtHand>(*screen_, *loop_);
    app_->setDelegate(&delegate_);
    QObject::connect(&screen_->window(), &QQuickWindow::frameSwapped, &screen_->window(),
                     [this] { ++frames_; });
    screen_->show();
    delegate_.didFinishLaunching();
    app_->activate();
    settle();
  }
  ~Bench() { platform_.mainQueue().close(); }

  double ours() {
    auto& main = varlo::kes_main::instance();
    auto& page = varlo::kes_modmaps::instance();
    main._lstmenu_itemclick(0, kMapsRow);
    settle();
    const auto row = main._clv->_getsize() - 1;  // the trees
    const auto tap = Clock::now();
    main._clv_itemclick(row, main._clv->_getvalue(row));
    loop_->until(
        [&] {
          const auto map = page._gmap.nativeOrNull();
          return map && map->markers().size() == kMarkers && screen_->idle();
        },
        60000);
    const double spent = millisecondsSince(tap);
    settle();
    oursFrames.push_back(framesWhilePanning());
    hand_->press(ui::Key::Back);
    settle();
    return spent;
  }

  double bare() {
    auto web = ui::makeShared<ui::WebView>();
    bool there = false;
    web->onMessage = [&](const std::string&) { there = true; };
    web->setFrame({0, 64, 375, 603});
    const auto start = Clock::now();
    app_->keyWindow()->overlay().addSubview(web);
    web->loadUrl(host_.url() + "/bare/index.html");
    loop_->until([&] { return there && screen_->idle(); }, 60000);
    const double spent = millisecondsSince(start);
    settle();
    bareFrames.push_back(framesWhilePanning());
    web->removeFromParent();
    settle();
    return spent;
  }

  std::vector<double> oursFrames, bareFrames;  // a second

 private:
  void settle() {
    const auto busy = [this] {
      return kes::kes_httputils2service::instance().jobsInFlight() > 0 ||
             app_->hud().progressShown();
    };
    if (!loop_->settle(busy, 60000)) throw std::runtime_error("it does not come to rest");
  }
  double framesWhilePanning() {
    const int before = frames_;
    const auto start = Clock::now();
    for (int i = 0; i < 4; ++i) {
      hand_->drag({250, 400}, {120, 300}, 250);
      hand_->drag({120, 300}, {250, 400}, 250);
    }
    const double count = frames_ - before, spent = millisecondsSince(start);
    settle();
    return count * 1000 / spent;
  }

  std::string folder_;
  platform::SystemClock clock_;
  platform::Platform platform_;
  platform::PlatformScope scope_;
  town::TownHost host_;
  std::unique_ptr<qt::QtScreen> screen_;
  std::unique_ptr<ui::Application> app_;
  std::unique_ptr<qt::QtLoop> loop_;
  std::unique_ptr<qt::QtHand> hand_;
  kes::KesAppDelegate delegate_;
  int frames_ = 0;
};

}  // namespace

int main() {
  try {
    Bench bench;
    bench.ours();  // the trees are made on the first request
    bench.bare();
    std::vector<double> ours, bare;
    for (int i = 0; i < kRounds; ++i) {
      ours.push_back(bench.ours());
      bare.push_back(bench.bare());
    }
    std::printf("%.1f %.1f %.1f %.1f\n", median(ours), median(bare), median(bench.oursFrames),
                median(bench.bareFrames));
    std::fflush(stdout);
    std::_Exit(0);  // the engine's processes take their time
  } catch (const std::exception& e) {
    std::fprintf(stderr, "bench_maps: %s\n", e.what());
    return 1;
  }
}
