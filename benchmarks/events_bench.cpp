// Events by name and resumable subs, beside what one would write by hand and beside the
// toolkit's own calls by name.
#include <benchmark/benchmark.h>

#include <QMetaObject>
#include <QObject>
#include <functional>
#include <string>
#include <unordered_map>

#include "events_bench_peer.h"
#include "platform/base/platform.h"
#include "runtime/core/language/module.h"

namespace {

using namespace kes;

// What the shell of an app answers to, beside the sub that is called.
constexpr const char* kSubs[] = {"application_start",
                                 "application_active",
                                 "application_background",
                                 "application_inactive",
                                 "application_foreground",
                                 "application_openurl",
                                 "application_pushtoken",
                                 "clv_itemclick",
                                 "home_barbuttonclick",
                                 "secondpage_barbuttonclick",
                                 "web_overrideurl",
                                 "web_pagefinished",
                                 "jobdone",
                                 "msg_click",
                                 "msgbox_result",
                                 "complete",
                                 "dialog_result",
                                 "fm_fcmconnected",
                                 "home_appear",
                                 "home_disappear",
                                 "home_resize",
                                 "lp_resize",
                                 "lp_appear",
                                 "lp_disappear",
                                 "nc_appear",
                                 "base_resize",
                                 "sv_scrollchanged",
                                 "panel_click",
                                 "et_textchanged",
                                 "et_enterpressed",
                                 "lv_selectedchanged",
                                 "timer_tick"};

class Listener final : public KesClass {
 public:
  static void describe(ClassBuilder<Listener>& c) {
    c.name("kes_bench_listener");
    c.sub<&Listener::_lstmenu_itemclick>("lstmenu_itemclick");
    for (const char* name : kSubs) c.sub<&Listener::_other>(name);
  }
  void _initialize() { initializeClassModule(); }
  void _lstmenu_itemclick(int index, Value value) { sum += index + value.asInt64(); }
  void _other(Value) {}
  Resumable<> waitForever() {
    for (;;) sum += co_await waitFor<int>("jobdone:", job);
  }
  std::int64_t sum = 0;
  Ref<Listener> job;
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
    listener->job = make<Listener>();
  }
};

World& world() {
  static World w;
  return w;
}

void raiseByName(benchmark::State& state) {
  auto& listener = *world().listener;
  // Something waits for another event, so the waiting table is really looked at.
  listener.waitForever();
  const Ref<Shared> sender = listener.job;
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
  for (const char* other : kSubs) subs[std::string(other) + ":"] = [&](int, std::int64_t) {};
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
  const Ref<Shared> sender = listener.job;
  const Value params[] = {3};
  for (auto _ : state) listener.bi()->raiseEvent(sender, "jobdone:", params);
  benchmark::DoNotOptimize(listener.sum);
}
BENCHMARK(parkAndWake);

}  // namespace

BENCHMARK_MAIN();
