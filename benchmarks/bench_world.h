// What the benchmarks of views share: a phone that draws into memory, an owner of its
// views, and ten thousand rows as a town writes them.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "components/customlistview.h"
#include "components/register_components.h"
#include "platform/base/platform.h"
#include "platform/qt/qt_screen.h"
#include "platform/ui/application.h"
#include "runtime/data/register_data.h"
#include "runtime/views/app/services.h"
#include "runtime/views/base/font.h"
#include "runtime/views/register_views.h"
#include "runtime/views/wrappers/panel_wrapper.h"

namespace bench {

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

// A phone offscreen, with one window.
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

  explicit World(double scale = 0) {
    for (const char* folder : {"assets", "documents", "library", "tmp"})
      std::filesystem::create_directories(root / folder);
    const auto path = [&](const char* f) { return (root / f).string(); };
    platform = std::make_unique<platform::Platform>(
        clock, platform::Folders{path("assets"), path("documents") + "/", path("library") + "/",
                                 path("tmp")});
    scope = std::make_unique<platform::PlatformScope>(*platform);
    registerData();
    registerViews();
    lendServices();
    registerComponents();
    ClassRegistry::instance().add<Owner>();
    qt::QtScreen::Options options;
    options.process.offscreen = true;
    options.process.scale = scale;
    screen = std::make_unique<qt::QtScreen>(options);
    application = std::make_unique<ui::Application>(*screen, screen->textEngine());
    window = platform::makeShared<ui::Window>(application->screenBounds());
    window->makeKey();
    owner = make<Owner>();
    owner->_initialize();
  }
  ~World() { std::filesystem::remove_all(root); }
};

inline constexpr int kRows = 10000;

// Rows as a town writes them: a sentence or two.
inline const std::vector<Text>& rowTexts() {
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

inline Ref<kes_customlistview> newList(World& w, KesPanelWrapper& base) {
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

}  // namespace bench
