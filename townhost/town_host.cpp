#include "townhost/town_host.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "townhost/engine.h"
#include "townhost/fault_script.h"
#include "townhost/json_text.h"
#include "townhost/map/tile_painter.h"
#include "townhost/pictures/gallery.h"
#include "townhost/spoil.h"
#include "townhost/town_documents.h"
#include "townhost/trial_paths.h"

namespace town {
namespace {

std::string listOf(const RequestLog& log) {
  JsonText json;
  json.openList();
  for (const auto& request : log.all())
    json.open()
        .text("method", request.method)
        .text("path", request.path)
        .text("userAgent", request.userAgent)
        .text("fault", request.fault)
        .close();
  return json.closeList().take();
}

}  // namespace

struct TownHost::Parts {
  // The waiting of delayed answers, which ends early when the host stops.
  class Patience {
   public:
    void wait(long milliseconds) {
      std::unique_lock lock(mutex_);
      over_.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return ended_; });
    }
    void end() {
      {
        std::lock_guard lock(mutex_);
        ended_ = true;
      }
      over_.notify_all();
    }

   private:
    std::mutex mutex_;
    std::condition_variable over_;
    bool ended_ = false;
  };

  explicit Parts(Options chosen)
      : options(std::move(chosen)), engine([this](const Call& call) { return serve(call); }) {
    if (!options.now) options.now = machineTime;
    // The documents hold absolute addresses, so the port comes first.
    port = engine.start(options.port);
    publishAll(documents, gallery, options.version, url());
  }

  std::string url() const { return "http://127.0.0.1:" + std::to_string(port); }

  Answer serve(const Call& call) {
    if (call.path == "/_faults") return faultDesk(call);
    if (call.path == "/_requests") return logDesk(call);

    const auto wrong = faults.take(call.path);
    std::string names;
    for (const auto& fault : wrong) {
      if (!names.empty()) names += '+';
      names += nameOf(fault.kind);
    }
    log.add({call.method, call.target, call.header("User-Agent"), names});

    auto answer = properAnswer(call);
    for (const auto& fault : wrong) {
      if (fault.kind == Fault::Kind::delay) patience.wait(fault.amount);
      spoil(answer, fault);
    }
    return answer;
  }

  Answer properAnswer(const Call& call) {
    if (auto trial = trials.answer(call)) return std::move(*trial);
    if (const auto tile = tileAddress(call.path))
      return {200, "image/png", tiles.png(*tile), {{"Cache-Control", "max-age=86400"}}};
    auto document = documents.make({options.now(), call.path, call.query});
    if (!document) return errorPage(404);
    if (call.method != "GET" && call.method != "HEAD") return errorPage(405);
    return {200, std::move(document->type), std::move(document->text)};
  }

  Answer faultDesk(const Call& call) {
    if (call.method == "DELETE") {
      faults.clear();
    } else if (call.method == "POST") {
      try {
        applyFaultScript(faults, call.body);
      } catch (const std::invalid_argument& reason) {
        return errorPage(400, reason.what());
      }
    }
    return {200, kJsonType, describeFaults(faults)};
  }

  Answer logDesk(const Call& call) {
    if (call.method == "DELETE") log.clear();
    return {200, kJsonType, listOf(log)};
  }

  Options options;
  Gallery gallery;
  Documents documents;
  Faults faults;
  RequestLog log;
  TrialPaths trials;
  TilePainter tiles;
  Patience patience;
  int port = 0;
  Engine engine;  // last: its threads use all of the above
};

TownHost::TownHost() : TownHost(Options()) {}
TownHost::TownHost(Options options) : parts_(std::make_unique<Parts>(std::move(options))) {}
TownHost::~TownHost() { stop(); }

int TownHost::port() const { return parts_->port; }
std::string TownHost::url() const { return parts_->url(); }

void TownHost::stop() {
  parts_->patience.end();
  parts_->engine.stop();
}

Faults& TownHost::faults() { return parts_->faults; }
RequestLog& TownHost::requests() { return parts_->log; }
Documents& TownHost::documents() { return parts_->documents; }

}  // namespace town
