// Sorting a list of texts and matching in a loop, each beside its peer.
#include <benchmark/benchmark.h>
#include <unicode/uregex.h>

#include <algorithm>
#include <random>

#include "runtime/core/language/regex.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"

using namespace kes;

namespace {

// Names as a town has them: many begin alike, some are short, some carry accents.
std::vector<std::string> names(std::size_t n) {
  std::mt19937 random(1);
  const char* const heads[] = {"", "Via ", "Piazza ", "Associazione ", "Scuola dell'infanzia "};
  const char* const parts[] = {"ro", "ma", "vel", "tà", "si", "quo", "Lu", "ne", "b", "a"};
  std::vector<std::string> out;
  for (std::size_t i = 0; i < n; ++i) {
    std::string s = heads[random() % 5];
    for (auto k = 2 + random() % 8; k > 0; --k) s += parts[random() % 10];
    out.push_back(std::move(s));
  }
  return out;
}

constexpr std::size_t kNames = 100'000;

void sortList(benchmark::State& state) {
  std::vector<Value> items;
  for (const auto& s : names(kNames)) items.push_back(s);
  for (auto _ : state) {
    state.PauseTiming();
    KesList list = KesList::of(items);
    state.ResumeTiming();
    list.Sort(true);
  }
}

void sortListCaseInsensitive(benchmark::State& state) {
  std::vector<Value> items;
  for (const auto& s : names(kNames)) items.push_back(s);
  for (auto _ : state) {
    state.PauseTiming();
    KesList list = KesList::of(items);
    state.ResumeTiming();
    list.SortCaseInsensitive(true);
  }
}

void sortStrings(benchmark::State& state) {
  const auto items = names(kNames);
  for (auto _ : state) {
    state.PauseTiming();
    auto copy = items;
    state.ResumeTiming();
    std::sort(copy.begin(), copy.end());
    benchmark::DoNotOptimize(copy.data());
  }
}

const char kPattern[] = "([0-9]{2}):([0-9]{2}) - ([0-9]{2}):([0-9]{2})";

void matchInALoop(benchmark::State& state) {
  const Text pattern(kPattern), text("Lunedì 08:30 - 12:45");
  for (auto _ : state) {
    const auto m = KesRegex::Matcher(pattern, text);
    m->Find();
    benchmark::DoNotOptimize(m->GetStart(1));
  }
}

void wholeMatchInALoop(benchmark::State& state) {
  const Text pattern(kPattern), text("08:30 - 12:45");
  for (auto _ : state) benchmark::DoNotOptimize(KesRegex::IsMatch(pattern, text));
}

// Compiled once; the text handed over as UTF-8, as the runtime gets it.
template <bool Whole>
void matchCompiledOnce(benchmark::State& state) {
  const Text text(Whole ? "08:30 - 12:45" : "Lunedì 08:30 - 12:45");
  UErrorCode status = U_ZERO_ERROR;
  auto* e = uregex_openC(kPattern, 0, nullptr, &status);
  for (auto _ : state) {
    const std::u16string units = text.utf16();
    uregex_setText(e, units.data(), static_cast<std::int32_t>(units.size()), &status);
    if (Whole) {
      benchmark::DoNotOptimize(uregex_matches(e, 0, &status));
      continue;
    }
    while (uregex_findNext(e, &status))
      for (std::int32_t g = 0; g < 5; ++g) {
        benchmark::DoNotOptimize(uregex_start(e, g, &status));
        benchmark::DoNotOptimize(uregex_end(e, g, &status));
      }
  }
  uregex_close(e);
}

void mapGet(benchmark::State& state) {
  KesMap m;
  m.Initialize();
  for (auto i = 0; i < state.range(0); ++i) m.Put("chiave numero " + std::to_string(i), i);
  const std::string key = "chiave numero " + std::to_string(state.range(0) - 1);
  for (auto _ : state) benchmark::DoNotOptimize(m.Get(std::string_view(key)));
}

}  // namespace

BENCHMARK(sortStrings)->Unit(benchmark::kMillisecond);
BENCHMARK(sortList)->Unit(benchmark::kMillisecond);
BENCHMARK(sortListCaseInsensitive)->Unit(benchmark::kMillisecond);
BENCHMARK(matchCompiledOnce<false>)->Name("matchCompiledOnce");
BENCHMARK(matchInALoop);
BENCHMARK(matchCompiledOnce<true>)->Name("wholeMatchCompiledOnce");
BENCHMARK(wholeMatchInALoop);
BENCHMARK(mapGet)->Arg(8)->Arg(1000);

BENCHMARK_MAIN();
