// JSON text into containers, 0.8 MB of records: ours beside RapidJSON's own tree and
// nlohmann's. Each run makes the whole tree and frees it again; the rows "read only" leave
// the freeing out. RapidJSON is compiled with the same SSE flags.
#include <benchmark/benchmark.h>

#if defined(__SSE4_2__)
#define RAPIDJSON_SSE42
#elif defined(__SSE2__)
#define RAPIDJSON_SSE2
#endif
#include <rapidjson/document.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "runtime/data/json/json_parser.h"

namespace {

constexpr std::size_t kBytes = 800'000;

// Pages of the town's directory: names, addresses, opening hours, a place on the map.
std::string entities() {
  std::string out = R"({"versione":12,"entita":[)";
  for (int i = 0; out.size() < kBytes; ++i) {
    const std::string n = std::to_string(i);
    if (i) out += ',';
    out += R"({"id":)" + n + R"(,"nome":"Farmacia Comunale n. )" + n +
           R"(","indirizzo":"Via Giuseppe Garibaldi, )" + n +
           R"(","citta":"Varlo","telefono":"0342 55)" + n + R"(","email":"info)" + n +
           R"(@comune.varlo.example","descrizione":"Servizio attivo tutti i giorni; la domenica )"
           R"(è aperto solo per le urgenze.","lat":46.1)" +
           n + R"(3,"lon":9.8)" + n + R"(7,"aperta":)" + (i % 3 ? "true" : "false") +
           R"(,"note":null,"orari":[{"giorno":1,"apre":"08:30","chiude":"12:30"},)"
           R"({"giorno":2,"apre":"14:30","chiude":"19:00"}]})";
  }
  return out + "]}";
}

// Rows of the acts' archive: flat, many short fields, printed with indents.
std::string acts() {
  std::string out = "[\n";
  for (int i = 0; out.size() < kBytes; ++i) {
    const std::string n = std::to_string(i);
    if (i) out += ",\n";
    out += "  {\n    \"numero\": " + n + ",\n    \"anno\": 2017,\n    \"tipo\": \"Delibera\",\n" +
           "    \"oggetto\": \"Approvazione del verbale della seduta n. " + n + "\",\n" +
           "    \"data\": \"2017-11-15\",\n    \"ufficio\": \"Segreteria\",\n" +
           "    \"importo\": 1250.50,\n    \"pubblicato\": true\n  }";
  }
  return out + "\n]";
}

const std::string& document(int which) {
  static const std::string all[] = {entities(), acts()};
  return all[which];
}

template <class Parse>
void run(benchmark::State& state, bool withFreeing, Parse parse) {
  const auto& text = document(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    auto tree = parse(text);
    benchmark::DoNotOptimize(tree);
    if (!withFreeing) state.PauseTiming();
    tree = {};
    if (!withFreeing) state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(text.size()));
}

kes::Value ours(const kes::Text& text) {
  kes::KesJSONParser parser;
  parser.Initialize(text);
  return parser.NextObject();
}

std::unique_ptr<rapidjson::Document> rapid(const std::string& text) {
  auto d = std::make_unique<rapidjson::Document>();
  d->Parse(text.data(), text.size());
  if (d->HasParseError()) std::abort();
  return d;
}

template <bool kFree>
void BM_Ours(benchmark::State& state) {
  const kes::Text text(document(static_cast<int>(state.range(0))));
  run(state, kFree, [&](const std::string&) { return ours(text); });
}
template <bool kFree>
void BM_RapidJsonTree(benchmark::State& state) {
  run(state, kFree, rapid);
}
template <bool kFree>
void BM_Nlohmann(benchmark::State& state) {
  run(state, kFree, [](const std::string& text) { return nlohmann::json::parse(text); });
}

BENCHMARK(BM_Ours<true>)->Name("json/ours")->DenseRange(0, 1);
BENCHMARK(BM_RapidJsonTree<true>)->Name("json/rapidjson")->DenseRange(0, 1);
BENCHMARK(BM_Nlohmann<true>)->Name("json/nlohmann")->DenseRange(0, 1);
BENCHMARK(BM_Ours<false>)->Name("json/ours/read only")->DenseRange(0, 1);
BENCHMARK(BM_RapidJsonTree<false>)->Name("json/rapidjson/read only")->DenseRange(0, 1);

}  // namespace

BENCHMARK_MAIN();
