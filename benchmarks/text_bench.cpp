// Positions in long texts: the same operations over accented Italian and over ASCII.
#include <benchmark/benchmark.h>

#include <string>

#include "runtime/core/text.h"

using kes::Text;

namespace {

// That many units; every eleventh carries an accent where wanted.
Text longText(int units, bool accents) {
  std::string s;
  for (int i = 0; i < units; ++i) s += i % 20 == 19 ? "\n" : i % 11 || !accents ? "a" : "à";
  return Text(s);
}

void charAt(benchmark::State& state, bool accents) {
  constexpr int kUnits = 50'000;
  const Text text = longText(kUnits, accents);
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(text.CharAt(i));
    if (++i == kUnits) i = 0;
  }
}

// A text of 380,000 units cut into its 19,000 lines.
void cutLines(benchmark::State& state, bool accents) {
  constexpr int kUnits = 380'000;
  for (auto _ : state) {
    const Text text = longText(kUnits, accents);
    int lines = 0;
    for (std::int32_t from = 0, end; (end = text.IndexOf2("\n", from)) >= 0; from = end + 1) {
      benchmark::DoNotOptimize(text.SubString2(from, end));
      ++lines;
    }
    if (lines != kUnits / 20) state.SkipWithError("lines are missing");
  }
}

void makeText(benchmark::State& state, bool accents) {
  const std::string bytes = longText(static_cast<int>(state.range(0)), accents).str();
  for (auto _ : state) benchmark::DoNotOptimize(Text(bytes));
}

BENCHMARK_CAPTURE(charAt, ascii, false);
BENCHMARK_CAPTURE(charAt, accents, true);
BENCHMARK_CAPTURE(cutLines, ascii, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(cutLines, accents, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(makeText, ascii, false)->Arg(60)->Arg(2000);
BENCHMARK_CAPTURE(makeText, accents, true)->Arg(60)->Arg(2000);

}  // namespace

BENCHMARK_MAIN();
