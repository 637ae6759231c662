// Layouts and the list, with the text engine that draws: a layout of twenty views beside
// the same views from the toolkit's own markup, and ten thousand rows beside measuring
// their texts alone.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <fstream>
#include <memory>

#include "bench_world.h"
#include "tools/layout_bytes.h"
#include "tools/layout_compiler.h"

namespace {

using namespace bench;

std::string layoutSource() {
  std::string source = "variant 375x667\n";
  for (int i = 0; i < 10; ++i) {
    const auto n = std::to_string(i);
    source += "panel row" + n + "\n  frame: left 10 width 355, top " + std::to_string(10 + i * 60) +
              " height 56\n  backgroundColor: #F5F8FA\n  label text" + n +
              "\n    frame: left 8 width 330, top 4 height 48\n    text: \"Riga numero " + n +
              "\"\n    font: system 16\n";
  }
  return source;
}

QByteArray markup() {
  QByteArray qml = "import QtQuick\nItem { width: 375; height: 667\n";
  for (int i = 0; i < 10; ++i)
    qml += "Rectangle { x: 10; y: " + QByteArray::number(10 + i * 60) +
           "; width: 355; height: 56; color: \"#F5F8FA\"\n  Text { x: 8; y: 4; width: 330; height: "
           "48; font.pixelSize: 16; text: \"Riga numero " +
           QByteArray::number(i) + "\" } }\n";
  return qml + "}\n";
}

World* current = nullptr;
World& world() { return *current; }

void layoutOfTwentyViews(benchmark::State& state) {
  auto& w = world();
  for (auto _ : state) {
    KesPanelWrapper panel;
    panel.Initialize(w.owner->bi(), "");
    panel.setWidth(375);
    panel.setHeight(667);
    panel.LoadLayout("bench", w.owner->bi());
    if (panel.GetAllViewsRecursive().Size() != 20) state.SkipWithError("views are missing");
  }
  w.platform->mainQueue().drain();
}
// Counted in the work of all threads: the peer compiles its text on one of its own.
BENCHMARK(layoutOfTwentyViews)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

void markupOfTwentyViews(benchmark::State& state) {
  world();
  QQmlEngine engine;
  const QByteArray qml = markup();
  for (auto _ : state) {
    QQmlComponent component(&engine);
    component.setData(qml, QUrl());
    std::unique_ptr<QObject> made(component.create());
    if (!made || made->findChildren<QQuickItem*>().size() != 20)
      state.SkipWithError("items are missing");
  }
}
BENCHMARK(markupOfTwentyViews)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

void appendRows(benchmark::State& state) {
  auto& w = world();
  rowTexts();
  double bytes = 0;
  for (auto _ : state) {
    state.PauseTiming();
    KesPanelWrapper base;
    auto list = newList(w, base);
    const auto before = ::mallinfo2().uordblks;
    state.ResumeTiming();
    for (const Text& text : rowTexts()) list->_addtextitem(text, nullptr);
    state.PauseTiming();
    w.platform->mainQueue().drain();
    bytes = static_cast<double>(::mallinfo2().uordblks - before) / kRows;
    list = nullptr;
    base.setObject(nullptr);
    w.platform->mainQueue().drain();
    state.ResumeTiming();
  }
  state.counters["bytes_per_row"] = bytes;
}
BENCHMARK(appendRows)->Unit(benchmark::kMillisecond);

void measureRows(benchmark::State& state) {
  auto& w = world();
  const ui::Font font = ui::Font::system(16);
  for (auto _ : state) {
    double height = 0;
    for (const Text& text : rowTexts())
      height += w.application->text().measure(text.view(), font, 365, 0).height;
    benchmark::DoNotOptimize(height);
  }
}
BENCHMARK(measureRows)->Unit(benchmark::kMillisecond);

// While scrolling: the visible range of lists of growing length.
void visibleRange(benchmark::State& state) {
  auto& w = world();
  KesPanelWrapper base;
  auto list = newList(w, base);
  for (int i = 0; i < state.range(0); ++i) list->_addtextitem("riga", nullptr);
  const double most = list->_sv.ScrollViewContentHeight() - list->_sv.Height();
  double offset = 0;
  for (auto _ : state) {
    offset = offset + 37 < most ? offset + 37 : 0;
    list->_sv.setScrollViewOffsetY(offset);
    benchmark::DoNotOptimize(list->_getfirstvisibleindex() + list->_getlastvisibleindex());
  }
}
BENCHMARK(visibleRange)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  World w;
  const auto bytes = layouts::toBytes(layouts::compile(layoutSource(), "bench.layout"));
  std::ofstream(w.root / "assets/bench.kil", std::ios::binary) << bytes;
  current = &w;
  benchmark::RunSpecifiedBenchmarks();
  current = nullptr;
  return 0;
}
