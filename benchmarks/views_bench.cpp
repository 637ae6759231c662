// Layouts and the list, with the text engine that draws: a layout of twenty views beside
// the same views from the toolkit's own markup, and ten thousand rows beside measuring
// their texts alone.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <filesystem>
#include <fstream>
#include <memory>

#include "components/customlistview.h"
#include "components/register_components.h"
#include "platform/base/platform.h"
#include "platform/qt/qt_screen.h"
#include "platform/ui/application.h"
#include "runtime/data/register_data.h"
#include "runtime/views/base/font.h"
#include "runtime/views/register_views.h"
#include "runtime/views/wrappers/panel_wrapper.h"
#include "tools/layout_bytes.h"
#include "tools/layout_compiler.h"

namespace {

using namespace kes;

class Owner final : public KesClass {
 public:
  static void describe(ClassBuilder<Owner>& c) {
    c.name("kes_bench_owner");
    c.sub<&Owner::_clv_itemclick>("clv_itemclick");
  }
  void _initialize() { initializeClassModule(); }
  void _clv_itemclick(int, Value) {}
};

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

// A phone offscreen, with the layout in its assets.
struct World {
  std::filesystem::path root =
      std::filesystem::temp_directory_path() / ("varlo-bench-" + std::to_string(::getpid()));
  platform::SystemClock clock;
  std::unique_ptr<platform::Platform> platform;
  std::unique_ptr<platform::PlatformScope> scope;
  std::unique_ptr<qt::QtScreen> screen;
  std::unique_ptr<ui::Application> application;
  Ref<ui::Window> window;
  Ref<Owner> owner;

  World() {
    for (const char* folder : {"assets", "documents", "library", "tmp"})
      std::filesystem::create_directories(root / folder);
    const auto path = [&](const char* f) { return (root / f).string(); };
    platform = std::make_unique<platform::Platform>(
        clock, platform::Folders{path("assets"), path("documents") + "/", path("library") + "/",
                                 path("tmp")});
    scope = std::make_unique<platform::PlatformScope>(*platform);
    registerData();
    registerViews();
    registerComponents();
    ClassRegistry::instance().add<Owner>();
    const auto bytes = layouts::toBytes(layouts::compile(layoutSource(), "bench.layout"));
    std::ofstream(root / "assets/bench.kil", std::ios::binary) << bytes;
    qt::QtScreen::Options options;
    options.process.offscreen = true;
    screen = std::make_unique<qt::QtScreen>(options);
    application = std::make_unique<ui::Application>(*screen, screen->textEngine());
    window = platform::makeShared<ui::Window>(application->screenBounds());
    window->makeKey();
    owner = make<Owner>();
    owner->_initialize();
  }
  ~World() { std::filesystem::remove_all(root); }
};

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

constexpr int kRows = 10000;

// Rows as a town writes them: a sentence or two.
const std::vector<Text>& rowTexts() {
  static const std::vector<Text> texts = [] {
    std::vector<Text> t;
    t.reserve(kRows);
    for (int i = 0; i < kRows; ++i)
      t.push_back("Avviso numero " + std::to_string(i) +
                  ": lo sportello dell'anagrafe resta chiuso nel pomeriggio di mercoledì " +
                  std::to_string(i % 28 + 1) + " per lavori.");
    return t;
  }();
  return texts;
}

Ref<kes_customlistview> newList(World& w, KesPanelWrapper& base) {
  base.Initialize(w.owner->bi(), "");
  base.setWidth(375);
  base.setHeight(603);
  base.setColor(KesColors::White);
  KesLabelWrapper label;
  label.Initialize(w.owner->bi(), "");
  label.setFont(KesFont::CreateNew(16));
  KesMap properties =
      KesCommon::createMap({"DividerColor", 0, "DividerHeight", 1, "PressedColor", 0});
  auto list = make<kes_customlistview>(w.owner->bi(), Value(w.owner), Text("clv"));
  list->_designercreateview(base, label, properties);
  return list;
}

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
  current = &w;
  benchmark::RunSpecifiedBenchmarks();
  current = nullptr;
  return 0;
}
