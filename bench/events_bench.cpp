// Events by name and resumable subs, beside what one would write by hand and beside the
// toolkit's own calls by name.
#include <benchmark/benchmark.h>

#include <QMetaObject>
#include <QObject>
#include <functional>
#include <string>
#include <unordered_map>

#include "bench/events_bench_peer.h"
#include "platform/base/platform.h"
#include "runtime/core/array.h"
#include "runtime/core/module.h"

namespace {

using namespace kes;

class Listener final : public KesClass {
 public:
  static void describe(ClassBuilder<Listener>& c) {
    c.name("kes_bench_listener");
    c.sub<&Listener::_lstmenu_itemclick>("lstmenu_itemclick");
    // A module has some dozens of subs.
    c.sub<&Listener::_other>("application_start");
    c.sub<&Listener::_other>("application_active");
    c.sub<&Listener::_other>("application_background");
    c.sub<&Listener::_other>("clv_itemclick");
    c.sub<&Listener::_other>("home_barbuttonclick");
    c.sub<&Listener::_other>("secondpage_barbuttonclick");
    c.sub<&Listener::_other>("web_overrideurl");
    c.sub<&Listener::_other>("jobdone");
    c.sub<&Listener::_other>("msg_click");
    c.sub<&Listener::_other>("complete");
    c.sub<&Listener::_other>("dialog_result");
  }
  void _initialize() { initializeClassModule(); }
  void _lstmenu_itemclick(int index, Value value) { sum += index + value.asInt64(); }
  void _other(Value) {}
  Resumable<> waitForever() {
    for (;;) sum += co_await waitFor<int>("jobdone:", token);
  }
  std::int64_t sum = 0;
  Ref<Shared> token = KesArray::initBytes({1});
};

struct World {
  platform::VirtualClock clock;
  platform::Platform platform{clock, {}};
  platform::PlatformScope scope{platform};
  Ref<Listener> listener;
  World() {
    ClassRegistry::instance().add<Listener>();
    listener = make<Listener>();
    listener->_initialize();
  }
};

World& world() {
  static World w;
  return w;
}

const char* const kOthers[] = {"application_start:", "application_active:", "clv_itemclick::",
                               "home_barbuttonclick:", "web_overrideurl:", "jobdone:",
                               "msg_click:", "complete:", "dialog_result:", "lp_resize::"};

void raiseByName(benchmark::State& state) {
  auto& listener = *world().listener;
  // Something waits for another event, so the waiting table is really looked at.
  listener.waitForever();
  const Ref<Shared> sender = listener.token;
  const Value params[] = {3, 4};
  const std::string event = "lstmenu_itemclick::";
  for (auto _ : state) listener.bi()->raiseEvent(sender, event, params);
  benchmark::DoNotOptimize(listener.sum);
  listener.bi()->raiseEvent(sender, "jobdone:", std::vector<Value>{0});
}
BENCHMARK(raiseByName);

void mapAndFunction(benchmark::State& state) {
  std::int64_t sum = 0;
  std::unordered_map<std::string, std::function<void(int, std::int64_t)>> subs;
  for (const char* other : kOthers) subs[other] = [&](int, std::int64_t) {};
  subs["lstmenu_itemclick::"] = [&](int index, std::int64_t value) { sum += index + value; };
  const std::string event = "lstmenu_itemclick::";
  for (auto _ : state) {
    const auto sub = subs.find(event);
    sub->second(3, 4);
    benchmark::ClobberMemory();
  }
  benchmark::DoNotOptimize(sum);
}
BENCHMARK(mapAndFunction);

void toolkitInvokeByName(benchmark::State& state) {
  BenchPeer peer;
  for (auto _ : state)
    QMetaObject::invokeMethod(&peer, "itemClick", Qt::DirectConnection, Q_ARG(int, 3),
                              Q_ARG(qint64, 4));
  benchmark::DoNotOptimize(peer.sum);
}
BENCHMARK(toolkitInvokeByName);

void parkAndWake(benchmark::State& state) {
  auto& listener = *world().listener;
  listener.waitForever();
  const Ref<Shared> sender = listener.token;
  const Value params[] = {3};
  for (auto _ : state) listener.bi()->raiseEvent(sender, "jobdone:", params);
  benchmark::DoNotOptimize(listener.sum);
}
BENCHMARK(parkAndWake);

}  // namespace

BENCHMARK_MAIN();
