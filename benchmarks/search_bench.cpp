// A key typed into the search view over five thousand streets, beside a bare walk over the
// same texts in small letters and beside the rows that the screen shows; and a row put at
// the front of a long list that is scrolled away.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>

#include "components/customlistview.h"
#include "components/register_components.h"
#include "components/searchview.h"
#include "platform/base/platform.h"
#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_screen.h"
#include "platform/ui/application.h"
#include "platform/ui/controls/table_view.h"
#include "runtime/data/register_data.h"
#include "runtime/views/app/services.h"
#include "runtime/views/register_views.h"

namespace {

using namespace kes;

constexpr int kStreets = 5000, kRows = 10000;
constexpr double kWidth = 375, kHeight = 603;

class Owner final : public KesClass {
 public:
  static void describe(ClassBuilder<Owner>& c) { c.name("kes_search_bench_owner"); }
  void _initialize() { initializeClassModule(); }
};

struct World {
  platform::SystemClock clock;
  platform::Platform platform{clock, {}};
  platform::PlatformScope scope{platform};
  headless::HeadlessScreen screen;
  headless::FixedTextEngine text;
  ui::Application application{screen, text};
  ui::Ref<ui::Window> window = ui::makeShared<ui::Window>(application.screenBounds());
  Ref<Owner> owner;

  World() {
    registerData();
    registerViews();
    lendServices();
    registerComponents();
    ClassRegistry::instance().add<Owner>();
    window->makeKey();
    window->show();
    owner = make<Owner>();
    owner->_initialize();
  }
};
World* current = nullptr;

const std::vector<std::string>& streets() {
  static const std::vector<std::string> all = [] {
    const char* const kinds[] = {"Via", "Viale", "Piazza", "Vicolo", "Strada"};
    const char* const names[] = {"Giuseppe Garibaldi", "dei Tigli",  "Santa Maria delle Grazie",
                                 "XXV Aprile",         "Monte Rosa", "Alessandro Manzoni",
                                 "della Repubblica",   "San Rocco"};
    std::vector<std::string> made;
    made.reserve(kStreets);
    for (int i = 0; i < kStreets; ++i)
      made.push_back(std::string(kinds[i % 5]) + " " + names[i / 5 % 8] + " " + std::to_string(i));
    return made;
  }();
  return all;
}

// What a citizen types, key by key: all match at first, few or none in the end.
constexpr const char* kKeys[] = {"v",   "vi",  "via",   "via s", "via sa", "via san", "e",
                                 "rep", "man", "rocco", "99",    "499",    "4999",    "zz"};

Ref<kes_searchview> searchView(KesPanelWrapper& parent) {
  parent.Initialize(current->owner->bi(), "");
  current->window->addSubview(parent.native());
  KesPanelWrapper base;
  base.Initialize(current->owner->bi(), "");
  parent.AddView(base, 0, 0, kWidth, kHeight);
  KesLabelWrapper label;
  label.Initialize(current->owner->bi(), "");
  auto search = make<kes_searchview>(current->owner->bi(), Value(current->owner), Text("sv"));
  search->_designercreateview(base, label, KesMap());
  KesList items;
  items.Initialize();
  for (const auto& street : streets()) items.Add(itemsv::of(street, 1));
  search->_setitems(items);
  return search;
}

void keyInSearchView(benchmark::State& state) {
  KesPanelWrapper parent;
  const auto search = searchView(parent);
  int rows = 0;
  for (auto _ : state)
    for (const char* key : kKeys) {
      search->_et_textchanged("", key);
      rows += search->_lv.Size();
    }
  if (rows < kStreets) state.SkipWithError("no street was found");
  parent.RemoveViewFromParent();
}
BENCHMARK(keyInSearchView)->Unit(benchmark::kMicrosecond);

void keyInBareLoop(benchmark::State& state) {
  std::vector<std::string> lowered;
  for (const auto& street : streets()) lowered.push_back(Text(street).ToLowerCase().str());
  for (auto _ : state)
    for (const char* key : kKeys) {
      std::vector<std::uint32_t> found;
      const std::string_view search = key;
      for (std::uint32_t i = 0; i < lowered.size(); ++i)
        if (lowered[i].find(search) != std::string::npos) found.push_back(i);
      benchmark::DoNotOptimize(found.data());
    }
}
BENCHMARK(keyInBareLoop)->Unit(benchmark::kMicrosecond);

// The same numbers of rows on the screen, of texts that are there already.
void rowsOnTheScreen(benchmark::State& state) {
  auto table = ui::makeShared<ui::TableView>();
  table->setFrame({0, 0, kWidth, kHeight - 60});
  current->window->addSubview(table);
  std::vector<int> counts;
  for (const char* key : kKeys) {
    const auto holds = [&](const std::string& s) {
      return Text(s).ToLowerCase().Contains(std::string_view(key));
    };
    counts.push_back(static_cast<int>(std::count_if(streets().begin(), streets().end(), holds)));
  }
  const ui::AttributedText text("Via Giuseppe Garibaldi 1234");
  for (auto _ : state)
    for (const int count : counts) {
      table->setRows(0, {});
      table->setRows(count, [&](int) { return text; });
    }
  table->removeFromParent();
}
BENCHMARK(rowsOnTheScreen)->Unit(benchmark::kMicrosecond);

void insertAtTheFront(benchmark::State& state) {
  KesPanelWrapper base;
  base.Initialize(current->owner->bi(), "");
  base.setWidth(kWidth);
  base.setHeight(kHeight);
  current->window->addSubview(base.native());
  KesLabelWrapper label;
  label.Initialize(current->owner->bi(), "");
  auto list = make<kes_customlistview>(current->owner->bi(), Value(current->owner), Text("clv"));
  list->_designercreateview(
      base, label,
      KesCommon::createMap({"DividerColor", 0, "DividerHeight", 1, "PressedColor", 0}));
  for (int i = 0; i < kRows; ++i) list->_addtextitem("riga", nullptr);
  list->_jumptoitem(kRows - 1);
  for (auto _ : state) {
    list->_insertattextitem(0, "prima", nullptr, false);
    state.PauseTiming();
    list->_removeat(0);
    state.ResumeTiming();
  }
  base.RemoveViewFromParent();
}
BENCHMARK(insertAtTheFront)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  World w;
  current = &w;
  benchmark::RunSpecifiedBenchmarks();
  current = nullptr;
  return 0;
}
